// Stands in for tq5io.dll.
#include <windows.h>

#include <cstdio>
#include <cstring>

extern "C" void __stdcall datstr(char* text, unsigned char value, int width) {
    char digits[9] = {};
    std::snprintf(digits, sizeof digits, "%0*X", width, value);
    std::memcpy(text, digits, static_cast<std::size_t>(width));
}
