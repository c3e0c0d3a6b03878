// Jobs whose numbers make no sense: whatever stands in the shared blocks, a run of the
// microcontroller families comes to its end, with the power off and the window gone.
#include <gtest/gtest.h>

#include <array>
#include <random>
#include <sstream>

#include "common/madefolder.h"
#include "host/job/session.h"

namespace {

using namespace keld2;
using namespace keld2::host;

// A variable and the values that it is given, one of them in each job.
struct Hostile {
    const char* name;
    std::vector<const char*> values;
};

const std::vector<Hostile>& variables() {
    static const std::vector<Hostile> all{
        {"buflength", {"64", "0", "-2199", "-2200", "-5000", "-2147483648", "300"}},
        {"tlength",
         {"64", "0", "16", "-1", "2147483647", "-2147483648", "16417", "262145", "20000"}},
        {"bvcch", {"16", "0", "-1", "32767", "-32768", "80"}},
        {"pagelength", {"16", "1", "0", "-1", "32767", "-32768", "7"}},
        {"pwte", {"20000", "0", "-1", "2147483647", "-2147483648"}},
        {"wretry", {"0", "-1", "-32768", "2000"}},
        {"wlverifyvcc", {"0", "1", "-1", "2147483647", "-2147483648", "20"}},
        {"bvcc", {"500", "0", "-1", "32767", "-32768"}},
        {"bvpp", {"1200", "0", "32767", "-32768"}},
        {"woption", {"0", "1", "255"}},
        {"Language", {"0", "3000", "-1", "2147483647"}},
        {"wautonum", {"0", "1", "255"}},
        {"autoprg", {"[4, 6, 3]", "[8, 255, 20, 19]", "[9, 2, 5]"}},
        {"chipidtestmode", {"false", "true"}},
        {"compid", {"0", "30", "-1"}},
        {"prgresult",
         {"[0, 0]", "[9, 2]", "[0, 3]", "[0, 4]", "[0, 5]", "[0, 6]", "[0, 8]", "[0, 9]", "[0, 20]",
          "[0, 255]"}},
        {"wltbigendbuf",
         {"[0, 31, 0]", "[0, 31, 5]", "[31, 0, 0]", "[-1, 31, 0]", "[0, 2147483647, 0]",
          "[2147483647, 2147483647, 0]", "[-2147483648, -2147483648, 0]", "[1e300, -1e300, 0]",
          "[nan, 31, 0]", "[0, inf, 0]", "[0, 31, nan]", "[0, 31, 1e300]", "[0, 31, -1e18]",
          "[0.5, 31.5, 0.5]", "[16380, 16400, 16380]", "[2200, 2263, 2200]"}},
    };
    return all;
}

std::string jobtext(int mode, std::mt19937& random) {
    std::ostringstream job;
    job << "[shared]\nprgmode = " << mode << "\n";
    for (const Hostile& variable : variables()) {
        // mostly the sensible first value, so that a job gets past its checks
        const bool sensible = random() % 3 != 0;
        job << variable.name << " = "
            << variable.values[sensible ? 0 : random() % variable.values.size()] << "\n";
    }
    job << "[run]\ncalls = [\"sinitkeld2\", \"keld2warn 54\", \"runKeld2Prg\"]\n";
    return job.str();
}

std::string replaytext(std::mt19937& random) {
    constexpr std::array answers{"",
                                 "usbbulkread * fail\n",
                                 "usbbulkread * hang\n",
                                 "usbbulkread * fill 0\n",
                                 "regread * 0\n",
                                 "stop 100\nstop 150\n",
                                 "readycheck 0\nreadycheck * 1\n",
                                 "modeselect 0\nmodeselect * 2\n"};
    return std::string("messagebox ignore\n") + answers[random() % answers.size()];
}

class HostileJobs : public testing::TestWithParam<int> {};

TEST_P(HostileJobs, EndWithThePowerOff) {
    const test::MadeFolder folder;
    std::mt19937 random(static_cast<unsigned>(GetParam()));
    for (int i = 0; i < 60; ++i) {
        const std::string job = jobtext(GetParam(), random);
        const std::string replay = replaytext(random);
        SCOPED_TRACE(job + "\n" + replay);
        int status = -1;
        ASSERT_NO_THROW(status = runsession(readjob(folder.file("job.toml", job)),
                                            replayed(folder.file("replay", replay)),
                                            {.record = {}, .trace = folder / "t", .dump = {}}));
        EXPECT_TRUE(status >= 0 && status <= 3) << status;
        const std::string trace = readtext(folder / "t");
        ASSERT_TRUE(trace.ends_with("\npowerdown\nwindow usbkel2mpuprg unload\n"))
            << trace.substr(trace.size() - std::min<std::size_t>(trace.size(), 300));
    }
}

INSTANTIATE_TEST_SUITE_P(Modes, HostileJobs, testing::Values(21, 22, 23, 24));

}  // namespace
