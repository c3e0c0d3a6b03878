// Module: all that lives between the calls of ClsKELD2.
//
// The library holds one for its automation class; a host or a test makes as many as it likes.
#pragma once

#include <memory>
#include <span>
#include <vector>

#include "external/datstr.h"
#include "external/devcore.h"
#include "external/usbtransport.h"
#include "platform/platform.h"
#include "shared/components.h"
#include "shared/sharedvariables.h"

namespace keld2 {

class Module {
  public:
    Module(Platform& platform, External external);
    ~Module();
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;

    Platform& platform() { return platform_; }
    SharedVariables& variables() { return variables_; }
    DevCore& devcore();
    UsbTransport& transport();
    TextHelper& helper();
    // The target of an ARM image's read-back. A transport may still be writing into it when the
    // run that began the read has been left, so it stays as long as the transport does.
    std::span<std::uint8_t> imagereadback();

  private:
    Platform& platform_;
    External external_;
    SharedVariables variables_;
    std::vector<std::uint8_t> imagereadback_;  // outlives the transport
    std::unique_ptr<DevCore> devcore_;
    std::unique_ptr<UsbTransport> transport_;
    std::unique_ptr<TextHelper> helper_;
};

}  // namespace keld2
