// MeterDevCore: a programmer that only counts the clocks and pauses that are queued.
#pragma once

#include "external/idledevcore.h"
#include "jtag/wiring.h"

namespace keld2::host {

class MeterDevCore final : public IdleDevCore {
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

  private:
    RegisterBits tck_;
    bool high_ = false;
    std::int64_t clocks_ = 0;
    std::int64_t microseconds_ = 0;
};

}  // namespace keld2::host
