// A programmer that does nothing: it counts what is queued, and every transfer is done at once.
#pragma once

#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <string>

#include "external/idledevcore.h"
#include "external/usbtransport.h"
#include "platform/posix/posixmemory.h"

namespace keld2::bench {

// Memory of this process alone; what killed benchmarks have left behind goes first.
inline std::string ownscope() {
    const std::string prefix = "keld2-bench-";
    removeleftovers(prefix);
    return prefix + std::to_string(getpid()) + "-";
}

class IdleDevCore : public keld2::IdleDevCore {
  public:
    explicit IdleDevCore(std::int64_t& queued) : queued_(queued) {}

    void qregwrite(std::int32_t, std::uint8_t) override { ++queued_; }
    void qregread(std::uint8_t) override { ++queued_; }
    void qwaitshort(std::int32_t) override { ++queued_; }
    void qwaitlong(std::int32_t) override { ++queued_; }
    void qbuswrite(std::int32_t, std::uint8_t, std::uint8_t) override { ++queued_; }
    void qbusconfig(std::int32_t, std::uint8_t, std::uint8_t) override { ++queued_; }

  private:
    std::int64_t& queued_;
};

class IdleTransport : public UsbTransport {
  public:
    int usbcomwrite(std::span<const std::uint8_t>) override { return 0; }
    void usbbulkread(std::span<std::uint8_t> target, std::uint8_t* result) override {
        std::fill(target.begin(), target.end(), std::uint8_t{0});
        *result = static_cast<std::uint8_t>(BulkState::done);
    }
    int usbbulkwrite(std::span<const std::uint8_t>) override { return 0; }
};

}  // namespace keld2::bench
