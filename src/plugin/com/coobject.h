// The automation object: ClsKELD2 behind the dual interface _ClsKELD2, and its class factory.
#pragma once

#include <windows.h>
//
#include "clskeld2_com.h"  // from clskeld2.idl

namespace keld2::com {

REFCLSID classid();   // of the class ClsKELD2
REFGUID libraryid();  // of the type library

// Objects and server locks that are alive; the library may be unloaded at 0.
long liveobjects();

// A class factory for CLSID_ClsKELD2; S_OK, or why not.
HRESULT makefactory(REFIID iid, void** object);

// The type information of _ClsKELD2 from the library's own resources. Null when it is damaged.
ITypeInfo* typeinfo();

}  // namespace keld2::com
