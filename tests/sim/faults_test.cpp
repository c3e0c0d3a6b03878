#include "sim/faults.h"

#include <gtest/gtest.h>

#include "platform/fault.h"

namespace keld2::test {

namespace {

TEST(Faults, StrikeTheCallsThatTheyAimAt) {
    struct Aimed {
        const char* text;
        std::vector<bool> strikes;
    };
    const Aimed table[] = {{"bulkfail=2", {false, true, false, false}},
                           {"bulkfail=3+", {false, false, true, true}},
                           {"bulkfail", {true, true, true, true}}};
    for (const Aimed& row : table) {
        sim::Faults faults;
        sim::addfault(faults, row.text);
        for (const bool expected : row.strikes) {
            EXPECT_EQ(faults.bulkfail.strikes(), expected) << row.text;
            EXPECT_FALSE(faults.bulkhang.strikes());
        }
    }
}

TEST(Faults, AimByAddress) {
    sim::Faults faults;
    sim::addfault(faults, "stuck=0x1F:7");
    sim::addfault(faults, "stuck=31:0:1");
    ASSERT_EQ(faults.stuck.size(), 2U);
    EXPECT_EQ(faults.stuck[0].address, faults.stuck[1].address);
    EXPECT_FALSE(faults.stuck[0].level);
    EXPECT_TRUE(faults.stuck[1].level);
}

TEST(Faults, OfArmDevicesAimAtPhasesAndWeakBytes) {
    sim::Faults faults;
    for (const char* text : {"weak=7", "weak=0x10", "phasefail=verify:0x20", "nostop"})
        sim::addfault(faults, text);
    EXPECT_EQ(faults.weak, (std::vector<std::uint32_t>{7, 16}));
    EXPECT_EQ(faults.arm.failphase, sim::ArmPhase::verify);
    EXPECT_EQ(faults.arm.failaddress, 32U);
    EXPECT_TRUE(faults.arm.nostop);
    EXPECT_FALSE(faults.arm.neverdone);
}

TEST(Faults, RefuseWhatTheyDoNotKnow) {
    for (const char* text : {"",
                             "fire",
                             "stuck",
                             "stuck=",
                             "stuck=3",
                             "stuck=3:8",
                             "stuck=3:1:2",
                             "stuck=3:1:1:1",
                             "stuck=3:1:",
                             "stuck=0x:1",
                             "stuck=-1:1",
                             "stuck=4294967296:0",
                             "bulkfail=",
                             "bulkfail=0",
                             "bulkfail=x",
                             "bulkfail=1 ",
                             "nopower=1",
                             "Refuse",
                             "weak",
                             "weak=x",
                             "phasefail",
                             "phasefail=program",
                             "phasefail=rinse:1",
                             "phasefail=erase:",
                             "neverdone=1"}) {
        sim::Faults faults;
        try {
            sim::addfault(faults, text);
            ADD_FAILURE() << text;
        } catch (const RunFault& fault) {
            const std::string message = fault.what();
            EXPECT_TRUE(message.starts_with("fault '" + std::string(text) + "': ")) << message;
            EXPECT_NE(message.find("expected"), std::string::npos) << message;
        }
        EXPECT_TRUE(faults.stuck.empty());
    }
}

}  // namespace

}  // namespace keld2::test
