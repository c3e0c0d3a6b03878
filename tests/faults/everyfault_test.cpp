// Whatever goes wrong in the middle of an operation: the run ends, says so, leaves nothing on, and
// the next one works.
#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>

#include "common/madefolder.h"
#include "faults/faultyprogrammer.h"
#include "host/catalogue/catalogue.h"
#include "host/programmer/programmer.h"
#include "host/run/devicerun.h"
#include "host/svf/playedtexts.h"
#include "host/verdict/verdict.h"
#include "shared/notes.h"

namespace keld2::test {
namespace {

using host::RunReport;
using Outcome = host::Verdict::Outcome;

struct Ended {
    RunReport report;
    Outcome outcome;
};

class SilentListener final : public host::RunListener {
  public:
    void logline(const std::string&) override {}
    void progress(int) override {}
    void step(const std::string&) override {}
    BoxAnswer box(const Box& box) override {
        return box.buttons == BoxButtons::abortretryignore ? BoxAnswer::abort
               : box.buttons == BoxButtons::okcancel       ? BoxAnswer::cancel
                                                           : BoxAnswer::ok;
    }
    bool stopasked() override { return false; }
};

std::size_t entriesof(const char* folder, std::string_view prefix = {}) {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        count += entry.path().filename().string().starts_with(prefix) ? 1 : 0;
    return count;
}

class EveryFault : public ::testing::TestWithParam<const char*> {
  protected:
    Ended run(const host::Operation& operation, FaultPlan plan = {}) {
        watch_ = {};
        const host::RunRequest request{.device = device_,
                                       .steps = {&operation},
                                       .data = operation.needsdata ? data() : Parts{},
                                       .simulated = true,
                                       .texts = host::playedtexts(device_, {&operation}, data())};
        SilentListener listener;
        RunReport report = runondevice(
            request, faulty(simulated({.image = chip_, .faults = {}}, device_), plan, watch_),
            listener);
        const Outcome outcome = verdictof(request, report).outcome;
        return {.report = std::move(report), .outcome = outcome};
    }
    Outcome outcomeof(const char* operation) {
        return run(*host::operationnamed(operation)).outcome;
    }

    // A programmed chip, or a blank one where that is what the operation starts from.
    void prepare(const host::Operation& operation) {
        ASSERT_EQ(outcomeof("erase"), Outcome::well);
        const bool fromblank = operation.name == "program" || operation.name == "blank";
        if (!fromblank) {
            ASSERT_EQ(outcomeof("program"), Outcome::well);
        }
    }
    // A run that ended well has done what it says.
    void checkdone(const host::Operation& operation, const RunReport& report,
                   const RunReport& whole) {
        if (operation.name == "read") {
            EXPECT_EQ(report.buffer, whole.buffer);
        } else if (operation.name == "erase") {
            EXPECT_EQ(outcomeof("blank"), Outcome::well);
        } else if (operation.name == "program") {
            EXPECT_EQ(outcomeof("verify"), Outcome::well);
        }
    }
    static bool changes(const host::Operation& operation) {
        return operation.name == "erase" || operation.name == "program" ||
               operation.name == "secure";
    }
    // One fault in one run, and what is left behind.
    void strike(const host::Operation& operation, FaultPlan plan, const RunReport& whole) {
        SCOPED_TRACE(std::string(operation.name) + ", fault " +
                     std::to_string(static_cast<int>(plan.fault)) + " at answer " +
                     std::to_string(plan.answer));
        const auto [report, outcome] = run(operation, plan);
        EXPECT_FALSE(leftpowered());
        EXPECT_EQ(watch_.timers, 0);
        checklog(report, outcome);
        const bool startup = watch_.bulkreads.empty() || plan.answer <= *watch_.bulkreads.begin();
        if (outcome == Outcome::well && !watch_.unnoticed && !startup)
            checkdone(operation, report, whole);
        if (changes(operation)) prepare(operation);
    }
    void checklog(const RunReport& report, Outcome outcome) const {
        const auto says = [&report](std::string_view word) {
            return std::ranges::any_of(report.log, [word](const std::string& line) {
                return line.find(word) != std::string::npos;
            });
        };
        EXPECT_EQ(says(" OK"), report.finished && report.result == result::well);
        EXPECT_EQ(says("Stopped"), outcome == Outcome::stopped);
        EXPECT_EQ(says("timed out"), outcome == Outcome::timedout);
    }

    bool leftpowered() const {
        const bool arm = device_.sim["kind"].value_or(std::string()) == "arm";
        return arm ? watch_.queried : watch_.powered;
    }

    using Parts = std::vector<host::BufferPart>;
    Parts data() const {
        Parts parts;
        const bool fuses = device_.content == host::Content::fuses;
        for (const host::DeviceRange& range : device_.ranges) {
            host::BufferPart part{range.buffer, {}};
            for (std::int64_t i = 0; i < range.length; ++i)
                part.bytes.push_back(static_cast<std::uint8_t>(fuses ? '0' + i % 3 / 2 : i * 7));
            if (range.writtenby == "program") parts.push_back(part);
        }
        return parts;
    }

  protected:
    host::Device device_ = host::Catalogue(KELD2_TEST_DEVICES).find(GetParam());
    FaultWatch watch_;

  private:
    MadeFolder folder_;
    std::filesystem::path chip_ = folder_ / "chip";
};

// The first answers, where each is of a kind of its own, one in the middle, and the last one.
std::vector<std::size_t> answersof(std::size_t count) {
    std::vector<std::size_t> chosen;
    for (std::size_t i = 1; i <= count; ++i)
        if (i <= 10 || i == count / 2 || i == count) chosen.push_back(i);
    return chosen;
}

TEST_P(EveryFault, EndsInOrderAndTheNextRunWorks) {
    const std::string own = "keld2-run-" + std::to_string(getpid());
    const std::size_t blocks = entriesof("/dev/shm", own);
    const std::size_t threads = entriesof("/proc/self/task");
    for (const host::Operation* operation : device_.operations) {
        prepare(*operation);
        const auto [whole, ended] = run(*operation);
        ASSERT_EQ(ended, Outcome::well) << operation->name;
        const std::size_t answers = watch_.answers;
        const std::set<std::size_t> bulkreads = watch_.bulkreads;
        if (changes(*operation)) prepare(*operation);
        for (const std::size_t answer : answersof(answers)) {
            strike(*operation, {Fault::wrong, answer}, whole);
            strike(*operation, {Fault::stop, answer}, whole);
            if (bulkreads.contains(answer)) strike(*operation, {Fault::hang, answer}, whole);
        }
        EXPECT_EQ(run(*operation).outcome, Outcome::well) << operation->name;
    }
    EXPECT_EQ(entriesof("/dev/shm", own), blocks);
    EXPECT_EQ(entriesof("/proc/self/task"), threads);
}

INSTANTIATE_TEST_SUITE_P(Devices, EveryFault,
                         ::testing::Values("serial-2k", "parallel-byte-64k", "parallel-page-64k",
                                           "logic-17200-a", "logic-17200-c", "logic-8160",
                                           "arm-a-64k", "arm-b-32k-serial"),
                         [](const auto& one) {
                             std::string name = one.param;
                             std::ranges::replace(name, '-', '_');
                             return name;
                         });

}  // namespace
}  // namespace keld2::test
