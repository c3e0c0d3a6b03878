// A session that somebody interrupts.
#include "host/job/session.h"

#include <gmock/gmock.h>

#include <csignal>
#include <nlohmann/json.hpp>

#include "common/madefolder.h"
#include "host/commands/attendedprogrammer.h"
#include "host/hosterror.h"

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

}  // namespace
