// The device catalogue: a folder with one TOML file a device.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "host/catalogue/device.h"

namespace keld2::host {

class Catalogue {
  public:
    // The folder that the environment variable KELD2_DEVICES names, else the installed one, else
    // that of the source tree. Throws HostError (66) when there is none.
    static Catalogue standard();
    explicit Catalogue(std::filesystem::path folder);

    const std::filesystem::path& folder() const { return folder_; }
    const std::vector<std::string>& names() const { return names_; }  // sorted

    // A device by its name, or by the path of a file that ends in .toml. Throws HostError (65)
    // with the nearest names when there is none, and what readdevice throws.
    Device find(const std::string& name) const;
    // Every word of the text stands in the device's name or description, in either case.
    static bool matches(const Device& device, std::string_view text);

  private:
    std::filesystem::path folder_;
    std::vector<std::string> names_;
};

}  // namespace keld2::host
