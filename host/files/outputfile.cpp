#include "host/files/outputfile.h"

#include <string>
#include <system_error>

#include "host/hosterror.h"
#include "host/os/process.h"
#include "sim/replacefile.h"

namespace keld2::host {

namespace {

[[noreturn]] void refuse(const std::filesystem::path& path, const std::string& message) {
    throw HostError(exitstatus::nofile, path.string() + ": " + message);
}

[[noreturn]] void refusewitherror(const std::filesystem::path& path, std::error_code error) {
    refuse(path, "cannot be written: " + error.message());
}

}  // namespace

void checkoutput(const std::filesystem::path& path, bool overwrite) {
    if (std::filesystem::is_directory(path)) refuse(path, "is a folder, expected a file");
    if (std::filesystem::is_other(path)) return;  // a terminal or a pipe takes what comes
    if (!overwrite && std::filesystem::exists(std::filesystem::symlink_status(path)))
        refuse(path, "exists already; --force overwrites it");
    const std::filesystem::path folder = path.has_parent_path() ? path.parent_path() : ".";
    if (const std::error_code error = os::folderfault(folder)) refusewitherror(path, error);
}

void writeoutput(const std::filesystem::path& path, std::string_view text, bool overwrite) {
    checkoutput(path, overwrite);
    try {
        sim::replacefile(path, text);
    } catch (const std::system_error& error) {
        refusewitherror(path, error.code());
    }
}

}  // namespace keld2::host
