// The tables of the SVF families against each other.
#include <gtest/gtest.h>

#include <set>

#include "families/jtagstartup.h"
#include "families/svffamily.h"
#include "jtag/wiring.h"

namespace keld2 {
namespace {

TEST(SvfFamilies, EachHasWiringStartUpAndOneProcedure) {
    std::set<int> seen;
    for (const SvfProcedure& procedure : svfprocedures())
        for (const std::uint8_t family : procedure.families) {
            EXPECT_TRUE(seen.insert(family).second) << int{family};
            EXPECT_EQ(findsvfprocedure(family), &procedure) << int{family};
            EXPECT_NE(findjtagfamily(family), nullptr) << int{family};
            EXPECT_NE(findjtagstartup(family), nullptr) << int{family};
        }
    std::set<int> expected{50};
    for (int family = 80; family <= 95; ++family) expected.insert(family);
    EXPECT_EQ(seen, expected);
}

TEST(SvfFamilies, EachFuseCountHasRowsAndAWidth) {
    for (const SvfProcedure& procedure : svfprocedures()) {
        const bool counted = procedure.interim != SvfProcedure::Interim::rolling;
        EXPECT_EQ(procedure.totals.empty(), !counted);
        std::set<std::int32_t> fuses;
        for (const RowTotal& total : procedure.totals) {
            EXPECT_TRUE(fuses.insert(total.fuses).second) << total.fuses;
            EXPECT_GT(total.rows, procedure.firstrow) << total.fuses;
            EXPECT_LT(total.rows, procedure.sdrrules->limits.rows) << total.fuses;
            const std::int32_t width = rowwidth(*procedure.comparison, total.fuses);
            EXPECT_GT(width, 0) << total.fuses;
            EXPECT_LE((width + 7) / 8, procedure.sdrrules->limits.bytes) << total.fuses;
            EXPECT_EQ(rowtotal(procedure, total.fuses), total.rows);
        }
        EXPECT_EQ(rowtotal(procedure, 999), 0);
        EXPECT_EQ(rowwidth(*procedure.comparison, 999), 0);
    }
}

}  // namespace
}  // namespace keld2
