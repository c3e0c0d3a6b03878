// Fuse-array devices from the command line: JEDEC in, a chip's life, the same JEDEC out.
#include "cli/bench.h"
#include "host/files/files.h"

namespace keld2::test {
namespace {

using ::testing::HasSubstr;

class FuseMap : public Bench, public ::testing::WithParamInterface<const char*> {
  protected:
    FuseMap() { device_ = GetParam(); }

    std::size_t fuses() const { return std::stoul(device_.substr(device_.find('-') + 1)); }
    std::string map() const {
        std::string text;
        for (std::size_t i = 0; i < fuses(); ++i) text += i * i % 7 < 3 ? '1' : '0';
        return text;
    }
    std::string jedec(const std::string& name, const std::string& fuses) const {
        // Each byte of the user code reads the same from both ends, for the sake of one wiring.
        return folder_
            .file(name, "\x02test*\nQF" + std::to_string(fuses.size()) + "*\nF0*\nL0 " + fuses +
                            "*\nU10000001011001101100001100100100*\n\x03"
                            "0000\n")
            .string();
    }
};

INSTANTIATE_TEST_SUITE_P(Devices, FuseMap,
                         ::testing::Values("logic-17200-a", "logic-17200-b", "logic-35600-c"),
                         [](const auto& device) {
                             std::string name = device.param;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

TEST_P(FuseMap, GoesIntoAChipAndComesBack) {
    const std::string wanted = jedec("wanted.jed", map());
    mustwork({"erase"});
    mustwork({"blank"});
    mustwork({"program", wanted});
    mustwork({"verify", wanted});
    mustwork({"read", file("read.jed").string()});
    std::string changed = map();
    for (const std::size_t fuse : {0U, 171U, 355U, 9000U, 17199U}) changed[fuse] ^= 1;
    const ProgramResult compared = keld2({"compare", jedec("changed.jed", changed)});
    EXPECT_THAT(compared.err, HasSubstr("5 differences"));

    mustwork({"auto", file("read.jed").string()});
    mustwork({"read", file("again.jed").string()});
    EXPECT_EQ(host::readtext(file("again.jed")), host::readtext(file("read.jed")));
    mustwork({"verify", wanted});

    mustwork({"secure"});
    EXPECT_EQ(keld2({"verify", wanted}).status, 1);
    mustwork({"erase"});
    mustwork({"blank"});
}

TEST_P(FuseMap, FaultsOfTheChipShow) {
    mustwork({"erase"});
    faults_ = {"stuck=171:0"};
    const ProgramResult blank = keld2({"blank"});
    EXPECT_EQ(blank.status, 1);
    EXPECT_THAT(blank.out + blank.err, HasSubstr("000171"));
    faults_ = {"wrongid"};
    const ProgramResult foreign = keld2({"--on-box", "abort", "blank"});
    EXPECT_THAT(foreign.out + foreign.err, HasSubstr("Device Code Error"));
}

class FuseMapFile : public Bench {
  protected:
    FuseMapFile() { device_ = "logic-17200-b"; }
    std::string blankmap(std::size_t fuses, const std::string& fields) const {
        const std::string count = std::to_string(fuses);
        return folder_
            .file("a.jed", "\x02*QF" + count + "*F1*L0 0*" + fields +
                               "\x03"
                               "0000")
            .string();
    }
};

TEST_F(FuseMapFile, TheSecurityFuseIsNotWrittenUnasked) {
    const std::string wish = blankmap(17200, "G1*");
    EXPECT_THAT(keld2({"auto", wish}).err,
                HasSubstr("a.jed asks for the security fuse; program does not write it, secure "
                          "does\n"));
    mustwork({"verify", wish});
    mustwork({"auto", wish, "--steps", "erase,program,secure"});
    EXPECT_EQ(keld2({"verify", wish}).status, 1) << "a secured chip shows nothing";
}

TEST_F(FuseMapFile, OfAnotherDeviceIsRefused) {
    const std::string other = blankmap(35600, "");
    const ProgramResult result = keld2({"program", other});
    EXPECT_EQ(result.status, 65);
    EXPECT_EQ(result.err, "keld2: " + other + ": 35600 fuses, expected 17200 for logic-17200-b\n");
}

}  // namespace
}  // namespace keld2::test
