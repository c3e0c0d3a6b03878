// What a host, a component or another thread may do to a run in its middle.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "external/idledevcore.h"
#include "platform/platformdecorator.h"
#include "plugin/clskeld2.h"
#include "testmachine.h"

namespace keld2::test {
namespace {

constexpr std::int32_t maximum = std::numeric_limits<std::int32_t>::max();

// A run of an ARM device whose calls may be meddled with. The image has three bytes, and the
// programmer is done at once.
class MeddledRun {
  public:
    MeddledRun(std::int16_t model, std::uint8_t operation) {
        plugin_.bufcomkeld2(0);
        s().buflength[0] = 60000;
        s().mapbuffers({});
        s().modeltype[0] = model;
        s().modeltype[2] = -1;
        s().selmode[0] = 0x40;
        s().prgmode[0] = 10;
        s().tlength[0] = 64;
        s().wordmode[0] = 1;
        s().ramlg[0] = 64;
        s().wltbigendbuf[1] = 63;
        s().prgresult[1] = operation;
    }
    int run() {
        plugin_.runKeld2Prg(false);
        return s().prgresult[0];
    }
    SharedVariables& s() { return module_.variables(); }

    std::function<void(std::int32_t& length)> onloadalgobuf = [](std::int32_t&) {};
    std::function<void(std::uint8_t first)> onframe = [](std::uint8_t) {};
    std::function<void(int)> onservice = [](int) {};  // with its number
    std::uint8_t imagestate = 2;                      // of the image's read-back
    std::uint8_t* imagecell = nullptr;
    int framesof34 = 0, powerdowns = 0, sent = 0;  // sent: bytes of the image

  private:
    struct Machine final : PlatformDecorator {
        Machine(Platform& inner, MeddledRun& run) : PlatformDecorator(inner), run_(run) {}
        FileContent readfile(std::span<const std::u16string> parts) override {
            if (parts[1] == u"clk") return {};  // the first file, which goes out as it is
            return {.status = FileContent::Status::read, .bytes = {1, 2, 3}};
        }
        void service() override { run_.onservice(++services_); }
        MeddledRun& run_;
        int services_ = 0;
    };
    struct Core final : keld2::IdleDevCore {
        explicit Core(MeddledRun& run) : run_(run) {}
        bool transferwait(std::uint8_t) override { return (run_.s().ibuf1[0] = 100) != 0; }
        void loadalgobuf(std::int32_t& length) override { run_.onloadalgobuf(length); }
        void powerdown() override { ++run_.powerdowns; }
        MeddledRun& run_;
    };
    struct Transport final : UsbTransport {
        explicit Transport(MeddledRun& run) : run_(run) {}
        int usbcomwrite(std::span<const std::uint8_t> frame) override {
            run_.framesof34 += frame[0] == 0x34 ? 1 : 0;
            run_.onframe(frame[0]);
            return 0;
        }
        int usbbulkwrite(std::span<const std::uint8_t> source) override {
            if (run_.sent == 0) run_.sent = static_cast<int>(source.size());
            return 0;
        }
        void usbbulkread(std::span<std::uint8_t> target, std::uint8_t* result) override {
            std::copy_n(run_.s().algobuf.data(), std::min(target.size(), std::size_t{131072}),
                        target.begin());
            run_.imagecell = result;
            *result = run_.imagestate;
        }
        MeddledRun& run_;
    };

    TestMachine machine_;
    Machine meddled_{machine_, *this};
    Module module_{
        meddled_,
        {.devcore = [this](SharedVariables&) { return std::make_unique<Core>(*this); },
         .transport = [this](SharedVariables&) { return std::make_unique<Transport>(*this); }}};
    ClsKELD2 plugin_{module_};
};

constexpr std::int16_t familya = 50, familyb = 80;
constexpr std::uint8_t read = 2, compare = 5, program = 6, erase = 8;

TEST(ArmGuards, ReadNeedsRoomForItsConfigurationBytesCompareDoesNot) {
    for (const std::int32_t length : {-1, 62200 - 10, maximum})
        for (const std::uint8_t operation : {read, compare}) {
            MeddledRun run(familyb, operation);
            run.s().buflength[0] = length;
            EXPECT_EQ(run.run(), operation == read ? 3 : 0) << length;
            EXPECT_EQ(run.framesof34, operation == read ? 1 : 2) << length;
        }
}

TEST(ArmGuards, TheComponentsImageIsSentUnlessItsLengthIsImpossible) {
    for (const std::int32_t length : {2, 131072, 0, -1, 131073}) {
        MeddledRun run(familya, erase);
        run.onloadalgobuf = [&](std::int32_t& n) { n = length; };
        const bool good = length > 0 && length <= 131072;
        EXPECT_EQ(run.run(), good ? 0 : 4) << length;
        EXPECT_EQ(run.sent, good ? length : 0);
    }
}

TEST(ArmGuards, AFaultInAComponentEndsTheRun) {
    MeddledRun run(familya, erase);
    run.onloadalgobuf = [](std::int32_t&) { throw RunFault("a component"); };
    EXPECT_EQ(run.run(), 3);
    EXPECT_EQ(run.powerdowns, 0) << "before the firmware has been asked";
}

TEST(ArmGuards, AReadIsWaitedForThroughAllStatesOfBeingUnderWay) {
    MeddledRun run(familya, erase);
    run.imagestate = 1;
    int services = 0;
    run.onservice = [&](int n) {
        services = n;
        if (n == 5) *run.imagecell = 3;  // still under way
        if (n == 9) *run.imagecell = 4;
    };
    EXPECT_EQ(run.run(), 3);
    EXPECT_EQ(services, 9);
}

TEST(ArmGuards, StaleTextsEndTheRunWithItsResult) {
    MeddledRun run(familya, erase);
    static_cast<SharedVariable<StringHandle>&>(run.s().prgnote)[0] = 12345678;
    EXPECT_EQ(run.run(), 3);
    EXPECT_EQ(run.s().prgmode[1], 0);
    static_cast<SharedVariable<StringHandle>&>(run.s().prgnote)[0] = 0;
}

TEST(ArmGuards, ABufferReleasedInTheMiddleEndsTheRun) {
    MeddledRun run(familyb, program);
    run.s().wltbigendbuf[1] = 255;
    run.onframe = [&](std::uint8_t first) {
        if (first == 0x34 && run.framesof34 == 2) run.s().releasebuffers();
    };
    EXPECT_EQ(run.run(), 3);
    EXPECT_EQ(run.framesof34, 2) << "the next bulk found no buffer";
}

}  // namespace
}  // namespace keld2::test
