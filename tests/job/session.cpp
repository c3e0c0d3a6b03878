// What a session answers and leaves, beyond the run itself.
#include "host/job/session.h"

#include <gmock/gmock.h>

#include <csignal>
#include <nlohmann/json.hpp>

#include "common/madefolder.h"
#include "host/commands/attendedprogrammer.h"
#include "host/hosterror.h"
#include "host/programmer/programmer.h"

namespace {

using namespace keld2;
using namespace keld2::host;
using testing::HasSubstr;

constexpr auto runjob = R"(
    [shared]
    prgmode = 24
    prgresult = [0, 7]
    prgnote = ["", "", " ok", " failed", ">>stopped"]
    [run]
    calls = ["runKeld2Prg"])";

TEST(Session, AnswersTheResultCell) {
    const test::MadeFolder folder;
    const auto replay = folder.file("r", "");
    for (const auto& [result, status] : {std::pair{0, 0}, {1, 1}, {2, 2}, {3, 3}, {4, 4}, {5, 1}}) {
        const auto job = folder.file(
            "j.toml", "[shared]\nprgresult = " + std::to_string(result) + "\n[run]\ncalls = []\n");
        EXPECT_EQ(runsession(readjob(job), replayed(replay), {}), status) << result;
    }
}

TEST(Session, AnInterruptStopsTheRun) {
    const test::MadeFolder folder;
    const ProgrammerFactory interrupted = [&](const ProgrammerSetting& setting) {
        auto programmer = attended(replayed(folder.file("r", "")), {})(setting);
        std::raise(SIGINT);
        return programmer;
    };
    const Job job = readjob(folder.file("j.toml", runjob));
    EXPECT_EQ(runsession(job, interrupted,
                         {.record = folder / "record", .trace = {}, .dump = folder / "d"}),
              exitstatus::stopped);
    const auto dump = nlohmann::json::parse(readtext(folder / "d"));
    EXPECT_THAT(dump["MainRtstr"][0].get<std::string>(), HasSubstr(">>stopped\n"));
    EXPECT_EQ(runsession(job, replayed(folder / "record"), {}), exitstatus::stopped);
}

TEST(Session, ARunThatWaitsForEverLeavesItsTraceAndDump) {
    const test::MadeFolder folder;
    const Job job =
        readjob(std::string(KELD2_TEST_JOBS) + "/arm-device-code-and-stale-frame-bytes/job.toml");
    try {
        runsession(job, replayed(folder.file("r", "usbbulkread hang\n")),
                   {.record = folder / "record", .trace = folder / "t", .dump = folder / "d"});
        FAIL() << "not abandoned";
    } catch (const HostError& error) {
        EXPECT_EQ(error.status(), exitstatus::data);
        EXPECT_THAT(error.what(), HasSubstr("the wait behind \"usbbulkread local 48\""));
    }
    EXPECT_THAT(readtext(folder / "t"), testing::EndsWith("usbbulkread local 48\n"));
    EXPECT_EQ(readtext(folder / "record"), "usbbulkread hang\n");
    EXPECT_EQ(nlohmann::json::parse(readtext(folder / "d"))["prgresult"][0], 3);
}

TEST(Session, TheRecordOfASimulatedChipGivesItsTraceAgain) {
    const test::MadeFolder folder;
    const Device device = readdevice(KELD2_TEST_DEVICES "/serial-4k.toml");
    const Job job = readjob(folder.file("j.toml", R"(
        [shared]
        prgmode = 21
        buflength = 4144
        tlength = 4144
        bvcch = 32
        pagelength = 32
        wltbigendbuf = [0, 95, 0]
        bvcc = 500
        bvpp = 1200
        bvccpin = 40
        bgndpin = 20
        bvpppin = 31
        pwte = 5000
        chipidtestmode = true
        compid = 90
        typeid = 69           # the chip's is 68
        wautonum = 4
        autoprg = [8, 4, 6, 2]
        [buffer]
        patch = [[0, "00112233445566778899aabbccddeeff"]])"));
    const SessionOutput output{
        .record = folder / "record", .trace = folder / "t", .dump = folder / "d"};
    const auto programmer = attended(simulated({}, device), BoxAnswer::ignore);
    ASSERT_EQ(runsession(job, programmer, output), exitstatus::well);
    const std::string trace = readtext(folder / "t");
    EXPECT_THAT(trace, HasSubstr("-> ignore\n"));

    EXPECT_EQ(runsession(job, replayed(folder / "record"),
                         {.record = {}, .trace = folder / "t2", .dump = {}}),
              exitstatus::well);
    EXPECT_EQ(readtext(folder / "t2"), trace);
}

TEST(Session, AFileThatCannotBeWrittenIsFoundBeforeTheRun) {
    const test::MadeFolder folder;
    const Job job = readjob(folder.file("j.toml", runjob));
    const auto nowhere = folder / "no" / "file";
    for (const SessionOutput& output :
         {SessionOutput{.record = nowhere, .trace = folder / "t", .dump = {}},
          SessionOutput{.record = {}, .trace = folder / "t", .dump = nowhere},
          SessionOutput{.record = {}, .trace = nowhere, .dump = {}}}) {
        try {
            runsession(job, replayed(folder.file("r", "")), output);
            ADD_FAILURE() << "not refused";
        } catch (const HostError& error) {
            EXPECT_EQ(error.status(), exitstatus::nofile);
            EXPECT_THAT(error.what(), HasSubstr("no/file: cannot be opened for writing"));
        }
        if (output.trace != nowhere) {
            EXPECT_EQ(readtext(folder / "t"), "");
        }
    }
}

}  // namespace
