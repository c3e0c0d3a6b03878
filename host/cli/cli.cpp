#include "host/cli/cli.h"

#include <CLI/CLI.hpp>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>

#include "host/cli/usageerror.h"
#include "host/commands/algocommands.h"
#include "host/commands/cataloguecommands.h"
#include "host/commands/devicecommands.h"
#include "host/commands/editcommand.h"
#include "host/commands/jobcommand.h"
#include "host/commands/mapcommand.h"
#include "host/commands/svfcommands.h"
#include "host/commands/tracecommands.h"
#include "host/hosterror.h"

namespace keld2::host {

namespace {

int fault(int status, const std::string& message) {
    std::cerr << "keld2: " << message << '\n';
    return status;
}

// What the system had to say about a file.
std::string told(const std::filesystem::filesystem_error& error) {
    const std::string path = error.path1().string();
    return (path.empty() ? "" : path + ": ") + error.code().message();
}

int carryout(int argc, const char* const* argv) {
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
        return fault(exitstatus::usage, usageerror(program, error));
    }
}

int guarded(int argc, const char* const* argv) {
    try {
        return carryout(argc, argv);
    } catch (const HostError& error) {
        return fault(error.status(), error.what());
    } catch (const std::filesystem::filesystem_error& error) {
        return fault(exitstatus::nofile, told(error));
    } catch (const std::exception& error) {
        return fault(exitstatus::programfault,
                     std::string("fault of the program: ") + error.what());
    }
}

}  // namespace

int runcli(int argc, const char* const* argv) {
    const int status = guarded(argc, argv);
    std::cout.flush();
    if (std::cout || status != exitstatus::well) return status;
    return fault(exitstatus::nofile, "standard output cannot be written");
}

}  // namespace keld2::host
