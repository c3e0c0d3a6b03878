#include "host/cli/cli.h"

#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>

#include "host/cli/jobcommand.h"
#include "host/cli/usageerror.h"
#include "host/commands/algocommands.h"
#include "host/commands/cataloguecommands.h"
#include "host/commands/devicecommands.h"
#include "host/commands/editcommand.h"
#include "host/commands/mapcommand.h"
#include "host/commands/svfcommands.h"
#include "host/commands/tracecommands.h"
#include "host/hosterror.h"

namespace keld2::host {

int runcli(int argc, const char* const* argv) {
    int status = exitstatus::well;
    CLI::App program("Command-line host of tq5keld2, the device-family plug-in of a programmer");
    program.name("keld2");
    program.allow_windows_style_options(false);  // a path may begin with /
    program.set_version_flag("--version", "keld2 " KELD2_VERSION, "Print the version and exit");
    program.require_subcommand(1);
    DeviceOptions options;
    adddeviceoptions(program, options);
    adddevicecommands(program, options, status);
    addcataloguecommands(program, options, status);
    addalgocommands(program, options, status);
    addeditcommand(program, options, status);
    addmapcommand(program, options, status);
    addsvfcommands(program, options, status);
    addjobcommand(program, options, status);
    addtracecommands(program, status);
    try {
        program.parse(argc, argv);
        return status;
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) return program.exit(error);
        std::cerr << "keld2: " << usageerror(program, error) << '\n';
        return exitstatus::usage;
    } catch (const HostError& error) {
        std::cerr << "keld2: " << error.what() << '\n';
        return error.status();
    } catch (const std::exception& error) {
        std::cerr << "keld2: fault of the program: " << error.what() << '\n';
        return exitstatus::programfault;
    }
}

}  // namespace keld2::host
