#include "windows/automation.h"

#include <algorithm>
#include <atomic>
#include <exception>

namespace keld2::test {

namespace {

// The counting that every object needs.
template <typename Interface>
class Counted : public Interface {
  public:
    virtual ~Counted() = default;
    ULONG STDMETHODCALLTYPE AddRef() override { return ++count_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --count_;
        if (left == 0) delete this;
        return left;
    }
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (iid != IID_IUnknown && iid != __uuidof(Interface)) {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        *object = static_cast<Interface*>(this);
        AddRef();
        return S_OK;
    }

  private:
    std::atomic<ULONG> count_{1};
};

class Automation final : public Counted<IDispatch> {
  public:
    explicit Automation(std::vector<AutomationMethod> methods) : methods_(std::move(methods)) {}

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                            DISPID* ids) override {
        const auto method = std::ranges::find(methods_, names[0], &AutomationMethod::name);
        if (method == methods_.end()) return DISP_E_UNKNOWNNAME;
        ids[0] = static_cast<DISPID>(method - methods_.begin());
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters,
                                     VARIANT* answer, EXCEPINFO*, UINT*) override {
        if (id < 0 || static_cast<std::size_t>(id) >= methods_.size()) return DISP_E_MEMBERNOTFOUND;
        try {
            const auto& method = methods_[static_cast<std::size_t>(id)];
            const std::int32_t number = method.call(CallArguments(*parameters));
            if (answer == nullptr) return S_OK;
            answer->vt = VT_I4;
            answer->lVal = number;
            return S_OK;
        } catch (const std::exception&) {
            return DISP_E_EXCEPTION;
        }
    }

  private:
    std::vector<AutomationMethod> methods_;
};

class Factory final : public Counted<IClassFactory> {
  public:
    explicit Factory(const AutomationClass& offered) : offered_(offered) {}

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
        if (outer != nullptr) return CLASS_E_NOAGGREGATION;
        auto* made = new Automation(offered_.methods());
        const HRESULT found = made->QueryInterface(iid, object);
        made->Release();
        return found;
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

  private:
    const AutomationClass& offered_;
};

std::wstring textof(REFGUID guid) {
    wchar_t text[40] = {};
    StringFromGUID2(guid, text, 40);
    return text;
}

bool write(const std::wstring& key, const wchar_t* name, const std::wstring& value) {
    return RegSetKeyValueW(HKEY_CLASSES_ROOT, key.c_str(), name, REG_SZ, value.c_str(),
                           static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t))) == 0;
}

}  // namespace

std::int32_t CallArguments::number(std::size_t i) const {
    VARIANT plain;
    VariantInit(&plain);
    if (FAILED(VariantChangeType(&plain, &(*this)[i], 0, VT_I4)))
        throw std::invalid_argument("an argument is no number");
    return plain.lVal;
}

std::wstring CallArguments::text(std::size_t i) const {
    VARIANT plain;
    VariantInit(&plain);
    if (FAILED(VariantChangeType(&plain, &(*this)[i], 0, VT_BSTR)))
        throw std::invalid_argument("an argument is no text");
    const std::wstring text(plain.bstrVal, SysStringLen(plain.bstrVal));
    VariantClear(&plain);
    return text;
}

HRESULT getclassobject(const AutomationClass& offered, REFCLSID clsid, REFIID iid, void** object) {
    *object = nullptr;
    if (clsid != offered.clsid) return CLASS_E_CLASSNOTAVAILABLE;
    auto* factory = new Factory(offered);
    const HRESULT found = factory->QueryInterface(iid, object);
    factory->Release();
    return found;
}

HRESULT registerserver(const AutomationClass& offered, const void* insidelibrary) {
    HMODULE library = nullptr;
    GetModuleHandleExW(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        static_cast<LPCWSTR>(insidelibrary), &library);
    std::wstring path(MAX_PATH, L'\0');
    path.resize(GetModuleFileNameW(library, path.data(), MAX_PATH));
    const std::wstring clsid = textof(offered.clsid);
    const std::wstring server = L"CLSID\\" + clsid + L"\\InprocServer32";
    const bool written = write(server, nullptr, path) &&
                         write(server, L"ThreadingModel", L"Apartment") &&
                         write(offered.progid + L"\\CLSID", nullptr, clsid);
    return written ? S_OK : E_FAIL;
}

HRESULT unregisterserver(const AutomationClass& offered) {
    RegDeleteTreeW(HKEY_CLASSES_ROOT, (L"CLSID\\" + textof(offered.clsid)).c_str());
    RegDeleteTreeW(HKEY_CLASSES_ROOT, offered.progid.c_str());
    return S_OK;
}

}  // namespace keld2::test
