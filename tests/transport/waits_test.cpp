// The waits for bulk reads against a transport with threads of its own: the two signalling cells
// are all that orders the threads.
#include "run/waits.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>

#include "external/datstr.h"
#include "jtag/recordingdevcore.h"
#include "testmachine.h"
#include "transport/threadedtransport.h"

namespace keld2 {
namespace {

using namespace std::chrono_literals;
using test::Answer;
using test::ThreadedTransport;
using Clock = ThreadedTransport::Clock;

constexpr std::int16_t blocklength = 16385;

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
            if (s.ibuf2[i] != test::patternbyte(seed, static_cast<std::size_t>(i))) return i;
        return s.ibuf2[blocklength - 1] == 0 ? -1 : blocklength - 1;
    }
    // Writes value to prgresult[0] from another thread, as a Stop from outside the loop does.
    std::thread writer(std::uint8_t value, std::chrono::milliseconds after) {
        return std::thread([this, value, after] {
            std::this_thread::sleep_for(after);
            s.prgresult.release(0, value);
        });
    }
};

TEST(Waits, EveryByteIsThereWhenTheCellSaysDone) {
    Machine m(false);
    for (int i = 0; i < 40; ++i) {
        const auto seed = static_cast<std::uint8_t>(i * 11);
        m.usb.answers = {{.seed = seed, .delay = 300us * (i % 5)}};
        const int outcome = i % 2 == 0 ? ubulkread0(m.run, blocklength)
                                       : ubulkread2(m.run, std::int32_t{blocklength});
        ASSERT_EQ(outcome, status::goon);
        if (i % 2 != 0) m.s.ibuf2[blocklength - 1] = 0;  // the long form leaves the end byte
        ASSERT_EQ(m.wrongbyte(seed), -1) << "read " << i;
        ASSERT_EQ(m.s.prgresult[0], result::well);
    }
}

TEST(Waits, AFailedReadEndsByTheRulesOfItsForm) {
    constexpr Answer failure{.end = BulkState::failed, .delay = 500us};
    Machine m(false);
    m.usb.answers = {failure};
    EXPECT_EQ(ubulkread0(m.run, blocklength), status::ended);
    EXPECT_EQ(m.s.prgresult[0], result::timedout);

    m.s.prgresult[0] = result::failed;
    m.usb.answers = {failure, {.seed = 5}};
    EXPECT_EQ(ubulkread2(m.run, blocklength), status::goon);  // the second try
    EXPECT_EQ(m.s.prgresult[0], result::failed);

    m.usb.answers = {failure, failure, {.seed = 5}};
    EXPECT_EQ(ubulkread2(m.run, blocklength), status::ended);
    EXPECT_EQ(m.s.prgresult[0], result::well);
    EXPECT_EQ(m.usb.answers.size(), 1u);  // no third try
}

TEST(Waits, AStopFromAnotherThreadEndsTheLongFormOnly) {
    Machine m(false);
    m.usb.answers = {{.end = BulkState::running}};
    std::thread stop = m.writer(result::stopped, 30ms);
    const auto start = Clock::now();
    EXPECT_EQ(ubulkread2(m.run, blocklength), status::ended);
    EXPECT_LT(Clock::now() - start, 5s);  // its time-out is 10 s
    stop.join();
    EXPECT_EQ(m.s.prgresult[0], result::stopped);
    EXPECT_EQ(m.usb.started, 1);

    m.usb.answers = {{.seed = 9, .delay = 60ms}};
    stop = m.writer(result::stopped, 20ms);
    EXPECT_EQ(ubulkread0(m.run, blocklength), status::goon);  // looks at the cell alone
    stop.join();
    EXPECT_EQ(m.wrongbyte(9), -1);
    EXPECT_EQ(m.s.prgresult[0], result::stopped);  // left to the caller's next poll
}

// How long after its end a read is seen, in the middle of nine tries.
Clock::duration middlelateness() {
    Machine m(true);
    std::vector<Clock::duration> late;
    for (int i = 0; i < 9; ++i) {
        m.usb.answers = {{.delay = 60ms + 1ms * i}};
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
    const auto us = std::chrono::duration_cast<std::chrono::microseconds>(best);
    RecordProperty("median_us", static_cast<int>(us.count()));
}

double processorseconds() {
    timespec used{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    return static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) / 1e9;
}

TEST(Waits, AHangingReadCostsNoProcessor) {
    Machine m(true);
    m.usb.answers = {{.end = BulkState::running}};
    std::thread stop = m.writer(result::stopped, 1s);
    const double before = processorseconds();
    EXPECT_EQ(ubulkread2(m.run, blocklength), status::ended);
    const double used = processorseconds() - before;
    stop.join();
    EXPECT_LT(used, 0.05);  // a busy loop takes a second
    RecordProperty("permille", static_cast<int>(used * 1000));
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
