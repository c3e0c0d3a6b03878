#include "platform/win32/win32strings.h"

#include <windows.h>
//
#include <oleauto.h>

#include <new>

namespace keld2 {

static_assert(sizeof(StringHandle) == sizeof(BSTR),
              "a handle holds an address of a 32-bit process");

namespace {

BSTR native(StringHandle handle) { return reinterpret_cast<BSTR>(handle); }

}  // namespace

StringHandle Win32Strings::allocate(std::u16string_view text) {
    if (text.empty()) return 0;
    BSTR made = SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.data()),
                                  static_cast<UINT>(text.size()));
    if (made == nullptr) throw std::bad_alloc();
    return reinterpret_cast<StringHandle>(made);
}

std::u16string Win32Strings::text(StringHandle handle) const {
    if (handle == 0) return {};
    return {reinterpret_cast<const char16_t*>(native(handle)), SysStringLen(native(handle))};
}

void Win32Strings::free(StringHandle handle) { SysFreeString(native(handle)); }

}  // namespace keld2
