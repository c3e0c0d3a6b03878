#include <nlohmann/json.hpp>

#include "cli/bench.h"

namespace keld2::test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class Devices : public Bench {};

TEST_F(Devices, AreListedSearchedAndTold) {
    EXPECT_THAT(runprogram({"devices", "list"}).out,
                ::testing::ContainsRegex(
                    "\nserial-2k +Microcontroller with a serial byte port, 2048 bytes"));
    const ProgramResult found = runprogram({"devices", "search", "SERIAL", "4096"});
    EXPECT_THAT(found.out, HasSubstr("serial-4k"));
    EXPECT_THAT(found.out, Not(HasSubstr("serial-2k")));
    const ProgramResult none = runprogram({"devices", "search", "toaster"});
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.err, "keld2: no device matches \"toaster\"\n");
    EXPECT_THAT(runprogram({"devices", "info", "serial-2k"}).out,
                HasSubstr("  0000 to 07FF  program memory, written by program\n"
                          "  0800 to 081F  ID area, written by program\n"
                          "  0820 to 0821  configuration bytes, written by config\n"));
    const auto json =
        nlohmann::json::parse(runprogram({"devices", "info", "serial-2k", "--json"}).out);
    EXPECT_EQ(json["ranges"][0]["length"], 2048);
}

TEST_F(Devices, ComeFromTheFolderAndTheEnvironmentThatAreNamed) {
    EXPECT_EQ(runprogram({"erase"}, {{"KELD2_DEVICE", "serial-4k"}}).status, 0);
    const ProgramResult missing = runprogram({"devices", "list"}, {{"KELD2_DEVICES", "/no/such"}});
    EXPECT_EQ(missing.status, 66);
    folder_.file("broken.toml", "description = 5\n");
    const ProgramResult broken =
        runprogram({"devices", "list"}, {{"KELD2_DEVICES", (folder_ / "").string()}});
    EXPECT_EQ(broken.status, 65);
    EXPECT_THAT(broken.err, HasSubstr("broken.toml:1: description: is an integer, expected one "
                                      "line of text"));
}

}  // namespace
}  // namespace keld2::test
