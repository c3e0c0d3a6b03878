#include "plugin/com/coobject.h"

#include <atomic>
#include <new>
#include <string>

#include "plugin/clskeld2.h"
#include "plugin/com/librarymodule.h"
#include "plugin/com/variants.h"

namespace keld2::com {

namespace {

std::atomic<long>& livecount() {
    static std::atomic<long> count{0};
    return count;
}

// Counts itself among the live objects, and its own references.
class Counted {
  public:
    Counted() { ++livecount(); }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

  protected:
    virtual ~Counted() { --livecount(); }
    ULONG add() { return ++references_; }
    ULONG drop() {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }

  private:
    std::atomic<ULONG> references_{1};
};

class Object final : public Counted, public _ClsKELD2 {
  public:
    // IUnknown
    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        if (object == nullptr) return E_POINTER;
        *object = nullptr;
        if (iid != IID_IUnknown && iid != IID_IDispatch && iid != IID__ClsKELD2)
            return E_NOINTERFACE;
        *object = static_cast<_ClsKELD2*>(this);
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return add(); }
    STDMETHODIMP_(ULONG) Release() override { return drop(); }

    // IDispatch
    STDMETHODIMP GetTypeInfoCount(UINT* count) override {
        if (count == nullptr) return E_POINTER;
        *count = 1;
        return S_OK;
    }
    STDMETHODIMP GetTypeInfo(UINT index, LCID, ITypeInfo** info) override {
        if (info == nullptr) return E_POINTER;
        *info = nullptr;
        if (index != 0) return DISP_E_BADINDEX;
        *info = typeinfo();
        return *info != nullptr ? S_OK : TYPE_E_CANTLOADLIBRARY;
    }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
        ITypeInfo* info = typeinfo();
        if (info == nullptr) return TYPE_E_CANTLOADLIBRARY;
        const HRESULT found = info->GetIDsOfNames(names, count, ids);
        info->Release();
        return found;
    }
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                        VARIANT* answer, EXCEPINFO* exception, UINT* argumentfault) override {
        ITypeInfo* info = typeinfo();
        if (info == nullptr) return TYPE_E_CANTLOADLIBRARY;
        const HRESULT done = invokebyreference(*info, static_cast<_ClsKELD2*>(this), id, flags,
                                               parameters, answer, exception, argumentfault);
        info->Release();
        return done;
    }

    // _ClsKELD2, in the order of the interface
    STDMETHODIMP runKeld2Prg(VARIANT_BOOL* usbenable) override {
        if (usbenable == nullptr) return E_POINTER;
        plugin().runKeld2Prg(*usbenable != VARIANT_FALSE);
        return S_OK;
    }
    STDMETHODIMP editfigkeld2() override { return (plugin().editfigkeld2(), S_OK); }
    STDMETHODIMP usercode() override { return (plugin().usercode(), S_OK); }
    STDMETHODIMP bufcomkeld2(short* num) override {
        if (num == nullptr) return E_POINTER;
        plugin().bufcomkeld2(*num);
        return S_OK;
    }
    STDMETHODIMP freesharebufferkeld2() override { return (plugin().freesharebufferkeld2(), S_OK); }
    STDMETHODIMP keld2warn(unsigned char* no) override {
        if (no == nullptr) return E_POINTER;
        plugin().keld2warn(*no);
        return S_OK;
    }
    STDMETHODIMP sinitkeld2() override { return (plugin().sinitkeld2(), S_OK); }

  private:
    static ClsKELD2 plugin() { return ClsKELD2(librarymodule()); }
};

class Factory final : public Counted, public IClassFactory {
  public:
    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        if (object == nullptr) return E_POINTER;
        *object = nullptr;
        if (iid != IID_IUnknown && iid != IID_IClassFactory) return E_NOINTERFACE;
        *object = static_cast<IClassFactory*>(this);
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return add(); }
    STDMETHODIMP_(ULONG) Release() override { return drop(); }
    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
        if (object == nullptr) return E_POINTER;
        *object = nullptr;
        if (outer != nullptr) return CLASS_E_NOAGGREGATION;
        auto* made = new (std::nothrow) Object;
        if (made == nullptr) return E_OUTOFMEMORY;
        const HRESULT answer = made->QueryInterface(iid, object);
        made->Release();
        return answer;
    }
    STDMETHODIMP LockServer(BOOL lock) override {
        livecount() += lock != FALSE ? 1 : -1;
        return S_OK;
    }
};

}  // namespace

REFCLSID classid() { return CLSID_ClsKELD2; }

REFGUID libraryid() { return LIBID_tq5keld2; }

ITypeInfo* typeinfo() {
    HMODULE module = nullptr;
    GetModuleHandleExW(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        reinterpret_cast<LPCWSTR>(&typeinfo), &module);
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size())));
    ITypeLib* library = nullptr;
    if (FAILED(LoadTypeLibEx(path.c_str(), REGKIND_NONE, &library))) return nullptr;
    ITypeInfo* info = nullptr;
    library->GetTypeInfoOfGuid(IID__ClsKELD2, &info);
    library->Release();
    return info;
}

long liveobjects() { return livecount().load(); }

HRESULT makefactory(REFIID iid, void** object) {
    auto* factory = new (std::nothrow) Factory;
    if (factory == nullptr) return E_OUTOFMEMORY;
    const HRESULT answer = factory->QueryInterface(iid, object);
    factory->Release();
    return answer;
}

}  // namespace keld2::com
