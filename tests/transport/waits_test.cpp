// The waits for bulk reads against a transport with threads of its own: the two signalling cells
// are all that orders the threads.
#include "run/waits.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <ctime>
#include <thread>
#include <vector>

#include "external/datstr.h"
#include "jtag/recordingdevcore.h"
#include "testmachine.h"

namespace keld2 {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr std::int16_t blocklength = 16385;

struct Answer {
    bool hangs = false;
    std::uint8_t seed = 0;  // of the bytes, see patternbyte
    std::chrono::microseconds delay{0};
};

std::uint8_t patternbyte(std::uint8_t seed, std::size_t at) {
    return static_cast<std::uint8_t>(seed + at * 7 + at / 256);
}

// Answers bulk reads from threads of its own, as a USB library does.
class ThreadedTransport final : public UsbTransport {
  public:
    // woken: woken at the end of each read. nullptr: the cell alone tells the end, and nothing
    // else orders the bytes before it.
    explicit ThreadedTransport(Platform* woken) : woken_(woken) {}
    ~ThreadedTransport() override { await(); }

    Answer answer;
    int started = 0;

    // When the newest read ended.
    Clock::time_point ended() {
        await();
        return ended_;
    }

    int usbcomwrite(std::span<const std::uint8_t>) override { return 0; }
    int usbbulkwrite(std::span<const std::uint8_t>) override { return 0; }
    void usbbulkread(std::span<std::uint8_t> target, std::uint8_t* result) override {
        await();
        ++started;
        thread_ = std::thread([this, target, result] { carryout(target, result); });
    }

  private:
    void await() {
        if (thread_.joinable()) thread_.join();
    }

    void carryout(std::span<std::uint8_t> target, std::uint8_t* result) {
        const auto tell = [cell = std::atomic_ref(*result)](BulkState state) {
            cell.store(static_cast<std::uint8_t>(state), std::memory_order_release);
        };
        tell(BulkState::running);
        std::this_thread::sleep_for(answer.delay);
        tell(BulkState::stillrunning);
        if (answer.hangs) return;
        for (std::size_t i = 0; i < target.size(); ++i) target[i] = patternbyte(answer.seed, i);
        ended_ = Clock::now();
        tell(BulkState::done);
        if (woken_ != nullptr) woken_->wake();
    }

    Platform* woken_;
    Clock::time_point ended_;
    std::thread thread_;
};

struct Machine {
    explicit Machine(bool wakes) : usb(wakes ? &platform : nullptr) { s.maprows(0, nullptr); }

    test::TestMachine platform;
    SharedVariables s{platform.memory(), platform.strings()};
    testing::RecordingDevCore devcore;
    PlainTextHelper helper;
    ThreadedTransport usb;
    RunContext run{s, platform, devcore, usb, helper};

    // The first byte that is not what the answer's pattern says; -1: none.
    std::int64_t wrongbyte(std::uint8_t seed) {
        for (std::int64_t i = 0; i < blocklength - 1; ++i)
            if (s.ibuf2[i] != patternbyte(seed, static_cast<std::size_t>(i))) return i;
        return s.ibuf2[blocklength - 1] == 0 ? -1 : blocklength - 1;
    }
    // A Stop from outside the loop.
    std::thread stopper(std::chrono::milliseconds after) {
        return std::thread([this, after] {
            std::this_thread::sleep_for(after);
            s.prgresult.release(0, result::stopped);
        });
    }
};

TEST(Waits, EveryByteIsThereWhenTheCellSaysDone) {
    Machine m(false);
    for (int i = 0; i < 40; ++i) {
        const auto seed = static_cast<std::uint8_t>(i * 11);
        m.usb.answer = {.seed = seed, .delay = 300us * (i % 5)};
        m.s.prgresult[0] = i % 2 == 0 ? result::failed : result::well;  // the short form clears it
        const int outcome = i % 2 == 0 ? ubulkread0(m.run, blocklength)
                                       : ubulkread2(m.run, std::int32_t{blocklength});
        ASSERT_EQ(outcome, status::goon);
        if (i % 2 != 0) m.s.ibuf2[blocklength - 1] = 0;  // the long form leaves the end byte
        ASSERT_EQ(m.wrongbyte(seed), -1) << "read " << i;
        ASSERT_EQ(m.s.prgresult[0], result::well);
    }
}

TEST(Waits, AStopFromAnotherThreadEndsTheLongForm) {
    Machine m(true);
    m.usb.answer = {.hangs = true};
    m.s.ibuf2[blocklength - 1] = 7;
    std::thread stop = m.stopper(1s);
    const auto start = Clock::now();
    const std::clock_t before = std::clock();
    EXPECT_EQ(ubulkread2(m.run, blocklength), status::ended);
    const double used = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
    EXPECT_LT(Clock::now() - start, 5s);  // its time-out is 10 s
    stop.join();
    EXPECT_EQ(m.s.prgresult[0], result::stopped);
    EXPECT_EQ(m.s.ibuf2[blocklength - 1], 0);  // though nothing has come
    EXPECT_EQ(m.usb.started, 1);
    EXPECT_LT(used, 0.05);  // a busy loop takes a second
}

TEST(Waits, AStopFromAnotherThreadIsLeftAloneByTheShortForm) {
    Machine m(false);
    m.usb.answer = {.seed = 9, .delay = 60ms};
    std::thread stop = m.stopper(20ms);
    EXPECT_EQ(ubulkread0(m.run, blocklength), status::goon);  // looks at the cell alone
    stop.join();
    EXPECT_EQ(m.wrongbyte(9), -1);
    EXPECT_EQ(m.s.prgresult[0], result::stopped);  // for the caller's next poll
}

// How long after its end a read is seen, in the middle of nine tries.
Clock::duration middlelateness() {
    Machine m(true);
    std::vector<Clock::duration> late;
    for (int i = 0; i < 9; ++i) {
        m.usb.answer = {.delay = 60ms + 1ms * i};
        if (ubulkread0(m.run, 256) != status::goon) return Clock::duration::max();
        const auto seen = Clock::now();
        late.push_back(seen - m.usb.ended());
    }
    std::ranges::sort(late);
    return late[late.size() / 2];
}

TEST(Waits, SeeAFinishedTransferAtOnceAfterALongWait) {
    Clock::duration best = middlelateness();
    for (int i = 0; i < 4 && best >= 1ms; ++i)
        best = std::min(best, middlelateness());  // a busy machine
    EXPECT_LT(best, 1ms);
}

TEST(Waits, PostedEventsOfManyThreadsRunOnceEach) {
    Machine m(true);
    constexpr int each = 500;
    int ran = 0;  // by the serving thread alone
    std::vector<std::thread> posters;
    for (int t = 0; t < 4; ++t)
        posters.emplace_back([&] {
            for (int i = 0; i < each; ++i) m.platform.post([&ran] { ++ran; });
        });
    const auto end = Clock::now() + 10s;
    while (ran < 4 * each && Clock::now() < end) m.platform.service();
    for (std::thread& poster : posters) poster.join();
    m.platform.service();
    EXPECT_EQ(ran, 4 * each);
}

}  // namespace
}  // namespace keld2
