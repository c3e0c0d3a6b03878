#include "plugin/com/variants.h"

namespace keld2::com {

namespace {

// The element type of the one parameter that a method takes by reference; VT_EMPTY: no parameter.
VARTYPE parametertype(ITypeInfo& info, DISPID id) {
    TYPEATTR* attributes = nullptr;
    if (FAILED(info.GetTypeAttr(&attributes))) return VT_EMPTY;
    const UINT functions = attributes->cFuncs;
    info.ReleaseTypeAttr(attributes);
    for (UINT i = 0; i < functions; ++i) {
        FUNCDESC* function = nullptr;
        if (FAILED(info.GetFuncDesc(i, &function))) continue;
        const bool wanted = function->memid == id && function->cParams > 0;
        const TYPEDESC type = wanted ? function->lprgelemdescParam[0].tdesc : TYPEDESC{};
        const VARTYPE element =
            wanted && type.vt == VT_PTR ? type.lptdesc->vt : static_cast<VARTYPE>(VT_EMPTY);
        info.ReleaseFuncDesc(function);
        if (wanted) return element;
    }
    return VT_EMPTY;
}

// An argument in the form that the type information wants.
struct Typed {
    VARIANT value;         // the typed temporary
    VARIANTARG reference;  // VT_BYREF to it
};

HRESULT makereference(const VARIANTARG& given, VARTYPE type, Typed& typed) {
    VariantInit(&typed.value);
    const HRESULT converted =
        VariantChangeType(&typed.value, const_cast<VARIANTARG*>(&given), 0, type);
    if (FAILED(converted)) return converted;
    VariantInit(&typed.reference);
    typed.reference.vt = static_cast<VARTYPE>(type | VT_BYREF);
    typed.reference.byref = &typed.value.byref;
    return S_OK;
}

// Writes the temporary back into the script's variable.
void copyback(VARIANTARG& given, Typed& typed) {
    if (given.vt == (VT_BYREF | VT_VARIANT)) VariantCopy(given.pvarVal, &typed.value);
}

}  // namespace

HRESULT invokebyreference(ITypeInfo& info, void* object, DISPID id, WORD flags,
                          DISPPARAMS* parameters, VARIANT* answer, EXCEPINFO* exception,
                          UINT* argumentfault) {
    const VARTYPE type = parametertype(info, id);
    const bool typedalready = parameters == nullptr || parameters->cArgs != 1 || type == VT_EMPTY ||
                              parameters->rgvarg[0].vt == (type | VT_BYREF);
    if (typedalready)
        return info.Invoke(object, id, flags, parameters, answer, exception, argumentfault);
    Typed typed;
    const HRESULT converted = makereference(parameters->rgvarg[0], type, typed);
    if (FAILED(converted)) {
        if (argumentfault != nullptr) *argumentfault = 0;
        return converted == DISP_E_OVERFLOW ? converted : DISP_E_TYPEMISMATCH;
    }
    DISPPARAMS changed = *parameters;
    changed.rgvarg = &typed.reference;
    const HRESULT done = info.Invoke(object, id, flags, &changed, answer, exception, argumentfault);
    if (SUCCEEDED(done)) copyback(parameters->rgvarg[0], typed);
    VariantClear(&typed.value);
    return done;
}

}  // namespace keld2::com
