// A replay as programmer: DevCore and UsbTransport that answer from a Replay.
#pragma once

#include "external/idledevcore.h"
#include "external/usbtransport.h"
#include "host/replay/replayfile.h"
#include "host/replay/virtualtime.h"
#include "shared/sharedvariables.h"

namespace keld2::host {

// The references must outlive the device. s: the views that the plug-in works on.
class ReplayDevCore final : public IdleDevCore {
  public:
    ReplayDevCore(Replay& replay, VirtualTime& time, SharedVariables& s)
        : replay_(replay), time_(time), s_(s) {}

    int readycheck() override;
    int modeselect(std::uint8_t mode) override;
    int modeselect2(std::uint8_t mode, int second) override;
    int modeselect3(std::uint8_t mode, int second) override;
    int armready() override;
    std::uint8_t regread(std::uint8_t reg) override;
    void waitshort(std::int32_t n) override { time_.waitshort(n); }
    void qwaitshort(std::int32_t n) override { time_.qwaitshort(n); }
    void waitlong(std::int32_t n) override { time_.waitlong(n); }
    void qwaitlong(std::int32_t n) override { time_.qwaitlong(n); }
    void qrun() override { time_.qrun(); }
    int checkbyte(std::int16_t value, std::int32_t address, int mode) override;
    int checkword(std::uint8_t low, std::uint8_t high, std::int32_t address, int mode,
                  int blank) override;
    bool transferwait(std::uint8_t count) override;

  private:
    Replay& replay_;
    VirtualTime& time_;
    SharedVariables& s_;
};

class ReplayTransport final : public UsbTransport {
  public:
    explicit ReplayTransport(Replay& replay) : replay_(replay) {}

    int usbcomwrite(std::span<const std::uint8_t> frame) override;
    void usbbulkread(std::span<std::uint8_t> target, std::uint8_t* result) override;
    int usbbulkwrite(std::span<const std::uint8_t> source) override;

  private:
    Replay& replay_;
};

}  // namespace keld2::host
