// TraceLog: the outward effects of a session as text lines, in their order.
//
// Every effect counts as a line, whether it is written or left out, and whether there is a file
// or not.
#pragma once

#include <charconv>
#include <concepts>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "host/files/streamedfile.h"

namespace keld2::host {

class TraceLog {
  public:
    TraceLog() = default;  // counts only

    // Writes the lines to a file from now on. Throws HostError when it cannot be opened.
    void open(const std::filesystem::path& path) { file_.open(path); }
    // Lines of these names are counted, but not written.
    void leaveout(std::vector<std::string> names) { without_ = std::move(names); }
    // watcher sees every line's name and the rest of the line behind it, before it is written.
    using Watcher = std::function<void(std::string_view name, std::string_view rest)>;
    void watch(Watcher watcher) { watcher_ = std::move(watcher); }

    // One line: the name, then each part behind a blank. Numbers are written in decimal.
    template <typename... Parts>
    void line(std::string_view name, const Parts&... parts) {
        line_.assign(name);
        (add(parts), ...);
        finish(name.size());
    }

    std::int64_t lines() const { return lines_; }
    // Writes what is buffered; throws HostError when the file cannot be written.
    void flush() {
        if (file_.isopen()) file_.flush();
    }

  private:
    void add(std::string_view part) { line_.append(1, ' ').append(part); }
    void add(std::integral auto number) {
        char digits[24];
        const auto end =
            std::to_chars(digits, digits + sizeof digits, static_cast<std::int64_t>(number)).ptr;
        line_.append(1, ' ').append(digits, end);
    }
    void finish(std::size_t namelength);
    bool isleftout(std::string_view name) const;

    StreamedFile file_;
    std::string line_;
    std::vector<std::string> without_;
    Watcher watcher_;
    std::int64_t lines_ = 0;
};

}  // namespace keld2::host
