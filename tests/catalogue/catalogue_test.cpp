#include "host/catalogue/catalogue.h"

#include <gmock/gmock.h>

#include "common/madefolder.h"
#include "common/refusal.h"
#include "host/catalogue/nearest.h"
#include "host/files/files.h"

namespace keld2::host {
namespace {

constexpr std::string_view chiptext =
    "description = \"a chip\"\noperations = [\"read\", \"program\"]\nauto = [\"program\"]\n"
    "content = \"fuses\"\n[shared]\nbuflength = 64\nprgmode = 21\n"
    "[[range]]\nname = \"a\"\nfile = 0\nbuffer = 2200\nlength = 64\nwritten = \"config\"\n"
    "[sim]\nkind = \"serial\"\nsize = 64\n";

TEST(Catalogue, EveryDeviceOfTheProjectCanBeUsed) {
    const Catalogue catalogue(KELD2_TEST_DEVICES);
    EXPECT_THAT(catalogue.names(), ::testing::IsSupersetOf({"serial-2k", "serial-4k"}));
    for (const std::string& name : catalogue.names()) {
        SCOPED_TRACE(name);
        const Device device = catalogue.find(name);
        EXPECT_FALSE(device.description.empty());
        EXPECT_NE(device.sim.get("kind"), nullptr);
    }
}

TEST(Catalogue, AWrongNameEndsWithTheNearestOnes) {
    const test::MadeFolder folder;
    for (const char* name : {"serial-2k", "serial-4k", "logic-17200", "parallel-64k"})
        folder.file(std::string(name) + ".toml", chiptext);
    folder.file("serial-3k.md", "");
    const Catalogue catalogue{folder / ""};
    const std::pair<const char*, const char*> cases[] = {
        {"serail-4k", "there is no device \"serail-4k\"; nearest: serial-4k, serial-2k"},
        {"17200", "there is no device \"17200\"; nearest: logic-17200"},
        {"../serial-4k", "there is no device \"../serial-4k\"; nearest: serial-4k, serial-2k"},
        {"zzz", "there is no device \"zzz\"; \"keld2 devices list\" shows those that there are"},
    };
    for (const auto& [wish, message] : cases)
        EXPECT_EQ(refusalof([&, name = wish] { catalogue.find(name); }), message);
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
    const Device device = readdevice(folder.file("chip.toml", chiptext));
    EXPECT_EQ(device.name, "chip");
    EXPECT_EQ(device.content, Content::fuses);
    EXPECT_EQ(device.operationlist(), "read, program");
    EXPECT_THAT(device.autosteps, ::testing::ElementsAre(operationnamed("program")));
    EXPECT_EQ(device.value("prgmode"), 21);
    EXPECT_EQ(device.ranges.at(0).writtenby, "config");
    EXPECT_EQ(device.fileend(), 64);
    EXPECT_EQ(device.sim["size"].value_or(0), 64);
}

// Each of these files begins with a comment: the message behind its name.
TEST(DeviceFile, WhatIsWrongIsSaidWithLineAndKey) {
    const std::filesystem::directory_iterator files(KELD2_TEST_REFUSED);
    EXPECT_NE(files, std::filesystem::directory_iterator()) << "there is nothing to refuse";
    for (const auto& entry : files) {
        const std::string path = entry.path().string();
        const std::string text = readtext(path);
        EXPECT_EQ(refusalof([&] { readdevice(path); }), path + text.substr(1, text.find('\n') - 1));
    }
}

}  // namespace
}  // namespace keld2::host
