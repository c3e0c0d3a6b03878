// Workspace: what the desktop host works on: a device, its main buffer, and the file in it.
#pragma once

#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "host/catalogue/catalogue.h"
#include "host/run/devicedata.h"

namespace keld2::desktop {

class Workspace {
  public:
    explicit Workspace(host::Catalogue catalogue) : catalogue_(std::move(catalogue)) {}

    const host::Catalogue& catalogue() const { return catalogue_; }
    bool hasdevice() const { return device_.has_value(); }
    const host::Device& device() const { return *device_; }

    // The buffer becomes blank. Throws HostError when the catalogue cannot give the device.
    void choose(const std::string& name);
    // Lays a file into a blank buffer. Throws HostError when it cannot be used; then all stays.
    void load(const std::filesystem::path& path);
    // Writes the device's ranges of the buffer. Throws HostError.
    void save(const std::filesystem::path& path) const;

    bool hasdata() const { return hasdata_; }  // anything but a blank buffer
    const std::vector<std::uint8_t>& buffer() const { return buffer_; }
    void setbuffer(std::vector<std::uint8_t> buffer);
    // The device's ranges of the buffer, as a run takes them; none when there is no data.
    std::vector<host::BufferPart> parts() const;
    // What the loaded file asks for that none of the steps does. Throws HostError when it gives too
    // little for them. Data that were read or edited are whole.
    std::vector<std::string> check(const std::vector<const host::Operation*>& steps) const;

    // What was recognised in the file: "firmware.hex: Intel HEX, 4096 bytes at 0000 to 0FFF,
    // sum 0007F80A". Empty before a file has been loaded.
    const std::string& fileline() const { return fileline_; }

  private:
    host::Catalogue catalogue_;
    std::optional<host::Device> device_;
    std::vector<std::uint8_t> buffer_;
    bool hasdata_ = false;
    std::optional<host::DeviceData> file_;  // while the buffer is as the file gave it
    std::string fileline_;
};

}  // namespace keld2::desktop
