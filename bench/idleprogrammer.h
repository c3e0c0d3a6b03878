// A programmer that does nothing: it counts what is queued, and every transfer is done at once.
#pragma once

#include <algorithm>
#include <cstdint>

#include "external/devcore.h"
#include "external/usbtransport.h"

namespace keld2::bench {

class IdleDevCore : public DevCore {
  public:
    explicit IdleDevCore(std::int64_t& queued) : queued_(queued) {}

    void setvcc(std::int32_t) override {}
    void setvpp(std::int32_t, std::uint8_t) override {}
    void setgndpin(std::uint8_t, std::uint8_t) override {}
    void setvccpin(std::uint8_t, std::uint8_t) override {}
    void setvpppin(std::uint8_t, std::uint8_t) override {}
    void drivercommit() override {}
    void powerdown() override {}
    void signalpass(std::uint8_t) override {}
    void signalfail(std::uint8_t) override {}
    int readycheck() override { return 0; }
    void readyfail() override {}
    int modeselect(std::uint8_t) override { return 0; }
    int modeselect2(std::uint8_t, int) override { return 0; }
    int modeselect3(std::uint8_t, int) override { return 0; }
    int armready() override { return 0; }
    void regwrite(std::int32_t, std::uint8_t) override {}
    void qregwrite(std::int32_t, std::uint8_t) override { ++queued_; }
    std::uint8_t regread(std::uint8_t) override { return 0; }
    void qregread(std::uint8_t) override { ++queued_; }
    void waitshort(std::int32_t) override {}
    void qwaitshort(std::int32_t) override { ++queued_; }
    void waitlong(std::int32_t) override {}
    void qwaitlong(std::int32_t) override { ++queued_; }
    void qrun() override {}
    void buswrite(std::int32_t, std::uint8_t, std::uint8_t) override {}
    void qbuswrite(std::int32_t, std::uint8_t, std::uint8_t) override { ++queued_; }
    void busconfig(std::int32_t, std::uint8_t, std::uint8_t) override {}
    void qbusconfig(std::int32_t, std::uint8_t, std::uint8_t) override { ++queued_; }
    int checkbyte(std::int16_t, std::int32_t, int) override { return 0; }
    int checkword(std::uint8_t, std::uint8_t, std::int32_t, int, int) override { return 0; }
    bool transferwait(std::uint8_t) override { return true; }
    void loadalgobuf(std::int32_t&) override {}

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
