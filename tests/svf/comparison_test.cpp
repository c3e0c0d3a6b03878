// The comparisons of the run procedures: which rows are compared, where they lie in the read-back,
// and when.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <sstream>

#include "families/svffamily.h"
#include "jtag/cases.h"
#include "svf/svfbench.h"

namespace keld2::testing {
namespace {

constexpr std::size_t blocksize = 16384;

void append(Bytes& bytes, const Bytes& more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
}

const std::string rowcounts =
#include "data/svf/rows.txt"
    ;

// A chip whose fuse count has that last row and rows of that width, and the text that verifies it.
struct Chip {
    Chip(std::uint8_t familybyte, std::int32_t fusecount, std::int32_t last, std::int32_t bits)
        : family(familybyte),
          fuses(fusecount),
          width(bits),
          total(last),
          bench(familybyte, fusecount) {
        for (std::int32_t row = 0; row <= total; ++row)
            rows.push_back(pattern(width, static_cast<unsigned>(fuses + row)));
    }

    std::string text() const {
        std::string all;
        for (const Bits& row : rows) all += read(row);
        return all;
    }
    // Rows from to last, in blocks.
    void answer(std::int32_t from, std::int32_t last) {
        Bytes bytes;
        for (std::int32_t row = from; row <= last; ++row)
            append(bytes, bench.packed(rows[static_cast<std::size_t>(row)]));
        for (std::size_t at = 0; at < bytes.size(); at += blocksize)
            bench.bulk.emplace_back(Bytes(bytes.begin() + static_cast<std::ptrdiff_t>(at),
                                          bytes.begin() + static_cast<std::ptrdiff_t>(std::min(
                                                              at + blocksize, bytes.size()))));
    }
    // All answers of a run of text(): device code, then the comparisons.
    void answerall() {
        bench.bulk.clear();
        if (family == 87 || family == 88) {
            answer(0, 0);
        } else if (family == 89) {
            answer(0, 9);
        } else {
            bench.bulk.emplace_back(codeword());
        }
        if (family == 83) {
            answer(1, total / 2);
            answer(total / 2 + 1, total);
        } else {
            if (fuses == 115869) answer(1, 208);
            answer(first, total);
        }
    }
    // Row 0 as a word: its first three bytes, then the bits of the fourth.
    Bytes codeword() const { return bench.packed(rows[0].substr(0, 32)); }

    std::uint8_t family;
    std::int32_t fuses, width, total;
    std::int32_t first = family == 89 ? 10 : 1;
    std::vector<Bits> rows;
    SvfBench bench;
};

// How often the read-back was armed anew right behind a transfer.
std::size_t rearmed(const SvfBench& bench) {
    const auto& calls = bench.devcore->calls;
    std::size_t n = 0;
    for (std::size_t i = 1; i < calls.size(); ++i)
        if (calls[i - 1] == "usbbulkread 16385" && calls[i].starts_with("frame 10 16 64 ")) ++n;
    return n;
}

void flipline(Bits& row, std::int32_t bit) {
    char& c = row[static_cast<std::size_t>(bit)];
    c = c == '1' ? '0' : '1';
}

struct Flip {
    std::int32_t row, bit;
};

// The host names that bit alone, and the line of its statement.
void expectexplained(Chip& chip, const std::string& text, Flip flip) {
    const auto mismatches = chip.bench.explained(text);
    ASSERT_EQ(mismatches.size(), 1U) << int{chip.family} << ", " << chip.fuses;
    const host::SvfMismatch& one = mismatches[0];
    EXPECT_EQ(one.row, flip.row);
    EXPECT_EQ(one.bit, flip.bit);
    EXPECT_EQ(one.line, flip.row + 1);
    EXPECT_EQ(
        one.read,
        chip.rows[static_cast<std::size_t>(flip.row)][static_cast<std::size_t>(flip.bit)] == '1');
    EXPECT_NE(one.expected, one.read);
}

TEST(RowComparison, CoversTheRowsOfEveryFuseCount) {
    std::size_t known = 0;
    for (const auto& [families, fuses, numbers] : readcases(rowcounts)) {
        std::istringstream in(families + " " + numbers);
        std::vector<int> list(std::istream_iterator<int>(in), {});
        const int width = list.back();
        const int last = list[list.size() - 2];
        list.resize(list.size() - 2);
        known += list.size();
        for (const int family : list) {
            Chip chip(static_cast<std::uint8_t>(family), std::stoi(fuses), last, width);
            const std::string text = chip.text();
            const std::string behind = read(Bits(static_cast<std::size_t>(width), '1'));
            const std::string name = std::to_string(family) + ", " + fuses + " fuses";
            chip.answerall();
            EXPECT_EQ(chip.bench.play(text), 0) << name;
            EXPECT_EQ(chip.bench.play(text + behind), 0) << name << ", a row behind the last";
            const std::int32_t end = width - 1;
            std::vector<Flip> flips{{last, end}};
            if (family == list[0])
                flips = {{chip.first, 0}, {chip.first, end}, {last, 0}, {last, end}};
            for (const Flip flip : flips) {
                flipline(chip.rows[static_cast<std::size_t>(flip.row)], flip.bit);
                chip.answerall();
                EXPECT_EQ(chip.bench.play(text), 1)
                    << name << ", row " << flip.row << ", bit " << flip.bit;
                expectexplained(chip, text, flip);
                flipline(chip.rows[static_cast<std::size_t>(flip.row)], flip.bit);
            }
        }
    }
    for (const SvfProcedure& procedure : svfprocedures())
        known -= procedure.families.size() * procedure.totals.size();
    EXPECT_EQ(known, 0U) << "fuse counts of all families";
}

TEST(RowComparison, KeepsRowsOfEarlierOperations) {
    Chip chip(80, 16160, 80, 202);
    chip.answerall();
    auto& bulk = chip.bench.bulk;
    const auto once = bulk;
    bulk.insert(bulk.end(), once.begin(), once.end());
    // The second operation stores no row but the device code.
    EXPECT_EQ(chip.bench.playtwo(chip.text(), read(chip.rows[0])), 0);
    EXPECT_EQ(chip.bench.count("usbbulkread 16385"), 4U);
    (*bulk[3])[0] ^= 1;
    EXPECT_EQ(chip.bench.playtwo(chip.text(), read(chip.rows[0])), 1) << "row 1 of the first";
    EXPECT_EQ(chip.bench.play(read(chip.rows[0])), 0) << "a run of its own has clean tables";
}

// --- the rolling comparison ---------------------------------------------------------------------

struct Replays {
    Replays(std::uint8_t family, std::int32_t fuses, std::int32_t bits)
        : width(bits), bench(family, fuses) {}
    void add(std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            rows.push_back(pattern(width, static_cast<unsigned>(i)));
            text += read(rows.back());
        }
    }
    std::size_t bitsof() const { return static_cast<std::size_t>(width / 8 * 8); }
    // Rows compared together: until the read-back has passed 12288 bytes.
    std::size_t together() const { return 12288 / bitsof() + 1; }
    void answer() {
        bench.bulk = {bench.packed(code)};
        for (std::size_t first = 0; first < rows.size() || first == 0; first += together()) {
            Bytes bytes;
            for (std::size_t i = first; i < std::min(first + together(), rows.size()); ++i)
                append(bytes, bench.raw(rows[i].substr(0, bitsof())));
            bench.bulk.emplace_back(bytes);
        }
    }

    std::int32_t width;
    Bits code = pattern(32, 99);
    std::vector<Bits> rows;
    std::string text = read(code);
    SvfBench bench;
};

TEST(RollingComparison, ComparesEveryWholeBitOfEveryReplay) {
    for (const auto& [family, fuses, width] :
         {std::tuple{94, 23328, 34}, {94, 46656, 50}, {95, 93312, 82}}) {
        Replays run(static_cast<std::uint8_t>(family), fuses, width);
        const std::size_t count = 2 * run.together() + 10;
        run.add(count);
        run.answer();
        EXPECT_EQ(run.bench.play(run.text), 0) << fuses;
        EXPECT_EQ(run.bench.count("usbbulkread 16385"), 4U) << "code, two on the way, the rest";
        EXPECT_EQ(rearmed(run.bench), 3U) << "but not behind the rest";
        const auto lastwhole = static_cast<std::int32_t>(run.bitsof()) - 1;
        for (const std::size_t row :
             {std::size_t{0}, run.together() - 1, run.together(), count - 1}) {
            flipline(run.rows[row], lastwhole);
            run.answer();
            EXPECT_EQ(run.bench.play(run.text), 1) << fuses << " row " << row;
            flipline(run.rows[row], lastwhole);
        }
        flipline(run.rows[count - 1], run.width - 1);
        run.answer();
        EXPECT_EQ(run.bench.play(run.text), 0) << "the incomplete byte is left out";
    }
}

TEST(RollingComparison, ATextBeyondTheLineLimitEndsWithoutOne) {
    Replays run(94, 23328, 34);
    run.add(10);
    flipline(run.rows[9], 0);
    run.answer();
    const std::string lines(14989, '\n');
    EXPECT_EQ(run.bench.play(run.text + lines), 1) << "15000 lines";
    EXPECT_EQ(run.bench.count("usbbulkread 16385"), 2U);
    EXPECT_EQ(run.bench.play(run.text + lines + "\n"), 0);
    EXPECT_EQ(run.bench.count("usbbulkread 16385"), 1U);
}

}  // namespace
}  // namespace keld2::testing
