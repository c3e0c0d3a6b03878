#include "host/catalogue/catalogue.h"

#include <gmock/gmock.h>

#include "common/madefolder.h"
#include "common/refusal.h"
#include "host/catalogue/nearest.h"

namespace keld2::host {
namespace {

using ::testing::ElementsAre;

// A device file whose parts can be replaced one by one.
struct DeviceText {
    std::string head = "description = \"a chip\"\n";
    std::string operations = "operations = [\"read\", \"program\"]\n";
    std::string steps = "auto = [\"program\"]\n";
    std::string shared = "[shared]\nbuflength = 64\nprgmode = 21\n";
    std::string range = "[[range]]\nname = \"a\"\nfile = 0\nbuffer = 0\nlength = 64\n";

    std::string text() const { return head + operations + steps + shared + range; }
};

TEST(Catalogue, EveryDeviceOfTheProjectCanBeUsed) {
    const Catalogue catalogue(KELD2_TEST_DEVICES);
    EXPECT_THAT(catalogue.names(), ::testing::IsSupersetOf({"serial-2k", "serial-4k"}));
    for (const std::string& name : catalogue.names()) {
        SCOPED_TRACE(name);
        const Device device = catalogue.find(name);
        EXPECT_FALSE(device.description.empty());
        EXPECT_NE(device.sim.get("kind"), nullptr);
        for (const DeviceRange& range : device.ranges)  // the buffer holds all that files give
            EXPECT_LE(range.buffer + range.length, device.buffersize()) << range.name;
    }
}

TEST(Catalogue, SerialDevicesLieInTheBufferAsTheFamilyReadsThem) {
    const Catalogue catalogue(KELD2_TEST_DEVICES);
    for (const char* name : {"serial-2k", "serial-4k"}) {
        SCOPED_TRACE(name);
        const Device device = catalogue.find(name);
        const std::int64_t configuration = device.value("tlength") - 16;
        const std::int64_t idarea = configuration - device.value("bvcch");
        ASSERT_EQ(device.ranges.size(), 3u);
        EXPECT_EQ(device.ranges[0].length, idarea);
        EXPECT_EQ(device.ranges[1].buffer, idarea);
        EXPECT_EQ(device.ranges[1].length, device.value("pagelength")) << "one page is read";
        EXPECT_EQ(device.ranges[2].buffer, configuration);
    }
}

TEST(Catalogue, AWrongNameEndsWithTheNearestOnes) {
    const test::MadeFolder folder;
    for (const char* name : {"serial-2k", "serial-4k", "logic-17200", "parallel-64k"})
        folder.file(std::string(name) + ".toml", DeviceText{}.text());
    const Catalogue catalogue{folder / ""};
    struct Case {
        const char* wish;
        const char* message;
    };
    const Case cases[] = {
        {"serail-4k", "there is no device \"serail-4k\"; nearest: serial-4k, serial-2k"},
        {"17200", "there is no device \"17200\"; nearest: logic-17200"},
        {"../serial-4k", "there is no device \"../serial-4k\"; nearest: serial-4k, serial-2k"},
        {"zzz", "there is no device \"zzz\"; \"keld2 devices list\" shows those that there are"},
    };
    for (const Case& c : cases) EXPECT_EQ(refusalof([&] { catalogue.find(c.wish); }), c.message);
}

TEST(Catalogue, ADistanceCountsChangesAndSwaps) {
    EXPECT_EQ(editdistance("serial", "serial"), 0u);
    EXPECT_EQ(editdistance("", "abc"), 3u);
    EXPECT_EQ(editdistance("serail", "serial"), 1u);
    EXPECT_EQ(editdistance("kitten", "sitting"), 3u);
}

TEST(Catalogue, WordsAreSearchedInNameAndDescription) {
    Device device;
    device.name = "serial-4k";
    device.description = "Microcontroller with a serial byte port";
    EXPECT_TRUE(Catalogue::matches(device, ""));
    EXPECT_TRUE(Catalogue::matches(device, "4K port"));
    EXPECT_FALSE(Catalogue::matches(device, "4k parallel"));
}

TEST(DeviceFile, IsReadWhole) {
    const test::MadeFolder folder;
    const auto path = folder.file("chip.toml", DeviceText{}.text() + "written = \"config\"\n" +
                                                   "[sim]\nkind = \"serial\"\nsize = 64\n");
    const Device device = readdevice(path);
    EXPECT_EQ(device.name, "chip");
    EXPECT_EQ(device.operationlist(), "read, program");
    EXPECT_THAT(device.autosteps, ElementsAre(operationnamed("program")));
    EXPECT_EQ(device.value("prgmode"), 21);
    EXPECT_EQ(device.ranges.at(0).writtenby, "config");
    EXPECT_EQ(device.fileend(), 64);
    EXPECT_EQ(device.sim["size"].value_or(0), 64);
}

TEST(DeviceFile, WhatIsWrongIsSaidWithLineAndKey) {
    struct Case {
        std::string what;
        DeviceText device;
        std::string message;  // behind the file's name
    };
    const std::string names = "read, verify, blank, compare, program, erase, config, secure";
    const Case cases[] = {
        {"no description", {.head = ""}, ": description: is missing, expected one line of text"},
        {"content",
         {.head = "description = \"x\"\ncontent = \"bits\"\n"},
         ":2: content: is \"bits\", expected \"bytes\" or \"fuses\""},
        {"unknown part",
         {.head = "description = \"x\"\nvoltage = 5\n"},
         ":2: voltage: is no part of a device, expected [description], [content], [operations], "
         "[auto], [shared], [range] or [sim]"},
        {"no operations",
         {.operations = ""},
         ": operations: is missing, expected an array of some of " + names},
        {"operation",
         {.operations = "operations = [\"read\", \"wipe\"]\n"},
         ":2: operations: \"wipe\" is no operation, expected one of " + names},
        {"step",
         {.steps = "auto = [\"erase\"]\n"},
         ":3: auto: \"erase\" is none of the device's operations, expected some of read, program"},
        {"shared variable",
         {.shared = "[shared]\nbuflength = 64\nvcc = 5\n"},
         ":6: [shared] vcc: is no shared variable, expected the name of one"},
        {"shared value",
         {.shared = "[shared]\nbuflength = 64\nprgmode = 256\n"},
         ":6: [shared] prgmode: 256 is out of range, expected an integer from 0 to 255"},
        {"no range", {.range = ""}, ": range: is missing, expected one table [[range]] or more"},
        {"range without a name",
         {.range = "[[range]]\nfile = 0\nbuffer = 0\nlength = 1\n"},
         ":7: range[0] name: is missing, expected what the range holds"},
        {"empty range",
         {.range = "[[range]]\nname = \"a\"\nfile = 0\nbuffer = 0\nlength = 0\n"},
         ":11: range[0] length: 0 is out of range, expected an integer from 1 on"},
        {"range outside the buffer",
         {.range = "[[range]]\nname = \"a\"\nfile = 0\nbuffer = 2264\nlength = 1\n"},
         ":7: range[0] buffer: ends behind the main buffer of 2264 bytes, expected places below "
         "buflength + 2200"},
        {"key of a range",
         {.range = "[[range]]\nname = \"a\"\nfile = 0\nbuffer = 0\nlength = 1\nsize = 1\n"},
         ":12: [range] size: is no key of a range, expected one of buffer, file, length, name, "
         "written"},
        {"ranges out of order",
         {.range = "[[range]]\nname = \"a\"\nfile = 8\nbuffer = 0\nlength = 8\n"
                   "[[range]]\nname = \"b\"\nfile = 15\nbuffer = 8\nlength = 8\n"},
         ":12: range[1] file: address 15 lies before the end of \"a\", expected 16 or more"},
    };
    const test::MadeFolder folder;
    for (const Case& c : cases) {
        const auto path = folder.file("a.toml", c.device.text());
        EXPECT_EQ(refusalof([&] { readdevice(path); }), path.string() + c.message) << c.what;
    }
}

}  // namespace
}  // namespace keld2::host
