#include "host/os/terminal.h"

#include <poll.h>
#include <unistd.h>

namespace keld2::host::os {

namespace {

bool waitforinput(const std::function<bool()>& interrupted) {
    constexpr int period = 50;  // ms
    pollfd input{STDIN_FILENO, POLLIN, 0};
    while (!interrupted())
        if (::poll(&input, 1, period) > 0) return true;
    return false;
}

}  // namespace

bool isterminal(Stream stream) {
    switch (stream) {
        case Stream::input:
            return ::isatty(STDIN_FILENO) != 0;
        case Stream::output:
            return ::isatty(STDOUT_FILENO) != 0;
        default:
            return ::isatty(STDERR_FILENO) != 0;
    }
}

std::optional<std::string> readline(const std::function<bool()>& interrupted) {
    std::string line;
    for (char c = 0; waitforinput(interrupted) && ::read(STDIN_FILENO, &c, 1) == 1;) {
        if (c == '\n') return line;
        line += c;
    }
    return std::nullopt;
}

}  // namespace keld2::host::os
