// What came back from the chip while a device played texts.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "external/usbtransport.h"

namespace keld2::host {

using ReadBack = std::vector<std::vector<std::uint8_t>>;  // the transfers of one text, in order

// Collects the bulk reads of a run, text by text.
class ReadBackKeeper {
  public:
    void begintext();
    void open(std::span<const std::uint8_t> target, std::uint8_t* result);
    void close();  // keeps what the open read has brought, if it has come to its end

    const std::vector<ReadBack>& texts() const { return texts_; }

  private:
    std::span<const std::uint8_t> target_;
    std::uint8_t* result_ = nullptr;  // of the open read
    std::vector<ReadBack> texts_;
};

// Tells a keeper of the bulk reads. The block that a read has filled stays as it is until the next
// frame.
class KeptTransport final : public UsbTransport {
  public:
    KeptTransport(std::unique_ptr<UsbTransport> inner, ReadBackKeeper& keeper)
        : inner_(std::move(inner)), keeper_(keeper) {}

    int usbcomwrite(std::span<const std::uint8_t> frame) override {
        keeper_.close();
        return inner_->usbcomwrite(frame);
    }
    void usbbulkread(std::span<std::uint8_t> target, std::uint8_t* result) override {
        keeper_.open(target, result);
        inner_->usbbulkread(target, result);
    }
    int usbbulkwrite(std::span<const std::uint8_t> source) override {
        return inner_->usbbulkwrite(source);
    }

  private:
    std::unique_ptr<UsbTransport> inner_;
    ReadBackKeeper& keeper_;
};

}  // namespace keld2::host
