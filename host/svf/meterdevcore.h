// MeterDevCore: a programmer that only counts the clocks and pauses that are queued.
#pragma once

#include "external/devcore.h"
#include "jtag/wiring.h"

namespace keld2::host {

class MeterDevCore final : public DevCore {
  public:
    explicit MeterDevCore(const JtagFamily& family) : tck_(family.wiring.tck) {}

    std::int64_t clocks() const { return clocks_; }
    std::int64_t microseconds() const { return microseconds_; }

    void qregwrite(std::int32_t value, std::uint8_t reg) override {
        if (reg >= shiftcode::clock8) {
            clocks_ += 8;
        } else if (reg == tck_.reg) {
            const bool high = (value & tck_.bits) != 0;
            if (high && !high_) ++clocks_;
            high_ = high;
        }
    }
    void qwaitshort(std::int32_t n) override { microseconds_ += n; }
    void qwaitlong(std::int32_t n) override { microseconds_ += std::int64_t{1000} * n; }

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
    std::uint8_t regread(std::uint8_t) override { return 255; }
    void qregread(std::uint8_t) override {}
    void waitshort(std::int32_t) override {}
    void waitlong(std::int32_t) override {}
    void qrun() override {}
    void buswrite(std::int32_t, std::uint8_t, std::uint8_t) override {}
    void qbuswrite(std::int32_t, std::uint8_t, std::uint8_t) override {}
    void busconfig(std::int32_t, std::uint8_t, std::uint8_t) override {}
    void qbusconfig(std::int32_t, std::uint8_t, std::uint8_t) override {}
    int checkbyte(std::int16_t, std::int32_t, int) override { return 0; }
    int checkword(std::uint8_t, std::uint8_t, std::int32_t, int, int) override { return 0; }
    bool transferwait(std::uint8_t) override { return true; }
    void loadalgobuf(std::int32_t&) override {}

  private:
    RegisterBits tck_;
    bool high_ = false;
    std::int64_t clocks_ = 0;
    std::int64_t microseconds_ = 0;
};

}  // namespace keld2::host
