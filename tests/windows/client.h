// A host process with its blocks, and the class as an early-bound client has it.
#pragma once

#include <windows.h>
//
#include "clskeld2_com.h"  // from the interface definition

#include <stdexcept>

#include "platform/win32/win32memory.h"
#include "platform/win32/win32strings.h"
#include "shared/sharedvariables.h"

namespace keld2::test {

struct HostBlocks {
    Win32Memory memory;
    Win32Strings strings;
    SharedVariables s{memory, strings};
};

// The object of the registered class; it has to be gone before the thread ends.
class Client {
  public:
    Client() {
        CoInitialize(nullptr);
        CLSID clsid{};
        if (FAILED(CLSIDFromProgID(L"tq5keld2.ClsKELD2", &clsid)) ||
            FAILED(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID__ClsKELD2,
                                    reinterpret_cast<void**>(&object_))))
            throw std::runtime_error("tq5keld2.ClsKELD2 cannot be created");
    }
    ~Client() {
        object_->Release();
        CoFreeUnusedLibrariesEx(0, 0);
        CoUninitialize();
    }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    _ClsKELD2* operator->() { return object_; }
    // The calls with which a host begins: its blocks, its texts.
    void begin() {
        std::int16_t num = 0;
        unsigned char warning = 0;
        object_->bufcomkeld2(&num);
        object_->sinitkeld2();
        object_->keld2warn(&warning);
    }
    HRESULT run() {
        VARIANT_BOOL usb = VARIANT_TRUE;
        return object_->runKeld2Prg(&usb);
    }

  private:
    _ClsKELD2* object_ = nullptr;
};

}  // namespace keld2::test
