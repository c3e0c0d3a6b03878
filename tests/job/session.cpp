// A session that somebody interrupts, or stops where no line of the trace tells the place.
#include "host/job/session.h"

#include <gmock/gmock.h>

#include <csignal>
#include <nlohmann/json.hpp>

#include "common/madefolder.h"
#include "host/commands/attendedprogrammer.h"
#include "host/hosterror.h"
#include "platform/platformdecorator.h"

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

// A programmer whose message loop counts its services, and stops the run in one of them.
class StoppedInService final : public SessionProgrammer {
  public:
    StoppedInService(std::unique_ptr<SessionProgrammer> inner, SharedVariables& host, int stopin,
                     int& services)
        : inner_(std::move(inner)), loop_(inner_->platform(), host, stopin, services) {}

    Platform& platform() override { return loop_; }
    std::unique_ptr<DevCore> devcore(SharedVariables& s) override { return inner_->devcore(s); }
    std::unique_ptr<UsbTransport> transport(SharedVariables& s) override {
        return inner_->transport(s);
    }

  private:
    struct Loop final : PlatformDecorator {
        Loop(Platform& inner, SharedVariables& host, int stopin, int& services)
            : PlatformDecorator(inner), host_(host), stopin_(stopin), services_(services) {}
        void service() override {
            if (++services_ == stopin_) host_.prgresult.release(0, exitstatus::stopped);
            inner().service();
        }
        SharedVariables& host_;
        int stopin_;
        int& services_;
    };

    std::unique_ptr<SessionProgrammer> inner_;
    Loop loop_;
};

// The list of a compare is made with a service for each fuse that differs.
TEST(Session, AStopWithinACompareKeepsTheLinesBeforeIt) {
    const test::MadeFolder folder;
    std::string job = readtext(std::string(KELD2_TEST_JOBS) + "/../cases/fixed/job.toml");
    job.replace(job.find("prgresult = [0, 3]"), 18, "prgresult = [0, 5]");
    const Job compare = readjob(folder.file("j.toml", job));
    const std::string id = "fffffdfdfdfdfffdfdfdfdfdfffdfffffdfdfdfdfdfdfdfffffdfdfdfdfdfdfd";
    const auto replay = folder.file("r", "usbbulkread ok " + id + "\nusbbulkread fill 0\n");
    const auto logof = [&](int stopin, int& services) {
        const ProgrammerFactory stopped = [&](const ProgrammerSetting& setting) {
            return std::make_unique<StoppedInService>(replayed(replay)(setting), setting.host,
                                                      stopin, services);
        };
        runsession(compare, stopped, {.record = {}, .trace = {}, .dump = folder / "d"});
        return nlohmann::json::parse(readtext(folder / "d"))["MainRtstr"][0].get<std::string>();
    };
    int all = 0, services = 0;
    logof(0, all);
    const std::string log = logof(all - 17199 + 7, services);
    EXPECT_THAT(log, HasSubstr(">> 000006 "));
    EXPECT_THAT(log, testing::Not(HasSubstr(">> 000007 ")));
    EXPECT_THAT(log, HasSubstr("Stopped!\n"));
}

}  // namespace
