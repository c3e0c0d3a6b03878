// Late-bound calls of methods whose parameters are typed references.
#pragma once

#include <windows.h>

namespace keld2::com {

// ITypeInfo::Invoke, for callers that pass variables of a script (references to VARIANTs) or
// literals where the method wants a typed reference: each argument is converted into a typed
// temporary, passed by reference, and copied back where the caller gave a variable.
HRESULT invokebyreference(ITypeInfo& info, void* object, DISPID id, WORD flags,
                          DISPPARAMS* parameters, VARIANT* answer, EXCEPINFO* exception,
                          UINT* argumentfault);

}  // namespace keld2::com
