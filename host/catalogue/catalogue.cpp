#include "host/catalogue/catalogue.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <sstream>

#include "host/catalogue/nearest.h"
#include "host/files/files.h"
#include "host/hosterror.h"
#include "host/os/process.h"

namespace keld2::host {

namespace {

namespace fs = std::filesystem;

fs::path standardfolder() {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing here changes the environment
    if (const char* named = std::getenv("KELD2_DEVICES"); named != nullptr && *named != 0)
        return named;
    std::error_code error;
    const fs::path program = os::programfile();
    const fs::path installed =
        (program.parent_path() / KELD2_DATA_FROM_PROGRAM / "devices").lexically_normal();
    const fs::path source = KELD2_SOURCE_DEVICES;
    const bool fromsource = !fs::is_directory(installed, error) && fs::is_directory(source, error);
    return fromsource ? source : installed;
}

std::string lowercase(std::string_view text) {
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return out;
}

}  // namespace

Catalogue Catalogue::standard() { return Catalogue(standardfolder()); }

Catalogue::Catalogue(fs::path folder) : folder_(std::move(folder)) {
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder_, error))
        if (entry.path().extension() == ".toml") names_.push_back(entry.path().stem().string());
    if (error)
        throw HostError(
            exitstatus::nofile,
            folder_.string() + ": the folder of the devices cannot be opened: " + error.message());
    std::sort(names_.begin(), names_.end());
}

Device Catalogue::find(const std::string& name) const {
    if (name.ends_with(".toml")) return readdevice(filenamed(name));
    if (std::binary_search(names_.begin(), names_.end(), name))
        return readdevice(folder_ / (name + ".toml"));
    std::string message = "there is no device \"" + name + "\"";
    const std::vector<std::string> nearest = nearestnames(name, names_);
    for (std::size_t i = 0; i < nearest.size(); ++i)
        message += (i == 0 ? "; nearest: " : ", ") + nearest[i];
    if (nearest.empty()) message += "; \"keld2 devices list\" shows those that there are";
    throw HostError(exitstatus::data, message);
}

bool Catalogue::matches(const Device& device, std::string_view text) {
    const std::string where = lowercase(device.name + "\n" + device.description);
    std::istringstream words(lowercase(text));
    for (std::string word; words >> word;)
        if (where.find(word) == std::string::npos) return false;
    return true;
}

}  // namespace keld2::host
