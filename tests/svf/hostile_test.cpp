// Texts of any bytes: a run comes to an end, with a result, and touches nothing that is not its
// own (which the sanitizers watch).
#include <gtest/gtest.h>

#include <random>

#include "host/svf/svfcheck.h"
#include "svf/svfbench.h"

namespace keld2::testing {
namespace {

constexpr std::uint8_t families[] = {50, 80, 83, 87, 89, 90, 92, 94};
constexpr std::int32_t fusecounts[] = {0, -1, 25809, 115869, 141696, 23328, 7664, 282744};

class Texts {
  public:
    explicit Texts(unsigned seed) : random_(seed) {}

    std::size_t below(std::size_t n) { return random_() % n; }

    // Pieces of statements in any order, with bytes thrown in.
    std::string make() {
        static constexpr std::string_view pieces[] = {
            // clang-format off
            "SDR ", "SIR ", "RUNTEST ", "8 ", "34 ", "32 ", "12 ", "32767 ", "-1 ", "TDI (", "TDO (",
            "MASK (", "SMASK (", ")", ");", ";", "\n", "\r\n", "\t", "A5", "00000000", "FFFFF",
            "100 TCK", "1E3 SEC", "IDLE ", "TDI", "((", "))", " ", "0", "\nSDR 34 TDI (000000000)",
            "SDR 32 TDI (00000000) TDO (00000000) MASK (00000000);\n"};
        // clang-format on
        std::string text;
        for (std::size_t n = below(200); n > 0; --n) {
            text += pieces[below(std::size(pieces))];
            if (below(40) == 0) text += static_cast<char>(below(256));
        }
        return text;
    }

    // A good text with some bytes changed, taken out or doubled.
    std::string spoil(std::string text) {
        for (std::size_t n = 1 + below(4); n > 0 && !text.empty(); --n) {
            const std::size_t at = below(text.size());
            switch (below(3)) {
                case 0:
                    text[at] = static_cast<char>(below(256));
                    break;
                case 1:
                    text.erase(at, 1 + below(20));
                    break;
                default:
                    text.insert(at, text.substr(at, 1 + below(40)));
            }
        }
        return text;
    }

  private:
    std::mt19937 random_;
};

std::string goodtext() {
    return read(pattern(32, 1)) + "SIR 8 TDI (16);\nRUNTEST 100 TCK;\n" + read(pattern(34, 2)) +
           "SDR 40 TDI (00\n\t11\n223344)\n\tTDO (55\n\t66778899)\n\tMASK (FF\n\tFFFFFFFF);\n"
           "SDR 16 TDI (0000) SMASK (FFFF) TDO (12\n34) MASK (FF\nFF);\n" +
           "RUNTEST IDLE 100 TCK 1.00E-003 SEC;\nSDR 8 TDI (00)\nTDO (00)\nMASK (FF);\n";
}

TEST(HostileText, EveryRunEndsAsTheHostForesees) {
    Texts texts(20240229);
    for (const std::uint8_t family : families) {
        SvfBench bench(family, 0);
        int passed = 0;
        for (int i = 0; i < 150; ++i) {
            bench.s().tlength[0] = fusecounts[texts.below(std::size(fusecounts))];
            bench.bulk.clear();
            if (i % 3 != 0) bench.bulk = {bench.packed(pattern(32, 1))};
            const std::string text = i % 2 == 0 ? texts.make() : texts.spoil(goodtext());
            const int result = bench.play(text);
            ASSERT_LE(result, 1) << text;
            const bool foreseen = host::checksvf(bench.device(), text).fault.has_value() ||
                                  !bench.explained(text).empty();
            ASSERT_EQ(result == 1, foreseen) << int{family} << ":\n" << text;
            passed += result == 0 ? 1 : 0;
        }
        EXPECT_GT(passed, 0) << int{family};
        EXPECT_LT(passed, 150) << int{family};
    }
}

TEST(HostileText, LongLinesAndFieldsStayLinear) {
    SvfBench bench(80, 999);
    const std::string blanks(2'000'000, ' ');
    for (const std::string& text :
         {"SDR 8 TDI (" + std::string(2'000'000, '(') + ");", "SDR" + blanks + "8 TDI (A5" + blanks,
          std::string(2'000'000, '\r'), std::string(2'000'000, '\n'),
          "SDR 8 TDI (0" + std::string(2'000'000, 'T') + ")\n" + blanks})
        EXPECT_LE(bench.play(text), 1);
}

}  // namespace
}  // namespace keld2::testing
