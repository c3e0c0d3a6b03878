// The process and its surroundings, as the operating system knows them.
#pragma once

#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

namespace keld2::host::os {

// The words of the command line in UTF-8, the program's own name first.
std::vector<std::string> arguments(int argc, const char* const* argv);

// The program's own file; empty when it cannot be told.
std::filesystem::path programfile();

// Why no file can be made in the folder; no error when one can.
std::error_code folderfault(const std::filesystem::path& folder);

// The standard streams carry UTF-8 with the plain line ends of the program's own texts. What has
// been set for it is as before when the object is gone.
class TextStreams {
  public:
    TextStreams();
    ~TextStreams();  // NOLINT(performance-trivially-destructible): not so on every system
    TextStreams(const TextStreams&) = delete;
    TextStreams& operator=(const TextStreams&) = delete;

  private:
    [[maybe_unused]] unsigned former_ = 0;  // encoding of a console's output, where it has one
};

}  // namespace keld2::host::os
