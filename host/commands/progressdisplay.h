// How far a run is, on standard error: a bar that is redrawn, or lines.
#pragma once

#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

namespace keld2::host {

enum class ProgressStyle { none, lines, bar };

// auto (a bar on a terminal, else lines), bar, lines, none.
std::optional<ProgressStyle> progressstylenamed(std::string_view name);

class ProgressDisplay {
  public:
    ProgressDisplay(ProgressStyle style, std::FILE* out) : style_(style), out_(out) {}
    ~ProgressDisplay() { clear(); }
    ProgressDisplay(const ProgressDisplay&) = delete;
    ProgressDisplay& operator=(const ProgressDisplay&) = delete;

    void step(const std::string& caption);  // of the operation that begins
    void percent(int value);                // 0 to 100; other values are not shown
    void clear();                           // takes the bar away, before other text is written

  private:
    void drawbar();
    void writeline();

    ProgressStyle style_;
    std::FILE* out_;
    std::string caption_;
    int percent_ = 0;
    int written_ = 0;  // of the last line
    bool drawn_ = false;
};

}  // namespace keld2::host
