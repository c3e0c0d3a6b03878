#include "host/run/devicedata.h"

#include <gmock/gmock.h>

#include "common/madefolder.h"
#include "common/refusal.h"
#include "host/files/intelhex.h"

namespace keld2::host {
namespace {

// Program memory 0 to 7, a gap, configuration at 16 and 17; the buffer holds them the other way.
Device bytedevice() {
    Device device;
    device.name = "chip";
    device.ranges = {{"memory", 0, 100, 8, "program"}, {"options", 16, 50, 2, "config"}};
    return device;
}

Device fusedevice() {
    Device device;
    device.name = "logic";
    device.content = Content::fuses;
    device.ranges = {{"fuses", 0, 0, 4, "program"}, {"user code", 4, 4, 32, "program"}};
    return device;
}

class DeviceDataTest : public ::testing::Test {
  protected:
    std::filesystem::path hex(std::vector<Segment> segments) {
        Image image;
        image.segments = std::move(segments);
        return folder_.file("a.hex", writeintelhex(image));
    }
    std::filesystem::path jed(const std::string& fields) {
        return folder_.file("a.jed", "\x02*" + fields +
                                         "\x03"
                                         "0000");
    }
    test::MadeFolder folder_;
};

TEST_F(DeviceDataTest, BytesGoWhereTheRangesSay) {
    const Device device = bytedevice();
    const DeviceData data = loaddata(device, hex({{2, {1, 2}}, {16, {3, 4}}}), {});
    ASSERT_EQ(data.parts.size(), 2u);
    EXPECT_EQ(data.parts[0].offset, 102);
    EXPECT_EQ(data.parts[0].bytes, (std::vector<std::uint8_t>{1, 2}));
    EXPECT_EQ(data.parts[1].offset, 50);
    EXPECT_EQ(data.size, 4u);
    EXPECT_TRUE(data.gives("program") && data.gives("config"));
}

TEST_F(DeviceDataTest, BytesOutsideTheDeviceAreRefused) {
    const Device device = bytedevice();
    const std::string expected = " lie outside chip, expected addresses 0000 to 0007, 0010 to 0011";
    struct Case {
        Segment segment;
        std::string which;
    };
    const Case cases[] = {{{6, {1, 2, 3, 4}}, "0008 to 0009"},
                          {{8, {1}}, "0008 to 0008"},
                          {{17, {1, 2}}, "0012 to 0012"},
                          {{0x10000, {1}}, "10000 to 10000"}};
    for (const Case& c : cases) {
        const auto path = hex({c.segment});
        EXPECT_EQ(refusalof([&] { loaddata(device, path, {}); }),
                  path.string() + ": bytes " + c.which + expected);
    }
}

TEST_F(DeviceDataTest, StepsNeedTheirData) {
    const Device device = bytedevice();
    const auto refusal = [&](std::vector<Segment> segments, const char* step) {
        const DeviceData data = loaddata(device, hex(std::move(segments)), {});
        return refusalof([&] { checkdata(device, data, {operationnamed(step)}); });
    };
    const std::string name = (folder_ / "a.hex").string();
    EXPECT_EQ(refusal({{16, {1, 2}}}, "program"),
              name + ": holds nothing to program, expected data for memory of chip");
    EXPECT_EQ(refusal({{0, {1}}, {16, {1}}}, "config"),
              name + ": gives no byte for address 0011, expected the options (0010 to 0011)");
    EXPECT_EQ(refusal({{16, {1, 2}}}, "config"), "accepted");
    EXPECT_EQ(refusal({{16, {1, 2}}}, "erase"), "accepted");
}

TEST_F(DeviceDataTest, FuseMapsMustHaveTheDevicesFuses) {
    const Device device = fusedevice();
    const DeviceData data = loaddata(device, jed("QF4*L0 1001*UH80000001*G1*"), {});
    EXPECT_EQ(data.parts.at(0).bytes, (std::vector<std::uint8_t>{'1', '0', '0', '1'}));
    EXPECT_EQ(data.parts.at(1).bytes.front(), '1');
    EXPECT_EQ(data.secured, true);
    const auto path = jed("QF5*F0*");
    EXPECT_EQ(refusalof([&] { loaddata(device, path, {}); }),
              path.string() + ": 5 fuses, expected 4 for logic");
}

TEST_F(DeviceDataTest, TheFormatMustSuitTheDevice) {
    const auto map = jed("QF4*F0*");
    EXPECT_EQ(refusalof([&] { loaddata(bytedevice(), map, {}); }),
              map.string() +
                  ": is a fuse map, chip holds bytes; expected .bin, .hex, .ihx, .s19, "
                  ".srec or .mot");
    EXPECT_EQ(refusalof([&] { outputformat(fusedevice(), "out.hex", {}); }),
              "out.hex: is no fuse map, which logic needs; expected .jed");
}

TEST_F(DeviceDataTest, WhatIsReadIsWrittenAsItWasLoaded) {
    std::vector<std::uint8_t> buffer(200, 0xEE);
    std::copy_n("\x01\x02\x03\x04\x05\x06\x07\x08", 8, buffer.begin() + 100);
    const Device device = bytedevice();
    const DeviceData data = loaddata(
        device, folder_.file("out.hex", filetext(device, buffer, FileFormat::intelhex)), {});
    EXPECT_EQ(data.parts.at(0).bytes, (std::vector<std::uint8_t>{1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(data.parts.at(1).bytes, (std::vector<std::uint8_t>{0xEE, 0xEE}));

    const std::string cells = "1001" + std::string(31, '0') + "1";
    const FuseMap map =
        readjedec(filetext(fusedevice(), {cells.begin(), cells.end()}, FileFormat::jedec), "map");
    EXPECT_EQ(map.fuses + *map.usercode, cells);
}

}  // namespace
}  // namespace keld2::host
