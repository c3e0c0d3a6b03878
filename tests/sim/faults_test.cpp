#include "sim/faults.h"

#include <gmock/gmock.h>

#include <sstream>

#include "sim/faultof.h"

namespace keld2::test {

namespace {

using testing::MatchesRegex;

TEST(Faults, AimByAddressAndPhase) {
    sim::Faults faults;
    for (const char* text :
         {"stuck=0x1F:7", "stuck=31:0:1", "weak=7", "weak=0X10", "phasefail=verify:0x20", "nostop"})
        sim::addfault(faults, text);
    ASSERT_EQ(faults.stuck.size(), 2U);
    EXPECT_EQ(faults.stuck[0].address, 31U);
    EXPECT_EQ(faults.stuck[1].address, 31U);
    EXPECT_FALSE(faults.stuck[0].level);
    EXPECT_TRUE(faults.stuck[1].level);
    EXPECT_EQ(faults.weak, (std::vector<std::uint32_t>{7, 16}));
    EXPECT_EQ(faults.arm.failphase, sim::ArmPhase::verify);
    EXPECT_EQ(faults.arm.failaddress, 32U);
    EXPECT_TRUE(faults.arm.nostop);
    EXPECT_FALSE(faults.arm.neverdone);
}

TEST(Faults, RefuseWhatTheyDoNotKnow) {
    std::istringstream texts(
        ";fire;Refuse;stuck;stuck=;stuck=3;stuck=3:8;stuck=3:1:2;stuck=3:1:1:1;stuck=3:1:;"
        "stuck=0x:1;stuck=-1:1;stuck=4294967296:0;bulkfail=;bulkfail=0;bulkfail=x;bulkfail=1 ;"
        "nopower=1;neverdone=1;weak;weak=x;phasefail;phasefail=program;phasefail=rinse:1;"
        "phasefail=erase:");
    for (std::string text; std::getline(texts, text, ';');) {
        sim::Faults faults;
        EXPECT_THAT(faultof([&] { sim::addfault(faults, text); }),
                    MatchesRegex("fault '" + text + "': .*, expected .+"));
        EXPECT_TRUE(faults.stuck.empty());
    }
}

}  // namespace

}  // namespace keld2::test
