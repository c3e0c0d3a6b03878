#include "host/commands/progressdisplay.h"

#include "host/os/terminal.h"

namespace keld2::host {

std::optional<ProgressStyle> progressstylenamed(std::string_view name) {
    if (name == "auto")
        return os::isterminal(os::Stream::error) ? ProgressStyle::bar : ProgressStyle::lines;
    if (name == "bar") return ProgressStyle::bar;
    if (name == "lines") return ProgressStyle::lines;
    if (name == "none") return ProgressStyle::none;
    return std::nullopt;
}

void ProgressDisplay::step(const std::string& caption) {
    caption_ = caption;
    percent_ = written_ = 0;
    clear();
}

void ProgressDisplay::percent(int value) {
    if (value == percent_ || value < 0 || value > 100) return;
    percent_ = value;
    if (style_ == ProgressStyle::bar) drawbar();
    if (style_ == ProgressStyle::lines) writeline();
}

void ProgressDisplay::clear() {
    if (drawn_) std::fputs("\r\033[K", out_);
    std::fflush(out_);
    drawn_ = false;
}

void ProgressDisplay::drawbar() {
    constexpr int width = 40;
    const int filled = percent_ * width / 100;
    const std::string bar = std::string(static_cast<std::size_t>(filled), '#') +
                            std::string(static_cast<std::size_t>(width - filled), '.');
    std::fprintf(out_, "\r\033[K[%s] %3d %% %s", bar.c_str(), percent_, caption_.c_str());
    std::fflush(out_);
    drawn_ = true;
}

void ProgressDisplay::writeline() {
    constexpr int stepsize = 10;
    if (percent_ < written_) written_ = 0;
    if (percent_ < written_ + stepsize) return;
    written_ = percent_ - percent_ % stepsize;
    std::fprintf(out_, "%3d %% %s\n", percent_, caption_.c_str());
    std::fflush(out_);
}

}  // namespace keld2::host
