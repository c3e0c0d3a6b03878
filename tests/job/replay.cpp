// The replay: its answers, its time, and the waits that it gives up.
#include <gmock/gmock.h>

#include "common/madefolder.h"
#include "host/hosterror.h"
#include "host/job/session.h"
#include "host/record/recorder.h"
#include "host/replay/replayprogrammer.h"
#include "host/trace/tracingplatform.h"
#include "platform/fault.h"
#include "shared/datacheck.h"
#include "testmachine.h"

namespace {

using namespace keld2;
using namespace keld2::host;

// A replayed programmer with the host's side of a session.
class Replayed {
  public:
    explicit Replayed(std::string_view text)
        : replay_(folder_.file("replay", text)),
          programmer_(replay_, {.job = job_, .machine = machine_, .trace = trace, .host = s}) {
        s.map(0, {});
        devcore = programmer_.devcore(s);
        transport = programmer_.transport(s);
    }

    Platform& platform() { return programmer_.platform(); }
    const ReplayProgrammer& programmer() const { return programmer_; }
    std::vector<std::uint8_t> bulk(std::size_t length) {
        std::vector<std::uint8_t> target(length, 0);
        s.usbpip2readresult[0] = 0;
        transport->usbbulkread(target, &s.usbpip2readresult[0]);
        return target;
    }

  private:
    test::MadeFolder folder_;
    std::filesystem::path job_ = folder_ / "job.toml";
    std::filesystem::path replay_;
    test::TestMachine machine_;

  public:
    TraceLog trace;
    SharedVariables s{machine_.memory(), machine_.strings()};

  private:
    ReplayProgrammer programmer_;

  public:
    std::unique_ptr<DevCore> devcore;
    std::unique_ptr<UsbTransport> transport;
};

TEST(Replay, AnswersInOrderThenStaysOrFallsBack) {
    Replayed r("regread 1\nmodeselect 2 # once\nregread * 3\r\nregread 4\n");
    EXPECT_EQ(r.devcore->regread(0), 1);
    EXPECT_EQ(r.devcore->regread(0), 3);
    EXPECT_EQ(r.devcore->regread(9), 3);
    EXPECT_EQ(r.devcore->modeselect(0), 2);
    EXPECT_EQ(r.devcore->modeselect(0), 0);
    EXPECT_EQ(Replayed("").devcore->regread(0), 255);
}

TEST(Replay, AnswersBulkReads) {
    Replayed r(
        "usbbulkread ok 0102\nusbbulkread ok 01020304\nusbbulkread fill 7\n"
        "usbbulkread fail\nusbbulkread hang\n");
    using Bytes = std::vector<std::uint8_t>;
    EXPECT_EQ(r.bulk(3), (Bytes{1, 2, 255}));
    EXPECT_EQ(r.bulk(3), (Bytes{1, 2, 3}));
    EXPECT_EQ(r.s.usbpip2readresult[0], 2);
    EXPECT_EQ(r.bulk(2), (Bytes{7, 7}));
    r.bulk(2);
    EXPECT_EQ(r.s.usbpip2readresult[0], 4);
    r.bulk(2);
    EXPECT_EQ(r.s.usbpip2readresult[0], 1);
    EXPECT_EQ(r.bulk(2), (Bytes{255, 255}));
}

TEST(Replay, LaysAStatusOverTheOneBefore) {
    Replayed r("transferwait ok 010203\ntransferwait ok 09\ntransferwait fail\n");
    EXPECT_TRUE(r.devcore->transferwait(15));
    EXPECT_TRUE(r.devcore->transferwait(15));
    EXPECT_EQ(r.s.ibuf1[0], 9);
    EXPECT_EQ(r.s.ibuf1[2], 3);
    EXPECT_FALSE(r.devcore->transferwait(15));
    EXPECT_TRUE(r.devcore->transferwait(15));
    EXPECT_EQ(r.s.ibuf1[0], 0x64);
}

TEST(Replay, PassesTimeByWaitsServicesAndLists) {
    Replayed r("");
    int fired = 0;
    r.platform().settimer(10, [&] { ++fired; });
    r.devcore->waitshort(8999);
    r.platform().service();
    EXPECT_EQ(fired, 0);
    r.devcore->waitshort(1);
    r.platform().service();
    EXPECT_EQ(fired, 1);
    r.devcore->qwaitlong(9);
    r.platform().service();
    EXPECT_EQ(fired, 1) << "a queued wait passes when the list runs";
    r.devcore->qrun();
    r.platform().service();
    EXPECT_EQ(fired, 2);
    r.devcore->waitlong(1000);
    const double before = r.platform().secondssincemidnight();
    r.devcore->waitlong(1500);
    EXPECT_NEAR(r.platform().secondssincemidnight() - before, 1.5, 1e-6);
}

TEST(Replay, StopsOnceBeforeTheTimersOfThatService) {
    Replayed r("stop 900\nstop 2\n");
    r.platform().settimer(3, [&] {
        if (r.s.prgresult[0] == 2) r.s.prgresult[0] = 3;
    });
    r.trace.line("qrun");
    r.platform().service();
    EXPECT_EQ(r.s.prgresult[0], 0);
    r.trace.line("qrun");
    r.trace.line("qrun");
    r.platform().service();
    EXPECT_EQ(r.s.prgresult[0], 2);
    r.platform().service();
    EXPECT_EQ(r.s.prgresult[0], 3) << "the timer found the stop";
    r.s.prgresult[0] = 0;
    r.platform().service();
    EXPECT_EQ(r.s.prgresult[0], 0) << "a stop happens once";
}

TEST(Replay, GivesUpAWaitOf600Seconds) {
    Replayed r("");
    r.trace.line("usbbulkread", "local", 48);
    for (int i = 0; i < 599'999; ++i) {
        r.platform().service();
        if (i % 1000 == 0) {
            r.trace.line("transferwait", 15, "->", "true");
            r.trace.line("usbcomwrite", 8, "341e000000000000", "->", 0);
            r.trace.line("progress", i % 100);
        }
    }
    EXPECT_THROW(r.platform().service(), RunFault);
    EXPECT_THROW(r.platform().service(), RunFault) << "and every one after it";
    EXPECT_FALSE(r.programmer().usable());
    try {
        r.programmer().finish();
        FAIL() << "not abandoned";
    } catch (const HostError& error) {
        EXPECT_EQ(error.status(), exitstatus::data);
        EXPECT_THAT(error.what(), testing::HasSubstr(
                                      "(transferwait) behind \"usbbulkread local 48\" never ends"));
    }
}

TEST(Replay, DoesNotGiveUpWhileTheProgrammerIsWorked) {
    Replayed r("");
    for (int i = 0; i < 700'000; ++i) {
        if (i % 100'000 == 0) r.trace.line("regread", 0, "->", 255);
        r.platform().service();
    }
    EXPECT_NO_THROW(r.programmer().finish());
}

TEST(Replay, GivesUpAQuestionThatComesBackForEver) {
    Replayed r("messagebox * retry\n");
    const auto ask = [&] {
        while (r.platform().messagebox(
                   {.buttons = BoxButtons::abortretryignore, .title = {}, .text = {}}) ==
               BoxAnswer::retry) {
        }
    };
    EXPECT_THROW(ask(), RunFault);
    EXPECT_FALSE(r.programmer().usable());
}

TEST(Record, RepeatsAndDefaultsAreNotSpelledOut) {
    Recorder recorder;
    for (const int answer : {1, 1, 255, 7, 7, 7}) recorder.number("regread", answer);
    recorder.number("modeselect", 2);
    for (int i = 0; i < 3; ++i) recorder.number("usbcomwrite", 0);
    recorder.box(BoxButtons::abortretryignore, BoxAnswer::retry);
    recorder.box(BoxButtons::abortretryignore, BoxAnswer::abort);
    recorder.stop(12);
    EXPECT_EQ(recorder.text(),
              "stop 12\nregread 1\nregread 1\nregread 255\nregread * 7\nmodeselect 2\n"
              "messagebox retry\n");
}

// A transport whose reads end when the test says so.
class LateTransport final : public UsbTransport {
  public:
    int usbcomwrite(std::span<const std::uint8_t>) override { return 0; }
    int usbbulkwrite(std::span<const std::uint8_t>) override { return 0; }
    void usbbulkread(std::span<std::uint8_t> target, std::uint8_t* result) override {
        target_ = target;
        result_ = result;
        *result = 1;
    }
    void end(std::vector<std::uint8_t> bytes, std::uint8_t state) {
        std::copy(bytes.begin(), bytes.end(), target_.begin());
        *result_ = state;
    }

  private:
    std::span<std::uint8_t> target_;
    std::uint8_t* result_ = nullptr;
};

TEST(Record, BulkReadsAreNotedWhenTheyAreDelivered) {
    Recorder recorder;
    LateTransport usb;
    std::vector<std::uint8_t> target(4, 0);
    std::uint8_t cell = 0;
    const auto read = [&](std::vector<std::uint8_t> bytes, std::uint8_t state) {
        recorder.bulkread(usb, target, &cell);
        EXPECT_EQ(cell, 1);
        usb.end(std::move(bytes), state);
        EXPECT_EQ(cell, 1) << "before it is delivered";
        recorder.deliver();
        EXPECT_EQ(cell, state);
    };
    read({1, 2, 255, 255}, 2);
    EXPECT_EQ(target, (std::vector<std::uint8_t>{1, 2, 255, 255}));
    read({9, 9, 9, 9}, 2);
    read({0}, 5);
    read({3, 3, 3, 3}, 1);
    read({255, 255, 255, 255}, 2);
    read({255, 255, 255, 255}, 2);
    EXPECT_EQ(recorder.text(),
              "usbbulkread ok 0102\nusbbulkread fill 9\nusbbulkread fail\nusbbulkread hang\n");
}

struct ByteCheck {
    int mode;
    int value;
    std::int32_t address;
    int answer;
    int result;  // of prgresult[0]
};

TEST(DataCheck, Modes) {
    test::TestMachine machine;
    SharedVariables s(machine.memory(), machine.strings());
    s.map(0, {});
    s.ibuffer[5] = 0x5A;
    for (const ByteCheck& c :
         {ByteCheck{1, 0x5A, 5, 0, 0}, ByteCheck{1, 0x5B, 5, 1, 1}, ByteCheck{2, 255, 5, 0, 0},
          ByteCheck{2, 254, 5, 1, 1}, ByteCheck{3, 0x5A, 5, 0, 0}, ByteCheck{3, 0xF1, 5, 0, 1},
          ByteCheck{0, 0x5C, 5, 0, 0}, ByteCheck{0, 1, 2200, 1, 1}, ByteCheck{2, 255, -1, 1, 1}}) {
        s.prgresult[0] = 0;
        EXPECT_EQ(checkbyte(s, static_cast<std::int16_t>(c.value), c.address, c.mode), c.answer)
            << "mode " << c.mode << " value " << c.value;
        EXPECT_EQ(s.prgresult[0], c.result) << "mode " << c.mode << " value " << c.value;
    }
    EXPECT_EQ(s.ibuffer[5], 0x5C);
    EXPECT_EQ(s.MainRtstr[1].text(), u">> 000005      F1         5A\n");

    EXPECT_EQ(checkword(s, 0x34, 0x12, 1099, 0), 0);
    EXPECT_EQ(s.ibuffer[2198], 0x34);
    EXPECT_EQ(checkword(s, 0x34, 0x13, 1099, 1), 1);
    EXPECT_EQ(checkword(s, 0x34, 0x12, 1100, 1), 1) << "outside the buffer";
    s.MainRtstr[1] = u"";
    EXPECT_EQ(checkword(s, 0xCD, 0xAB, 1099, 3), 0);
    EXPECT_EQ(s.MainRtstr[1].text(), u">> 00044B      ABCD         1234\n");
}

TEST(DataCheck, TheReportEndsWith256Lines) {
    test::TestMachine machine;
    SharedVariables s(machine.memory(), machine.strings());
    s.map(0, {});
    for (int i = 0; i < 255; ++i) ASSERT_EQ(checkbyte(s, 1, i, 3), 0) << i;
    EXPECT_EQ(checkbyte(s, 1, 255, 3), 1);
    const std::size_t length = s.MainRtstr[1].length();
    EXPECT_EQ(checkbyte(s, 1, 256, 3), 1);
    EXPECT_EQ(s.MainRtstr[1].length(), length);
    EXPECT_EQ(checkbyte(s, 0, 256, 3), 0) << "a byte that agrees";
}

TEST(Trace, TextsProgressAndLinesLeftOut) {
    const test::MadeFolder folder;
    Replayed r("messagebox cancel\n");
    r.trace.open(folder / "trace");
    r.trace.leaveout({"checkbyte", "qrun"});
    TracingPlatform platform(r.platform(), r.trace, r.s);
    r.trace.line("qrun");
    platform.messagebox({.buttons = BoxButtons::okcancel,
                         .icon = BoxIcon::question,
                         .title = u"a\"b\\",
                         .text = u"1\n2\r3\t4\x01\x1f\x7f é\U0001F600"});
    for (const std::uint8_t percent : std::initializer_list<std::uint8_t>{0, 5, 5, 0}) {
        r.s.prgmode[1] = percent;
        platform.service();
    }
    EXPECT_EQ(r.trace.lines(), 4);
    r.trace.flush();
    EXPECT_EQ(readtext(folder / "trace"),
              "messagebox okcancel question \"a\\\"b\\\\\" "
              "\"1\\n2\\r3\\t4\\x01\\x1f\x7f é\U0001F600\" -> cancel\n"
              "progress 5\nprogress 0\n");
}

}  // namespace
