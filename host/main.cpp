#include "host/cli/cli.h"

int main(int argc, char** argv) { return keld2::host::runcli(argc, argv); }
