#include "host/os/process.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>
//
#include <shellapi.h>

#include <cerrno>
#include <cstdio>

#include "platform/numbers.h"

namespace keld2::host::os {

namespace {

// Bars and colours of a console are drawn by the escapes that other terminals know too.
void allowescapes(DWORD stream) {
    constexpr DWORD escapes = 4;  // ENABLE_VIRTUAL_TERMINAL_PROCESSING
    const HANDLE console = GetStdHandle(stream);
    DWORD mode = 0;
    if (GetConsoleMode(console, &mode) != FALSE) SetConsoleMode(console, mode | escapes);
}

}  // namespace

std::vector<std::string> arguments(int argc, const char* const* argv) {
    int count = 0;
    wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
    if (words == nullptr) return {argv, argv + argc};
    std::vector<std::string> list;
    for (int i = 0; i < count; ++i) {
        const std::wstring word(words[i]);
        list.push_back(utf8({word.begin(), word.end()}));
    }
    LocalFree(words);
    return list;
}

std::filesystem::path programfile() {
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path;
}

std::error_code folderfault(const std::filesystem::path& folder) {
    constexpr int writable = 2;
    if (::_waccess(folder.c_str(), writable) == 0) return {};
    return {errno, std::generic_category()};
}

TextStreams::TextStreams() : former_(GetConsoleOutputCP()) {
    for (std::FILE* stream : {stdin, stdout, stderr}) ::_setmode(::_fileno(stream), _O_BINARY);
    SetConsoleOutputCP(CP_UTF8);
    allowescapes(STD_OUTPUT_HANDLE);
    allowescapes(STD_ERROR_HANDLE);
}

TextStreams::~TextStreams() {
    if (former_ != 0) SetConsoleOutputCP(former_);
}

}  // namespace keld2::host::os
