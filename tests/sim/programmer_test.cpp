// What the simulated programmer does with lists, frames and bulk reads.
#include "sim/programmer.h"

#include <gtest/gtest.h>

#include <atomic>
#include <numeric>

#include "sim/simbench.h"

namespace keld2::test {

namespace {

using Bytes = std::vector<std::uint8_t>;

// Answers each sample of register 1 with the next number.
class CountingChip final : public sim::Chip {
  public:
    std::uint8_t registerread(const sim::Socket&, std::uint8_t reg, std::uint8_t idle) override {
        return reg == 1 ? ++count_ : idle;
    }

  private:
    std::uint8_t count_ = 0;
};

sim::SimSetting counting(std::initializer_list<const char*> faults = {}) {
    sim::SimSetting setting{.chip = std::make_unique<CountingChip>()};
    for (const char* text : faults) sim::addfault(setting.faults, text);
    return setting;
}

constexpr std::uint8_t armlow = 16;
constexpr std::uint8_t armhigh = 64;

// A list with reads, as a read job sends it.
void readjob(SimBench& b, int reads) {
    b.frame({10, armlow, armhigh});
    for (int i = 0; i < reads; ++i) b.d->qregread(1);
    b.d->qrun();
    b.frame({10, armlow, armhigh});
}

Bytes fetched(SimBench& b, std::size_t length) {
    Bytes target(length, 77);
    EXPECT_EQ(b.bulkread(target), BulkState::done);
    return target;
}

TEST(SimProgrammer, ReturnsWhatAListReadInItsOrder) {
    SimBench b(counting());
    readjob(b, 3);
    EXPECT_EQ(fetched(b, 6), (Bytes{1, 2, 3, 255, 255, 0}));
    b.d->qregread(9);
    b.d->qregread(1);
    b.d->qrun();  // after the arming frame: a new block
    b.d->qregread(1);
    b.d->qrun();  // and this one behind it
    b.frame({10, armlow, armhigh});
    EXPECT_EQ(fetched(b, 5), (Bytes{255, 4, 5, 255, 0}));
}

TEST(SimProgrammer, HandsALongReadBackOutPieceByPiece) {
    SimBench b(counting());
    readjob(b, 7);
    EXPECT_EQ(fetched(b, 4), (Bytes{1, 2, 3, 0}));
    b.frame({10, armlow, armhigh});
    EXPECT_EQ(fetched(b, 4), (Bytes{4, 5, 6, 0}));
    b.frame({10, armlow, armhigh});
    EXPECT_EQ(fetched(b, 4), (Bytes{7, 255, 255, 0}));
}

TEST(SimProgrammer, AnswersOnlyWhatAFrameAskedFor) {
    SimBench b(counting());
    Bytes target(4, 77);
    EXPECT_EQ(b.bulkread(target), BulkState::failed);
    readjob(b, 2);
    b.frame({10, 0, 0});  // reset
    EXPECT_EQ(b.bulkread(target), BulkState::failed);
    EXPECT_EQ(target, Bytes(4, 77));
}

TEST(SimProgrammer, RepeatsABlockThatGotLost) {
    SimBench b(counting({"bulkfail=1"}));
    readjob(b, 2);
    Bytes target(3, 77);
    EXPECT_EQ(b.bulkread(target), BulkState::failed);
    EXPECT_EQ(target, Bytes(3, 77));
    EXPECT_EQ(fetched(b, 3), (Bytes{1, 2, 0}));
}

TEST(SimProgrammer, EndsAHangingReadWithTheProgrammer) {
    Bytes target(3, 77);
    SimBench b(counting({"bulkhang=2"}));
    readjob(b, 1);
    EXPECT_EQ(fetched(b, 2), (Bytes{1, 0}));
    readjob(b, 1);
    b.usb->usbbulkread(target, &b.s.usbpip2readresult[0]);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_EQ(b.s.usbpip2readresult.acquire(0), static_cast<std::uint8_t>(BulkState::running));
    b.d->powerdown();  // does not wait for it
    EXPECT_EQ(target, Bytes(3, 77));
    readjob(b, 1);
    EXPECT_EQ(fetched(b, 2), (Bytes{3, 0}));
}

TEST(SimProgrammer, WakesTheWaiterFromItsOwnThread) {
    std::atomic<int> woken{0};
    std::atomic<bool> own{false};
    auto setting = counting();
    setting.wake = [&, caller = std::this_thread::get_id()] {
        own = std::this_thread::get_id() != caller;
        ++woken;
    };
    {
        SimBench b(std::move(setting));
        for (int i = 0; i < 50; ++i) {
            readjob(b, 1);
            fetched(b, 2);
        }
    }
    EXPECT_EQ(woken, 50);
    EXPECT_TRUE(own);
}

TEST(SimProgrammer, KeepsVirtualTime) {
    SimBench b(counting());
    const auto at = [&] { return b.programmer.socket().now / sim::microsecond; };
    const auto start = at();
    b.d->waitlong(3);
    b.d->waitshort(20);
    b.d->waitlong(-5);
    EXPECT_EQ(at() - start, 3020U);
    b.d->qwaitlong(2'000'000'000);
    b.d->qwaitshort(7);
    EXPECT_EQ(at() - start, 3020U);
    b.d->qrun();
    EXPECT_EQ(at() - start, 2'000'000'003'027U);
    b.d->qrun();  // the list is empty now
    EXPECT_EQ(at() - start, 2'000'000'003'027U);
}

TEST(SimProgrammer, RefusesAndFailsByCount) {
    SimBench b(counting({"refuse=2", "modefail=2+"}));
    const auto calls = [](auto call) { return std::vector<int>{call(), call(), call()}; };
    EXPECT_EQ(calls([&] { return b.d->readycheck(); }), (std::vector<int>{0, 1, 0}));
    EXPECT_EQ(calls([&] { return b.d->modeselect(7); }), (std::vector<int>{0, 2, 2}));
}

TEST(SimProgrammer, LosesSuppliesAndDriveWithPowerDown) {
    SimBench b(counting());
    b.d->setvcc(5000);
    b.d->setvpp(12'000, 0);
    b.d->setvccpin(40, 1);
    b.d->setvpppin(31, 1);
    b.d->regwrite(42, 6);
    EXPECT_EQ(b.programmer.socket().vccat(40), 5000);
    EXPECT_EQ(b.programmer.socket().vppat(31), 12'000);
    b.d->powerdown();
    b.d->setvcc(5000);
    EXPECT_EQ(b.programmer.socket().vccat(40), 0);
    EXPECT_EQ(b.programmer.socket().vppat(31), 0);
    EXPECT_EQ(b.programmer.socket().registers[6], 0);
    SimBench dead(counting({"nopower"}));
    dead.d->setvcc(5000);
    dead.d->setvccpin(40, 1);
    EXPECT_EQ(dead.programmer.socket().vccat(40), 0);
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
    SimBench b(counting({"transferfail=2"}));
    EXPECT_EQ(b.usb->usbbulkwrite(Bytes(4)), 1);
    EXPECT_FALSE(SimBench(counting()).d->transferwait(15));
    b.programmer.addpart(std::make_unique<EchoPart>());
    b.frame({51, 1, 128});
    EXPECT_EQ(b.usb->usbbulkwrite(Bytes(4)), 0);
    EXPECT_EQ(fetched(b, 3), (Bytes{1, 2, 3}));
    EXPECT_TRUE(b.d->transferwait(15));
    EXPECT_EQ(b.s.ibuf1[0], 100);
    EXPECT_FALSE(b.d->transferwait(15));
    readjob(b, 1);  // all else stays the programmer's own
    EXPECT_EQ(fetched(b, 2), (Bytes{1, 0}));
}

}  // namespace

}  // namespace keld2::test
