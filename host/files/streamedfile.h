// A file that grows while something goes on, as a trace does.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace keld2::host {

class StreamedFile {
  public:
    StreamedFile() = default;  // takes nothing until it is open
    ~StreamedFile();
    StreamedFile(const StreamedFile&) = delete;
    StreamedFile& operator=(const StreamedFile&) = delete;

    // Throws HostError (66) when the file cannot be opened.
    void open(const std::filesystem::path& path);
    bool isopen() const { return file_.is_open(); }

    StreamedFile& operator<<(std::string_view text) {
        buffer_.append(text);
        if (buffer_.size() > bufferlimit) writebuffer();
        return *this;
    }

    // Writes what is buffered. Throws HostError (66) when something so far could not be written.
    void flush();

  private:
    static constexpr std::size_t bufferlimit = 1 << 20;  // bytes
    void writebuffer();

    std::filesystem::path path_;
    std::ofstream file_;
    std::string buffer_;  // what is not yet in the file
    int fault_ = 0;       // errno of the first write that failed
};

}  // namespace keld2::host
