// keld2 edit: a file is edited in place, and stays as it is when it is not.
#include <gtest/gtest.h>

#include <sstream>

#include "common/madefolder.h"
#include "host/cli/cli.h"
#include "host/files/files.h"
#include "host/files/imagefile.h"

namespace keld2::test {
namespace {

constexpr const char* microcontroller = R"(
description = "sixteen bytes and two of configuration"
operations = ["program"]
auto = ["program"]
[shared]
prgmode = 21
buflength = 48
tlength = 48
[[range]]
name = "memory"
file = 0
buffer = 0
length = 16
written = "program"
[[range]]
name = "configuration"
file = 32
buffer = 32
length = 2
written = "config"
[sim]
kind = "serial"
)";

constexpr const char* logic = R"(
description = "eight fuses and a user code"
content = "fuses"
operations = ["program"]
auto = ["program"]
[shared]
prgmode = 41
buflength = 41
tlength = 8
[[range]]
name = "fuses"
file = 0
buffer = 0
length = 8
written = "program"
[[range]]
name = "user code"
file = 8
buffer = 8
length = 32
written = "program"
[sim]
kind = "fuses"
)";

class EditCommand : public testing::Test {
  protected:
    EditCommand() {
        folder_.file("mcu.toml", microcontroller);
        folder_.file("logic.toml", logic);
    }
    int edit(const std::string& device, const std::string& what, const std::string& file,
             const std::string& actions) {
        const std::string chip = (folder_ / (device + ".toml")).string();
        const std::string path = (folder_ / file).string();
        const std::string script = folder_.file("actions.txt", actions).string();
        const char* argv[]{"keld2",      "-q",         "-d",     chip.c_str(),  "edit",
                           what.c_str(), path.c_str(), "--form", script.c_str()};
        return host::runcli(std::size(argv), argv);
    }
    MadeFolder folder_;
};

TEST_F(EditCommand, WritesConfigurationBackAndLeavesTheRest) {
    struct Case {
        const char* name;
        std::vector<host::Segment> before, after;
    };
    const Case cases[]{
        {"in a segment of its own", {{2, {1, 2}}, {32, {0xFF, 0xFF}}}, {{2, {1, 2}}, {32, {7, 1}}}},
        {"not in the file yet", {{0, {9}}}, {{0, {9}}, {32, {7, 1}}}},
        {"half of it", {{0, {9}}, {33, {2}}}, {{0, {9}}, {32, {7, 0}}}},
    };
    for (const Case& c : cases) {
        host::Image image;
        image.segments = c.before;
        folder_.file("a.hex", host::imagetext(image, host::FileFormat::intelhex));
        // a byte that the file lacks is blank: all entries 1
        EXPECT_EQ(
            edit("mcu", "config", "a.hex",
                 "[\"choose\", \"Combo1(3)\", 0]\n[\"choose\", \"Combo2(1)\", 0]\n[\"ok\"]\n"),
            0);
        const host::Image result = host::loadimage(folder_ / "a.hex");
        ASSERT_EQ(result.segments.size(), c.after.size()) << c.name;
        for (std::size_t i = 0; i < c.after.size(); ++i) {
            EXPECT_EQ(result.segments[i].address, c.after[i].address) << c.name;
            EXPECT_EQ(result.segments[i].bytes, c.after[i].bytes) << c.name;
        }
    }
}

TEST_F(EditCommand, WritesTheUserCodeOfAFuseMap) {
    folder_.file("a.jed",
                 "\x02made by hand*N a note*QF8*F0*L0000 10110001*\x03"
                 "0000");
    EXPECT_EQ(edit("logic", "usercode", "a.jed", "[\"key\",\"Text2\",\"0\"]\n[\"ok\"]\n"), 0);
    const host::FuseMap map = host::loadfusemap(folder_ / "a.jed");
    EXPECT_EQ(map.fuses, "10110001");
    EXPECT_EQ(map.usercode, "0000" + std::string(28, '1'));
    ASSERT_EQ(map.notes.size(), 1u);
    EXPECT_EQ(edit("logic", "usercode", "a.jed",
                   "[\"key\",\"Text3\",\"A\"]\n[\"key\",\"Text3\",\"B\"]\n[\"ok\"]\n"),
              0);
    EXPECT_EQ(host::loadfusemap(folder_ / "a.jed").usercode,
              "0100000101000010" + std::string(16, '1'));
}

TEST_F(EditCommand, LeavesTheFileAlone) {
    host::Image image;
    image.segments = {{0, {1, 2, 3}}};
    const std::string before = host::imagetext(image, host::FileFormat::intelhex);
    struct Case {
        const char *device, *editor, *file, *actions;
        int status;
    };
    for (const Case& c : {Case{"mcu", "config", "a.hex", "[\"cancel\"]\n", 0},
                          Case{"mcu", "config", "a.hex", "", 0},
                          Case{"mcu", "config", "a.hex", "[\"ok\", 1]\n", 65},
                          Case{"mcu", "config", "a.hex", "[\"select\", \"Text1\"]\n[\"ok\"]\n", 65},
                          Case{"mcu", "usercode", "a.hex", "[\"ok\"]\n", 64},
                          Case{"logic", "config", "a.hex", "[\"ok\"]\n", 64},
                          Case{"logic", "usercode", "a.hex", "[\"ok\"]\n", 65},
                          Case{"mcu", "config", "none.hex", "[\"ok\"]\n", 66}}) {
        folder_.file("a.hex", before);
        EXPECT_EQ(edit(c.device, c.editor, c.file, c.actions), c.status)
            << c.device << ' ' << c.editor << ' ' << c.actions;
        EXPECT_EQ(host::readtext(folder_ / "a.hex"), before) << c.actions;
    }
}

// The editors that a job's calls open take one block of actions each; a wrong action ends the
// session before the next call.
TEST_F(EditCommand, JobAnswersItsEditors) {
    struct Case {
        const char* actions;
        int status;
        const char* cells;  // of the user code, the option byte behind it
    };
    const std::string job = folder_
                                .file("job.toml",
                                      "[shared]\nprgmode = 1\ntlength = 4\nbuflength = 64\n"
                                      "[buffer]\nfill = 48\n"
                                      "[run]\ncalls = [\"usercode\", \"editfigkeld2\"]\n")
                                .string();
    const std::string replay = folder_.file("replay.txt", "").string();
    for (const Case& c :
         {Case{"[\"key\",\"Text1\",\"1\"]\n[\"ok\"]\n\n[\"select\",\"Option2(1)\"]\n[\"ok\"]\n", 0,
               "3130303022"},
          Case{"[\"ok\"]\n\n[\"cancel\"]\n", 0, "3030303030"},
          Case{"[\"key\",\"Text4\",\"1\"]\n[\"ok\"]\n\n[\"ok\"]\n", 65, ""}}) {
        const std::string script = folder_.file("actions.txt", c.actions).string();
        const std::string dump = (folder_ / "dump.json").string();
        const char* argv[]{"keld2",  "job",          job.c_str(), "--replay",  replay.c_str(),
                           "--form", script.c_str(), "--dump",    dump.c_str()};
        EXPECT_EQ(host::runcli(std::size(argv), argv), c.status) << c.actions;
        const std::string text = host::readtext(dump);
        if (c.status == 0) {
            EXPECT_NE(text.find("\"30303030" + std::string(c.cells)), text.npos) << c.actions;
        }
    }
}

}  // namespace
}  // namespace keld2::test
