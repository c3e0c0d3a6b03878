#include "host/os/terminal.h"

#include <windows.h>

namespace keld2::host::os {

namespace {

DWORD numberof(Stream stream) {
    switch (stream) {
        case Stream::input:
            return STD_INPUT_HANDLE;
        case Stream::output:
            return STD_OUTPUT_HANDLE;
        default:
            return STD_ERROR_HANDLE;
    }
}

constexpr char interruptkey = 3;

}  // namespace

bool isterminal(Stream stream) {
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(numberof(stream)), &mode) != FALSE;
}

// The system ends a console's read at an interrupt, with nothing read.
std::optional<std::string> readline(const std::function<bool()>& interrupted) {
    const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
    std::string line;
    char c = 0;
    for (DWORD count = 0;
         !interrupted() && ReadFile(input, &c, 1, &count, nullptr) != FALSE && count == 1;) {
        if (c == '\n') return line;
        if (c == interruptkey) break;
        if (c != '\r') line += c;
    }
    return std::nullopt;
}

}  // namespace keld2::host::os
