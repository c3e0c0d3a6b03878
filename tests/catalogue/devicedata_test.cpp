#include "host/run/devicedata.h"

#include <gmock/gmock.h>

#include "common/madefolder.h"
#include "common/refusal.h"
#include "host/files/intelhex.h"

namespace keld2::host {
namespace {

using Bytes = std::vector<std::uint8_t>;

// Memory 0 to 7, marks behind it, a gap, options at 16 and 17; the buffer holds them otherwise.
Device bytedevice() {
    Device device;
    device.name = "chip";
    device.ranges = {{"memory", 0, 100, 8, "program"},
                     {"marks", 8, 70, 2, ""},
                     {"options", 16, 50, 2, "config"}};
    return device;
}

Device fusedevice() {
    Device device;
    device.name = "logic";
    device.content = Content::fuses;
    device.ranges = {{"fuses", 0, 1, 4, "program"}, {"user code", 4, 5, 32, "program"}};
    return device;
}

std::string hex(std::vector<Segment> segments) {
    Image image;
    image.segments = std::move(segments);
    return writeintelhex(image);
}

std::string jed(const std::string& fields) { return "\x02*" + fields + "\x03" + "0000"; }

struct LoadCase {
    std::string text;
    const char* step;
    std::string message;  // behind the file's name; empty: accepted
};

TEST(DeviceData, MustSuitTheDeviceAndTheSteps) {
    const std::string outside = " lie outside chip, expected addresses 0000 to 0009, 0010 to 0011";
    const LoadCase cases[] = {
        {hex({{8, {1, 2, 3, 4}}}), "verify", ": bytes 000A to 000B" + outside},
        {hex({{10, {1}}}), "verify", ": bytes 000A to 000A" + outside},
        {hex({{17, {1, 2}}}), "verify", ": bytes 0012 to 0012" + outside},
        {hex({{0x10000, {1}}}), "verify", ": bytes 10000 to 10000" + outside},
        {hex({{8, {1}}, {16, {1, 2}}}), "program",
         ": holds nothing to program, expected data for memory of chip"},
        {hex({{0, {1}}, {16, {1}}}), "config",
         ": gives no byte for address 0011, expected the options (0010 to 0011)"},
        {hex({{16, {1, 2}}}), "config", ""},
        {hex({{16, {1, 2}}}), "erase", ""},
        {jed("QF4*F0*"), "program",
         ": is a fuse map, chip holds bytes; expected .bin, .hex, .ihx, .s19, .srec or .mot"},
    };
    const test::MadeFolder folder;
    const Device device = bytedevice();
    for (const LoadCase& c : cases) {
        const auto path = folder.file(c.text[0] == ':' ? "a.hex" : "a.jed", c.text);
        const std::string refusal = refusalof(
            [&] { checkdata(device, loaddata(device, path, {}), {operationnamed(c.step)}); });
        EXPECT_EQ(refusal, c.message.empty() ? "accepted" : path.string() + c.message);
    }
    const auto path = folder.file("b.jed", jed("QF5*F0*"));
    EXPECT_EQ(refusalof([&] { loaddata(fusedevice(), path, {}); }),
              path.string() + ": 5 fuses, expected 4 for logic");
    EXPECT_EQ(refusalof([&] { outputformat(fusedevice(), "out.hex", {}); }),
              "out.hex: is no fuse map, which logic needs; expected .jed");
}

TEST(DeviceData, GoWhereTheRangesSayAndComeBack) {
    const test::MadeFolder folder;
    const Device bytes = bytedevice();
    const std::string text = hex({{2, {1, 2}}, {16, {3, 4}}});
    const DeviceData data = loaddata(bytes, folder.file("a.hex", text), {});
    ASSERT_EQ(data.parts.size(), 2u);
    EXPECT_EQ(data.parts[0].offset, 102);
    EXPECT_EQ(data.parts[0].bytes, (Bytes{1, 2}));
    EXPECT_EQ(data.parts[1].offset, 50);
    EXPECT_EQ(data.size, 4u);
    EXPECT_TRUE(data.gives("program") && data.gives("config"));
    Bytes buffer(200, 0xEE);
    std::copy_n("\x01\x02\x03\x04\x05\x06\x07\x08", 8, buffer.begin() + 100);
    const std::string written = filetext(bytes, buffer, FileFormat::intelhex);
    const DeviceData again = loaddata(bytes, folder.file("b.hex", written), {});
    EXPECT_EQ(again.parts.at(0).bytes, (Bytes{1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(again.parts.at(2).bytes, (Bytes{0xEE, 0xEE}));
}

TEST(DeviceData, OfFuseMapsAreACharacterAFuse) {
    const test::MadeFolder folder;
    const Device fuses = fusedevice();
    const auto path = folder.file("a.jed", jed("QF4*L0 1001*UH80000001*G1*"));
    const DeviceData data = loaddata(fuses, path, {});
    EXPECT_EQ(data.parts.at(0).bytes, (Bytes{'1', '0', '0', '1'}));
    EXPECT_EQ(data.parts.at(1).bytes.front(), '1');
    EXPECT_EQ(data.secured, true);
    const std::string cells = "01001" + std::string(31, '0') + "1";
    const FuseMap map =
        readjedec(filetext(fuses, {cells.begin(), cells.end()}, FileFormat::jedec), "map");
    EXPECT_EQ("0" + map.fuses + *map.usercode, cells);
}

}  // namespace
}  // namespace keld2::host
