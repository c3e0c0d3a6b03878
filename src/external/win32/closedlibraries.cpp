#include "external/win32/closedlibraries.h"

#include <windows.h>

#include <string>

#include "shared/components.h"

namespace keld2 {

ClosedLibrary::ClosedLibrary(const char* name) : name_(name), module_(LoadLibraryA(name)) {
    if (module_ == nullptr) throw ComponentMissing(name);
}

ClosedLibrary::~ClosedLibrary() { FreeLibrary(static_cast<HMODULE>(module_)); }

void* ClosedLibrary::address(const char* name) const {
    const FARPROC found = GetProcAddress(static_cast<HMODULE>(module_), name);
    if (found == nullptr) throw ComponentMissing(std::string(name_) + " (no " + name + ")");
    return reinterpret_cast<void*>(found);
}

int ClosedTransport::usbcomwrite(std::span<const std::uint8_t> frame) {
    return comwrite_(frame.data(), static_cast<std::int32_t>(frame.size()));
}

void ClosedTransport::usbbulkread(std::span<std::uint8_t> target, std::uint8_t* result) {
    bulkread_(target.data(), static_cast<std::int32_t>(target.size()), result);
}

int ClosedTransport::usbbulkwrite(std::span<const std::uint8_t> source) {
    return bulkwrite_(source.data(), static_cast<std::int32_t>(source.size()));
}

void ClosedTextHelper::datstr(std::array<char16_t, 2>& text, std::uint8_t value, int width) {
    char digits[3] = "00";  // the library may end its text with a zero
    datstr_(digits, value, width);
    text = {static_cast<unsigned char>(digits[0]), static_cast<unsigned char>(digits[1])};
}

}  // namespace keld2
