// What a profile counts, against the trace of the same run.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "common/madefolder.h"
#include "host/job/session.h"
#include "host/profile/profile.h"
#include "host/tell/traceline.h"
#include "host/tell/words.h"

namespace keld2::host {
namespace {

struct Sum {
    std::int64_t pulses = 0, waits = 0, waited = 0, transfers = 0;  // waited: us
    void operator+=(const Sum& other) {
        pulses += other.pulses;
        waits += other.waits;
        waited += other.waited;
    }
};

Sum sumof(const std::filesystem::path& trace) {
    Sum sum, queued;
    TraceReader reader(trace);
    while (const TraceLine* line = reader.next()) {
        Sum& at = isqueued(line->call) ? queued : sum;
        switch (line->call) {
            case Call::waitshort:
            case Call::waitlong:
            case Call::qwaitshort:
            case Call::qwaitlong:
                ++at.waits;
                at.waited += pauseof(*line);
                break;
            case Call::regwrite:
            case Call::regread:
            case Call::buswrite:
            case Call::busconfig:
                ++at.pulses;
                break;
            case Call::qrun:
                sum += std::exchange(queued, {});
                break;
            case Call::powerdown:
                queued = {};
                break;
            case Call::usbcomwrite:
            case Call::usbbulkread:
            case Call::usbbulkwrite:
            case Call::transferwait:
                ++sum.transfers;
                break;
            default:
                at.pulses += isqueued(line->call) ? 1 : 0;
        }
    }
    return sum;
}

TEST(Profiles, CountWhatTheTraceHas) {
    const test::MadeFolder folder;
    for (const std::string name :
         {"svf-90-drives-and-reads", "parallel-blank-check-stopped-while-it-is-queued",
          "serial-configuration", "arm-auto-with-verify-margins"}) {
        SCOPED_TRACE(name);
        const std::filesystem::path path = std::filesystem::path(KELD2_TEST_JOBS) / name;
        const Job job = readjob(path / "job.toml");
        Profile profile;
        SessionOutput output;
        output.trace = folder / "trace.txt";
        runsession(job, profiled(replayed(path / "replay.txt"), profile), output);
        const Sum sum = sumof(*output.trace);
        EXPECT_EQ(profile.pulses.calls, sum.pulses);
        EXPECT_EQ(profile.waits.calls, sum.waits);
        EXPECT_EQ(profile.waits.programmer, std::chrono::microseconds(sum.waited));
        EXPECT_EQ(profile.transfers.calls, sum.transfers);
        EXPECT_GT(profile.host().count(), 0);
        EXPECT_LT(profile.host(), profile.total);
    }
}

TEST(Profiles, AreToldAsTableAndJson) {
    using std::chrono::microseconds;
    Profile profile;
    profile.waits = {.calls = 3, .programmer = microseconds(1500), .real = microseconds(200)};
    profile.pulses = {.calls = 70, .programmer = microseconds(17), .real = microseconds(300)};
    profile.total = microseconds(4500);
    EXPECT_EQ(profiletable(profile),
              "                      calls  programmer ms        real ms\n"
              "host                                                4.000\n"
              "message loop              0          0.000          0.000\n"
              "transfers                 0          0.000          0.000\n"
              "waits                     3          1.500          0.200\n"
              "pulses                   70          0.017          0.300\n"
              "total                                1.517          4.500\n");
    const auto json = nlohmann::json::parse(profilejson(profile))["profile"];
    EXPECT_EQ(json["host"]["real_ms"], 4.0);
    EXPECT_EQ(json["waits"]["programmer_ms"], 1.5);
    EXPECT_EQ(json["pulses"]["calls"], 70);
}

}  // namespace
}  // namespace keld2::host
