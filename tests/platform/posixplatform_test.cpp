#include "platform/posix/posixplatform.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace keld2 {
namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

double processorseconds() {
    rusage used{};
    getrusage(RUSAGE_SELF, &used);
    const auto seconds = [](const timeval& t) {
        return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) / 1e6;
    };
    return seconds(used.ru_utime) + seconds(used.ru_stime);
}

TEST(PosixPlatform, WaitingCostsNoProcessor) {
    PosixPlatform platform;
    const double before = processorseconds();
    const auto end = Clock::now() + 500ms;
    while (Clock::now() < end) platform.service();
    EXPECT_LT(processorseconds() - before, 0.5 * 0.05);  // a busy loop takes all of it
}

TEST(PosixPlatform, SeesAWakeAtOnce) {
    PosixPlatform platform;
    for (int i = 0; i < 50; ++i) platform.service();  // well into the long waits
    int quick = 0;
    for (int i = 0; i < 20; ++i) {
        Clock::time_point woken;
        std::thread transport([&] {
            std::this_thread::sleep_for(2ms);
            woken = Clock::now();
            platform.wake();
        });
        const auto start = Clock::now();
        while (Clock::now() - start < 2ms) platform.service();
        transport.join();
        platform.service();  // the wake may have come before the wait
        if (Clock::now() - woken < 2ms) ++quick;
    }
    EXPECT_GE(quick, 15);
}

TEST(PosixPlatform, RunsPostedEventsAndTimersInService) {
    PosixPlatform platform;
    std::thread poster([&] { platform.post([&] { platform.killtimer(99); }); });
    poster.join();
    int ticks = 0;
    TimerId id = 0;
    id = platform.settimer(1, [&] {
        if (++ticks == 3) platform.killtimer(id);
    });
    const auto end = Clock::now() + 2s;
    while (ticks < 3 && Clock::now() < end) platform.service();
    const auto more = Clock::now() + 20ms;
    while (Clock::now() < more) platform.service();
    EXPECT_EQ(ticks, 3);
}

TEST(PosixPlatform, AHandlerMayKillAndSetTimers) {
    PosixPlatform platform;
    std::string ran;
    TimerId second = 0;
    TimerId first = 0;
    first = platform.settimer(1, [&] {
        ran += 'a';
        platform.killtimer(first);
        platform.killtimer(second);  // due in the same service
        platform.settimer(1, [&] { ran += 'c'; });
    });
    second = platform.settimer(1, [&] { ran += 'b'; });
    std::this_thread::sleep_for(5ms);
    platform.service();
    EXPECT_EQ(ran, "a");  // the new one waits for its time
    const auto end = Clock::now() + 2s;
    while (ran.size() < 3 && Clock::now() < end) platform.service();
    EXPECT_EQ(ran, "acc");
}

TEST(PosixPlatform, AHandlerThatThrowsLosesNoEvent) {
    PosixPlatform platform;
    std::string ran;
    platform.post([] { throw std::runtime_error("handler"); });
    platform.post([&] { ran += 'a'; });
    platform.post([&] {
        platform.post([&] { ran += 'c'; });
        platform.service();  // as a modal box does
        ran += 'b';
    });
    EXPECT_THROW(platform.service(), std::runtime_error);
    EXPECT_EQ(ran, "");
    platform.service();
    EXPECT_EQ(ran, "acb");
}

// How late a timer is in the middle of eight tries, whatever the waits' own rhythm is.
Clock::duration middlelateness() {
    PosixPlatform platform;
    std::vector<Clock::duration> late;
    for (int interval = 80; interval < 88; ++interval) {
        const auto due = Clock::now() + std::chrono::milliseconds(interval);
        bool over = false;
        const TimerId id = platform.settimer(interval, [&over] { over = true; });
        while (!over) platform.service();
        platform.killtimer(id);
        late.push_back(Clock::now() - due);
    }
    std::ranges::sort(late);
    return late[late.size() / 2];
}

TEST(PosixPlatform, ATimerEndsALongWait) {
    Clock::duration best = middlelateness();
    for (int i = 0; i < 5 && best >= 2ms; ++i)
        best = std::min(best, middlelateness());  // a busy machine
    EXPECT_LT(best, 2ms);
}

TEST(PosixPlatform, ANewTimerBeginsANewWait) {
    Clock::duration best = 1h;
    for (int i = 0; i < 5 && best >= 100ms; ++i) {  // a busy machine
        PosixPlatform platform;
        for (int k = 0; k < 50; ++k) platform.service();
        platform.settimer(5000, [] {});
        const auto start = Clock::now();
        for (int k = 0; k < 20; ++k) platform.service();
        best = std::min(best, Clock::now() - start);
    }
    EXPECT_LT(best, 100ms);  // 20 long waits take 160
}

TEST(PosixPlatform, AnswersBoxesSafelyWhenNobodyIsThere) {
    PosixPlatform platform;
    EXPECT_EQ(platform.messagebox({.buttons = BoxButtons::abortretryignore}), BoxAnswer::abort);
    EXPECT_EQ(platform.messagebox({.buttons = BoxButtons::okcancel}), BoxAnswer::cancel);
    EXPECT_EQ(platform.messagebox({}), BoxAnswer::ok);
}

class Files : public testing::Test {
  protected:
    Files()
        : folder_(std::filesystem::temp_directory_path() /
                  ("keld2-files-" + std::to_string(getpid()))) {
        std::filesystem::create_directories(folder_ / "algo2" / "clk");
        std::ofstream(folder_ / "algo2" / "clk" / "X_g.alg") << "image";
        std::ofstream(folder_ / "secret") << "no";
    }
    ~Files() override { std::filesystem::remove_all(folder_); }
    FileContent read(std::vector<std::u16string> parts) {
        PosixPlatform platform({.folder = folder_ / "algo2"});
        return platform.readfile(parts);
    }

    std::filesystem::path folder_;
};

TEST_F(Files, ReadsBelowTheRunsFolder) {
    EXPECT_EQ(read({u"clk", u"X_g.alg"}).bytes.size(), 5u);
    EXPECT_EQ(read({u"CLK", u"x_G.ALG"}).bytes.size(), 5u);  // names from Windows
    std::ofstream(folder_ / "algo2" / "clk" / "X_G.alg") << "other image";
    EXPECT_EQ(read({u"clk", u"X_G.alg"}).bytes.size(), 11u);  // an exact name comes first
    EXPECT_EQ(read({u"clk", u"x_g.alg"}).status, FileContent::Status::missing);  // which one?
    EXPECT_EQ(read({u"clk"}).status, FileContent::Status::missing);
    EXPECT_EQ(read({u"clk", u"none"}).status, FileContent::Status::missing);
}

TEST_F(Files, RefusesNamesThatLeaveTheFolder) {
    const std::vector<std::vector<std::u16string>> names{{u"..", u"secret"},
                                                         {u"../secret"},
                                                         {u"..\\secret"},
                                                         {u"c:secret"},
                                                         {u""},
                                                         {u"."},
                                                         {std::u16string(u"a\0b", 3)},
                                                         {}};
    for (const auto& name : names) EXPECT_EQ(read(name).status, FileContent::Status::refused);
}

}  // namespace
}  // namespace keld2
