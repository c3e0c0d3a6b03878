// What the simulated programmer does with threads, and with parts of the firmware.
#include "sim/programmer.h"

#include <gtest/gtest.h>

#include <atomic>
#include <numeric>

#include "sim/simbench.h"

namespace keld2::test {

namespace {

using Bytes = std::vector<std::uint8_t>;

sim::SimSetting faulty(const char* fault) {
    sim::SimSetting setting;
    if (fault != nullptr) sim::addfault(setting.faults, fault);
    return setting;
}

Bytes fetched(SimBench& b, std::size_t length) {
    Bytes target(length, 77);
    b.frame({10, 16, 64});
    EXPECT_EQ(b.bulkread(target), BulkState::done);
    return target;
}

TEST(SimProgrammer, EndsAHangingReadWithTheProgrammer) {
    Bytes target(3, 77);
    SimBench b(faulty("bulkhang=2"));
    EXPECT_EQ(fetched(b, 2), (Bytes{255, 0}));
    b.frame({10, 16, 64});
    b.usb->usbbulkread(target, &b.s.usbpip2readresult[0]);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_EQ(b.s.usbpip2readresult.acquire(0), static_cast<std::uint8_t>(BulkState::running));
    b.d->powerdown();  // does not wait for it
    EXPECT_EQ(target, Bytes(3, 77));
    EXPECT_EQ(fetched(b, 2), (Bytes{255, 0}));
}

TEST(SimProgrammer, WakesTheWaiterFromItsOwnThread) {
    std::atomic<int> woken{0};
    std::atomic<bool> own{false};
    sim::SimSetting setting;
    setting.wake = [&, caller = std::this_thread::get_id()] {
        own = std::this_thread::get_id() != caller;
        ++woken;
    };
    {
        SimBench b(std::move(setting));
        for (int i = 0; i < 50; ++i) fetched(b, 2);
    }
    EXPECT_EQ(woken, 50);
    EXPECT_TRUE(own);
}

// A part of the firmware that serves one frame kind and the transfers behind it.
class EchoPart final : public sim::FirmwarePart {
  public:
    bool frame(std::span<const std::uint8_t> frame) override { return taken_ = frame[0] == 51; }
    bool bulkread(std::span<std::uint8_t> data) override {
        if (taken_) std::iota(data.begin(), data.end(), std::uint8_t{1});
        return taken_;
    }
    bool bulkwrite(std::span<const std::uint8_t>) override { return taken_; }
    std::optional<bool> transferwait(std::uint8_t, std::span<std::uint8_t> ibuf1) override {
        ibuf1[0] = 100;
        return true;
    }

  private:
    bool taken_ = false;
};

TEST(SimProgrammer, LetsPartsServeFramesOfTheirOwn) {
    sim::SimSetting setting;
    for (const char* fault : {"transferfail=2", "sendfail=3"}) sim::addfault(setting.faults, fault);
    SimBench b(std::move(setting));
    b.programmer.addpart(std::make_unique<EchoPart>());
    EXPECT_EQ(b.usb->usbbulkwrite(Bytes(4)), 1);  // not its frame
    b.frame({51, 1, 128});
    EXPECT_EQ(b.usb->usbbulkwrite(Bytes(4)), 0);
    EXPECT_EQ(b.usb->usbbulkwrite(Bytes(4)), 1);
    Bytes target(3);
    EXPECT_EQ(b.bulkread(target), BulkState::done);
    EXPECT_EQ(target, (Bytes{1, 2, 3}));
    EXPECT_TRUE(b.d->transferwait(15));
    EXPECT_EQ(b.s.ibuf1[0], 100);
    EXPECT_FALSE(b.d->transferwait(15));
    EXPECT_EQ(fetched(b, 2), (Bytes{255, 0}));  // all else stays the programmer's own
}

}  // namespace

}  // namespace keld2::test
