#include <vector>

#include "host/cli/cli.h"
#include "host/os/process.h"

int main(int argc, char** argv) {
    const keld2::host::os::TextStreams streams;
    const std::vector<std::string> words = keld2::host::os::arguments(argc, argv);
    std::vector<const char*> list;
    list.reserve(words.size());
    for (const std::string& word : words) list.push_back(word.c_str());
    return keld2::host::runcli(static_cast<int>(list.size()), list.data());
}
