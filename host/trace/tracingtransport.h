// TracingTransport: writes a line for every frame and bulk transfer and passes it on.
#pragma once

#include <memory>
#include <string>

#include "external/usbtransport.h"
#include "host/trace/tracelog.h"
#include "shared/sharedvariables.h"

namespace keld2::host {

class TracingTransport final : public UsbTransport {
  public:
    // s: the plug-in's own views, by which sources and targets are named.
    TracingTransport(std::unique_ptr<UsbTransport> inner, TraceLog& trace, SharedVariables& s)
        : inner_(std::move(inner)), trace_(trace), s_(s) {}

    int usbcomwrite(std::span<const std::uint8_t> frame) override;
    void usbbulkread(std::span<std::uint8_t> target, std::uint8_t* result) override;
    int usbbulkwrite(std::span<const std::uint8_t> source) override;

  private:
    std::unique_ptr<UsbTransport> inner_;
    TraceLog& trace_;
    SharedVariables& s_;
};

// The place of a transfer: "ibuf2", "ibuffer+OFFSET", "algobuf+OFFSET", else "local".
std::string placename(const SharedVariables& s, const std::uint8_t* place);

}  // namespace keld2::host
