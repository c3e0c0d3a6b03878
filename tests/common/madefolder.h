// MadeFolder: a folder for the files of one test, gone afterwards.
#pragma once

#include <filesystem>
#include <random>
#include <string>
#include <string_view>

#include "host/files/files.h"

namespace keld2::test {

class MadeFolder {
  public:
    MadeFolder() {
        std::random_device random;
        do path_ = std::filesystem::temp_directory_path() / ("keld2-" + std::to_string(random()));
        while (!std::filesystem::create_directory(path_));
    }
    ~MadeFolder() { std::filesystem::remove_all(path_); }
    MadeFolder(const MadeFolder&) = delete;
    MadeFolder& operator=(const MadeFolder&) = delete;

    std::filesystem::path operator/(std::string_view name) const { return path_ / name; }
    // Writes a file and answers its path.
    std::filesystem::path file(std::string_view name, std::string_view content) const {
        host::writetext(path_ / name, content);
        return path_ / name;
    }

  private:
    std::filesystem::path path_;
};

}  // namespace keld2::test
