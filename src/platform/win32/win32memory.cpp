#include "platform/win32/win32memory.h"

#include <windows.h>

namespace keld2 {

namespace {

constexpr DWORD fullaccess = 0xF001F;  // all access rights of a file mapping

HANDLE native(MemoryHandle handle) { return reinterpret_cast<HANDLE>(handle); }

}  // namespace

MemoryHandle Win32Memory::open(const std::string& name) {
    return reinterpret_cast<MemoryHandle>(
        OpenFileMappingA(fullaccess, FALSE, (scope_ + name).c_str()));
}

MemoryHandle Win32Memory::create(const std::string& name, std::int32_t size) {
    if (size <= 0) return 0;
    return reinterpret_cast<MemoryHandle>(
        CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                           static_cast<DWORD>(size), (scope_ + name).c_str()));
}

std::span<std::byte> Win32Memory::mapview(MemoryHandle handle) {
    void* base = MapViewOfFile(native(handle), fullaccess, 0, 0, 0);
    if (base == nullptr) return {};
    MEMORY_BASIC_INFORMATION region{};
    VirtualQuery(base, &region, sizeof region);
    return {static_cast<std::byte*>(base), region.RegionSize};
}

bool Win32Memory::unmapview(std::span<std::byte> view) {
    return UnmapViewOfFile(view.data()) != FALSE;
}

void Win32Memory::close(MemoryHandle handle) { CloseHandle(native(handle)); }

}  // namespace keld2
