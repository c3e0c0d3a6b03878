// Texts at the limits of a run.
#include <gtest/gtest.h>

#include "svf/svfbench.h"

namespace keld2::testing {
namespace {

TEST(SvfRun, ReadsUpToItsLineLimit) {
    constexpr std::pair<int, std::size_t> limits[] = {{80, 10000}, {83, 10000}, {84, 10000},
                                                      {87, 10000}, {89, 40000}, {90, 10000},
                                                      {92, 15000}, {94, 15000}, {50, 10000}};
    for (const auto& [family, limit] : limits) {
        SvfBench bench(static_cast<std::uint8_t>(family), 999);
        const std::string text(limit - 1, '\n');
        EXPECT_EQ(bench.play(text + "SIR\n"), 1) << family;
        EXPECT_EQ(bench.play(text + "\nSIR\n"), 0) << family << ": no longer read";
        // Further lines of a statement do not count.
        EXPECT_EQ(bench.play("SDR 8 TDI (A\n5);\n" + text.substr(1) + "SIR\n"), 1) << family;
    }
}

TEST(SvfRun, ATextTooLongForTheProgressFails) {
    SvfBench bench(80, 999);
    const std::string line(21474836, '/');
    EXPECT_EQ(bench.play(line), 0);
    EXPECT_EQ(bench.play(line + "/"), 1) << "a hundred times its length is no 32-bit number";
    SvfBench bylines(50, 999);
    EXPECT_EQ(bylines.play(line + "/"), 0);
}

}  // namespace
}  // namespace keld2::testing
