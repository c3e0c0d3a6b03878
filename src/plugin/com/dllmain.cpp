// The library's four entry points, and its registration.
#include <windows.h>
//
#include <olectl.h>

#include <string>

#include "plugin/com/coobject.h"

namespace {

constexpr wchar_t progid[] = L"tq5keld2.ClsKELD2";
constexpr wchar_t description[] = L"tq5keld2 device-family plug-in";

HMODULE ownmodule() {
    HMODULE module = nullptr;
    GetModuleHandleExW(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        reinterpret_cast<LPCWSTR>(&ownmodule), &module);
    return module;
}

std::wstring ownpath() {
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(ownmodule(), path.data(), static_cast<DWORD>(path.size())));
    return path;
}

std::wstring guidtext(REFGUID guid) {
    wchar_t text[40] = {};
    StringFromGUID2(guid, text, 40);
    return text;
}

bool writevalue(const std::wstring& key, const wchar_t* name, const std::wstring& value) {
    HKEY opened = nullptr;
    if (RegCreateKeyExW(HKEY_CLASSES_ROOT, key.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &opened,
                        nullptr) != ERROR_SUCCESS)
        return false;
    const LSTATUS written =
        RegSetValueExW(opened, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                       static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
    RegCloseKey(opened);
    return written == ERROR_SUCCESS;
}

std::wstring classkey() { return L"CLSID\\" + guidtext(keld2::com::classid()); }

}  // namespace

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** object) {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (clsid != keld2::com::classid()) return CLASS_E_CLASSNOTAVAILABLE;
    return keld2::com::makefactory(iid, object);
}

STDAPI DllCanUnloadNow() { return keld2::com::liveobjects() == 0 ? S_OK : S_FALSE; }

STDAPI DllRegisterServer() {
    const std::wstring clsid = guidtext(keld2::com::classid());
    const std::wstring key = classkey();
    const bool written =
        writevalue(key, nullptr, description) &&
        writevalue(key + L"\\InprocServer32", nullptr, ownpath()) &&
        writevalue(key + L"\\InprocServer32", L"ThreadingModel", L"Apartment") &&
        writevalue(key + L"\\ProgID", nullptr, progid) &&
        writevalue(key + L"\\TypeLib", nullptr, guidtext(keld2::com::libraryid())) &&
        writevalue(progid, nullptr, description) &&
        writevalue(std::wstring(progid) + L"\\CLSID", nullptr, clsid);
    if (!written) return SELFREG_E_CLASS;
    ITypeLib* library = nullptr;
    if (FAILED(LoadTypeLibEx(ownpath().c_str(), REGKIND_REGISTER, &library)))
        return SELFREG_E_TYPELIB;
    library->Release();
    return S_OK;
}

STDAPI DllUnregisterServer() {
    RegDeleteTreeW(HKEY_CLASSES_ROOT, progid);
    RegDeleteTreeW(HKEY_CLASSES_ROOT, classkey().c_str());
    UnRegisterTypeLib(keld2::com::libraryid(), 1, 0, LOCALE_NEUTRAL, SYS_WIN32);
    return S_OK;
}
