// The comparisons of the run procedures: which rows are compared, where they lie in the read-back,
// and when.
#include <gtest/gtest.h>

#include <algorithm>

#include "families/svffamily.h"
#include "svf/svfbench.h"

namespace keld2::testing {
namespace {

constexpr std::size_t blocksize = 16384;

void append(Bytes& bytes, const Bytes& more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
}

// A chip with rows of a fuse count, and the text that verifies them.
struct Chip {
    Chip(std::uint8_t familybyte, std::int32_t fusecount)
        : family(familybyte), fuses(fusecount), bench(familybyte, fusecount) {
        const SvfProcedure& procedure = *findsvfprocedure(family);
        width = rowwidth(*procedure.comparison, fuses);
        total = rowtotal(procedure, fuses);
        first = procedure.firstrow;
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
    std::int32_t fuses, width, total, first;
    std::vector<Bits> rows;
    SvfBench bench;
};

// How often the read-back was armed anew right behind a transfer.
std::size_t rearmed(const SvfBench& bench) {
    const auto calls = bench.calls();
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
    for (const SvfProcedure& procedure : svfprocedures())
        for (const std::uint8_t family : procedure.families)
            for (const RowTotal& total : procedure.totals) {
                Chip chip(family, total.fuses);
                const std::string text = chip.text();
                const std::string name =
                    std::to_string(family) + ", " + std::to_string(total.fuses) + " fuses";
                chip.answerall();
                EXPECT_EQ(chip.bench.play(text), 0) << name;
                const std::int32_t end = chip.width - 1;
                std::vector<Flip> flips{{chip.total, end}};
                if (family == procedure.families[0])
                    flips = {
                        {chip.first, 0}, {chip.first, end}, {chip.total, 0}, {chip.total, end}};
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

TEST(RowComparison, LeavesOutWhatTheMaskClears) {
    Chip chip(80, 16160);
    std::string text = chip.text();
    const std::size_t semicolon = text.rfind(';');
    Bits mask(static_cast<std::size_t>(chip.width), '1');
    mask[5] = mask[201] = '0';
    text.insert(semicolon, " MASK (" + field(mask) + ")");
    flipline(chip.rows[80], 5);
    flipline(chip.rows[80], 201);
    chip.answerall();
    EXPECT_EQ(chip.bench.play(text), 0);
    flipline(chip.rows[80], 6);
    chip.answerall();
    EXPECT_EQ(chip.bench.play(text), 1);
}

TEST(RowComparison, FetchesStoredRowsByFurtherTransfers) {
    Chip chip(87, 282744);  // 93 rows of 400 bytes
    const std::string text = chip.text();
    chip.answerall();
    ASSERT_EQ(chip.bench.bulk.size(), 4U);
    EXPECT_EQ(chip.bench.play(text), 0);
    EXPECT_EQ(chip.bench.count("usbbulkread 16385"), 4U);
    EXPECT_EQ(chip.bench.count("qrun"), 4U) << "engine, reset, device code, comparison";
    chip.bench.bulk[3].reset();
    EXPECT_EQ(chip.bench.play(text), 1) << "a failed further transfer";
    flipline(chip.rows[41], chip.width - 1);
    chip.answerall();
    EXPECT_EQ(chip.bench.play(text), 1) << "the row across the end of the first block";
}

TEST(RowComparison, PassesOverRowsBehindTheFirstBlockThatWereNotStored) {
    Chip chip(87, 282744);
    std::string text;
    for (int row = 0; row < 3; ++row) text += read(chip.rows[static_cast<std::size_t>(row)]);
    chip.answerall();
    EXPECT_EQ(chip.bench.play(text), 0);
    EXPECT_EQ(chip.bench.count("usbbulkread 16385"), 2U);
}

TEST(RowComparison, KeepsRowsOfEarlierOperations) {
    Chip chip(80, 16160);
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

TEST(RowComparison, ToleratesSomeWholeBytes) {
    struct Case {
        std::int32_t fuses, row, bit;
        int result;
    };
    const Case cases[] = {
        {15074, 2, 0, 0},       {15074, 2, 175, 0},        {15074, 2, 182, 1},
        {15074, 50, 8 * 12, 0}, {15074, 50, 8 * 13, 1},    {15074, 3, 0, 1},
        {30746, 2, 8 * 22, 0},  {30746, 3, 8 * 22 + 7, 0}, {30746, 4, 8 * 22, 1},
        {30746, 3, 8 * 21, 1},  {30746, 2, 359, 1},
    };
    for (const std::uint8_t family : {std::uint8_t{87}, std::uint8_t{88}})
        for (const Case& c : cases) {
            Chip chip(family, c.fuses);
            const std::string text = chip.text();
            flipline(chip.rows[static_cast<std::size_t>(c.row)], c.bit);
            chip.answerall();
            EXPECT_EQ(chip.bench.play(text), c.result)
                << c.fuses << " row " << c.row << " bit " << c.bit;
        }
    Chip chip(84, 18880);  // 160 bits
    const std::string text = chip.text();
    flipline(chip.rows[2], 8 * 12);
    chip.answerall();
    EXPECT_EQ(chip.bench.play(text), 1) << "two families alone";
}

TEST(RowComparison, AsksWithTheFrameOfTheFamily) {
    for (const auto& [family, fuses, frame] :
         {std::tuple{92, 11529, 15}, std::tuple{93, 24481, 15}, std::tuple{90, 12275, 8}}) {
        Chip chip(static_cast<std::uint8_t>(family), fuses);
        const std::string text = chip.text();
        chip.answerall();
        ASSERT_EQ(chip.bench.play(text), 0);
        const auto calls = chip.bench.calls();
        const auto last = std::find(calls.rbegin(), calls.rend(), "usbbulkread 16385");
        const auto bytes = std::count((last + 1)->begin(), (last + 1)->end(), ' ');
        EXPECT_TRUE((last + 1)->starts_with("frame 10 16 64 ")) << *(last + 1);
        EXPECT_EQ(bytes, frame) << family;
    }
}

TEST(RowComparison, OfFamily83SplitsInHalves) {
    Chip chip(83, 141696);
    std::string text = chip.text();
    chip.answerall();
    EXPECT_EQ(chip.bench.play(text), 0);
    EXPECT_EQ(chip.bench.count("usbbulkread 16385"), 3U);
    // A drive right behind the row that completes the half sees the same number of rows.
    std::size_t behindrow41 = 0;
    for (int i = 0; i <= 41; ++i) behindrow41 = text.find('\n', behindrow41) + 1;
    text.insert(behindrow41, "SDR 8 TDI (00);\n");
    chip.bench.bulk.insert(chip.bench.bulk.begin() + 2, *chip.bench.bulk[1]);
    EXPECT_EQ(chip.bench.play(text), 0);
    EXPECT_EQ(chip.bench.count("usbbulkread 16385"), 4U);
    flipline(chip.rows[41], 3);
    chip.answerall();
    EXPECT_EQ(chip.bench.play(chip.text()), 0);
    EXPECT_EQ(chip.bench.play(text), 1);
    EXPECT_EQ(chip.bench.count("usbbulkread 16385"), 2U) << "ends at the first half";
}

TEST(RowComparison, Of115869FusesComesOnceOnTheWay) {
    Chip chip(92, 115869);
    const std::string text = chip.text();
    for (int again = 0; again < 2; ++again) {
        chip.answerall();
        EXPECT_EQ(chip.bench.play(text), 0);
        EXPECT_EQ(chip.bench.count("usbbulkread 16385"), 3U) << "in each operation";
        EXPECT_EQ(rearmed(chip.bench), 2U) << "behind the device code and row 208";
    }
    std::string withdrive = text;
    withdrive.insert(text.rfind("SDR"), "SDR 8 TDI (00);\n");  // with 208 rows stored
    EXPECT_EQ(chip.bench.play(withdrive), 0);
    EXPECT_EQ(chip.bench.count("usbbulkread 16385"), 3U);
}

TEST(RowComparison, OfFamily89NeedsElevenRows) {
    Chip chip(89, 7664);
    std::string text;
    for (int row = 0; row < 11; ++row) {
        chip.answerall();
        EXPECT_EQ(chip.bench.play(text), 0);
        EXPECT_EQ(chip.bench.count("usbbulkread 16385"), row < 10 ? 0U : 1U) << row << " rows";
        text += read(chip.rows[static_cast<std::size_t>(row)]);
    }
    EXPECT_EQ(chip.bench.play(text), 0);
    EXPECT_EQ(chip.bench.count("usbbulkread 16385"), 2U);
    flipline(chip.rows[10], 15);
    chip.answerall();
    EXPECT_EQ(chip.bench.play(text), 1);
}

TEST(RowComparison, OfUnknownFuseCountsComparesNothing) {
    for (const SvfProcedure& procedure : svfprocedures()) {
        SvfBench bench(procedure.families[0], 999);
        EXPECT_EQ(bench.play(""), 0);
        EXPECT_EQ(bench.count("usbbulkread 16385"), procedure.leastrowcount > 0 ? 0U : 1U)
            << "an empty range is fetched all the same, family " << int{procedure.families[0]};
        bench.bulk = {std::nullopt};
        EXPECT_EQ(bench.play(""), procedure.leastrowcount == 0 ? 1 : 0) << "a failed transfer";
    }
}

// --- the rolling comparison ---------------------------------------------------------------------

struct Replays {
    Replays(std::uint8_t family, std::int32_t fuses, std::size_t count) : bench(family, fuses) {
        width = rowwidth(*findsvfprocedure(family)->comparison, fuses);
        text = read(code);
        add(count);
    }
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

    std::int32_t width = 0;
    Bits code = pattern(32, 99);
    std::vector<Bits> rows;
    std::string text;
    SvfBench bench;
};

TEST(RollingComparison, ComparesEveryWholeBitOfEveryReplay) {
    for (const auto& [family, fuses] : {std::pair{94, 23328}, {94, 46656}, {95, 93312}}) {
        Replays run(static_cast<std::uint8_t>(family), fuses, 0);
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
    Replays run(94, 23328, 10);
    flipline(run.rows[9], 0);
    run.answer();
    const std::string lines(14989, '\n');
    EXPECT_EQ(run.bench.play(run.text + lines), 1) << "15000 lines";
    EXPECT_EQ(run.bench.count("usbbulkread 16385"), 2U);
    EXPECT_EQ(run.bench.play(run.text + lines + "\n"), 0);
    EXPECT_EQ(run.bench.count("usbbulkread 16385"), 1U);
}

TEST(RollingComparison, LooksForItsRowsBehindTheDeviceCode) {
    Replays run(94, 23328, 3);
    run.answer();
    EXPECT_EQ(run.bench.play(run.text), 0);
    // Without a device code the first replay stores row 0, and the comparison begins at row 1.
    const std::string nocode = run.text.substr(run.text.find('\n') + 1);
    run.bench.bulk.erase(run.bench.bulk.begin());
    EXPECT_EQ(run.bench.play(nocode), 1);
    Bytes shifted = run.bench.raw(run.rows[1].substr(0, 32));
    append(shifted, run.bench.raw(run.rows[2].substr(0, 32)));
    run.bench.bulk = {shifted};
    EXPECT_EQ(run.bench.play(nocode), 0);
}

}  // namespace
}  // namespace keld2::testing
