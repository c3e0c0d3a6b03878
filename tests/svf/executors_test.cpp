// What SDR statements put on the lines, and the check of the device code.
#include <gtest/gtest.h>

#include "svf/svfbench.h"

namespace keld2::testing {
namespace {

constexpr std::uint8_t allfamilies[] = {50, 80, 81, 82, 83, 84, 85, 86, 87,
                                        88, 89, 90, 91, 92, 93, 94, 95};

struct Codes {
    std::string drive, read, enter;
};

Codes codes(int family) {
    const std::string plain = "10, 00*2";
    switch (family) {
        case 81:
        case 82:
        case 85:
        case 88:
        case 92:
            return {"146", "147", plain};
        case 86:
            return {"144", "147", plain};
        case 94:
        case 95:
            return {"144", "143", "10, 00, 10, 00, 10, 00"};  // by way of Pause
        default:
            return {"144", "143", plain};
    }
}

TEST(SdrExecutor, DrivesWithTheCodeOfTheFamily) {
    for (const std::uint8_t family : allfamilies) {
        SvfBench bench(family, 999);
        const Codes c = codes(family);
        EXPECT_EQ(bench.statements("SDR 12 TDI (ABC);"),
                  c.enter + ", " + c.drive + ":188, 00, 01, 00, 11*2")
            << int{family};
        EXPECT_EQ(bench.statements("SDR 16 TDI (A55A);"),
                  c.enter + ", " + c.drive + ":90, 01, 00, 01, 00*2, 01, 00, 11*2")
            << int{family};
        EXPECT_EQ(bench.statements("SDR 1 TDI (0);"), c.enter + ", 10*2") << int{family};
    }
}

TEST(SdrExecutor, ReadsWithTheCodeOfTheFamily) {
    for (const std::uint8_t family : allfamilies) {
        SvfBench bench(family, 999);
        const Codes c = codes(family);
        // In the replaying families a read of no device code is one bit long.
        const bool onebit = family >= 94;
        const auto expected = [&](const std::string& bytes, int bits) {
            std::string text = c.enter;
            if (!onebit) text += bytes;
            for (int i = 1; i < bits && !onebit; ++i) text += ", s, 00";
            return text + ", s, 10*2, 00";
        };
        const auto read = [&](const std::string& row) {
            // A first read without mask, so that the check of the device code is over.
            const std::string first = bench.statements("SDR 12 TDI (000) TDO (000) MASK (000);");
            std::string both = bench.statements("SDR 12 TDI (000) TDO (000) MASK (000);\n" + row);
            EXPECT_EQ(both.substr(0, first.size()), first);
            return both.substr(first.size() + 2);
        };
        EXPECT_EQ(read("SDR 20 TDI (FFFFF) TDO (00000);"), expected(", " + c.read + ":1*2", 4))
            << int{family};
        EXPECT_EQ(read("SDR 24 TDI (FFFFFF) TDO (000000);"), expected(", " + c.read + ":1*2", 8))
            << int{family};
        EXPECT_EQ(read("SDR 8 TDI (FF) TDO (00);"), expected("", 8)) << int{family};
    }
}

TEST(SdrExecutor, ReplaysDriveAndSampleEachBit) {
    for (const int family : {94, 95}) {
        SvfBench bench(static_cast<std::uint8_t>(family), 23328);
        std::string expected = "10, 00, 10, 00, 10, 00, s, 01";
        for (int i = 1; i < 31; ++i) expected += ", s, 00";
        expected += ", s, 01, 00, 10*2, 00";
        EXPECT_EQ(bench.statements("SDR 34 TDI (280000001) TDO (0FFFFFFFF) MASK (000000000);"),
                  expected);
        EXPECT_EQ(bench.statements("SDR 34 TDI (280000001)\nTDO (000000000)\nMASK (000000000);"),
                  expected)
            << "their TDI is stored in every layout";
    }
}

TEST(SdrExecutor, AFaultQueuesNothing) {
    for (const std::uint8_t family : allfamilies) {
        SvfBench bench(family, 999);
        for (const char* text :
             {"SDR 8 TDI (G0);", "SDR 8 TDI (00) TDO (1);", "SDR 8 TDI (00)\nTDO (00)\nMASK (F);",
              "SIR 8 TDI (8000);", "RUNTEST 1;", "sdr 8 tdi (00);"}) {
            EXPECT_EQ(bench.statements(text), "") << text << " in family " << int{family};
            EXPECT_EQ(bench.play(text), 1) << text << " in family " << int{family};
        }
    }
}

// Flips bit i of the whole bytes, or the line of raw byte i - 8 * whole.
Bytes flipped(Bytes bytes, std::size_t whole, std::size_t i) {
    if (i < 8 * whole)
        bytes.at(i / 8) ^= static_cast<std::uint8_t>(1U << i % 8);
    else
        bytes.at(whole + i - 8 * whole) ^= 0xFF;
    return bytes;
}

bool hasnote(const SvfBench& bench) {
    return bench.log().starts_with(">>Warning! Device Code Error!\n");
}

TEST(DeviceCode, IsComparedBitByBitUnderItsMask) {
    const Bits code = pattern(32, 7);
    for (const std::uint8_t family : allfamilies) {
        if (family == 89) continue;  // looks at ten rows
        SvfBench bench(family, 999);
        const Bytes good = bench.packed(code);
        bench.bulk = {good};
        ASSERT_EQ(bench.play(read(code)), 0) << int{family};
        // Family 83 compares its first half, here an empty one, as well.
        EXPECT_EQ(bench.count("usbbulkread 16385"), family == 83 ? 3U : 2U) << int{family};
        for (const std::size_t bit : {0U, 7U, 15U, 23U, 24U, 31U}) {
            bench.bulk = {flipped(good, 3, bit)};
            EXPECT_EQ(bench.play(read(code)), 1) << int{family} << " bit " << bit;
            EXPECT_TRUE(hasnote(bench));
            EXPECT_EQ(bench.count("usbbulkread 16385"), 1U) << "the run ends at that line";
            Bits mask(32, '1');
            mask[bit] = '0';
            EXPECT_EQ(bench.play("SDR 32 TDI (00000000) TDO (" + field(code) + ") MASK (" +
                                 field(mask) + ");"),
                      0)
                << int{family} << " bit " << bit << " under the mask";
        }
        bench.bulk = {std::nullopt};
        EXPECT_EQ(bench.play(read(code)), 1);
        EXPECT_TRUE(hasnote(bench)) << "a failed transfer is noted alike";
    }
}

TEST(DeviceCode, IsAWordOrARowOfItsOwnWidth) {
    for (const std::int32_t width : {9, 16, 24, 45}) {
        const Bits row = pattern(width, 3);
        const std::size_t last = static_cast<std::size_t>(width) - 1;
        for (const std::uint8_t family : {std::uint8_t{87}, std::uint8_t{88}}) {
            SvfBench bench(family, 999);
            const Bytes good = bench.packed(row);
            const std::size_t whole = (last + 1) / 8 - ((last + 1) % 8 == 0 ? 1 : 0);
            bench.bulk = {good};
            EXPECT_EQ(bench.play(read(row)), 0) << width;
            bench.bulk = {flipped(good, whole, last)};
            EXPECT_EQ(bench.play(read(row)), 1) << width;
        }
        if (width == 45) continue;  // has four bytes and more
        // Elsewhere row 0 is a word: what it does not store is 0 and not compared.
        SvfBench bench(80, 999);
        Bits stored = row;
        stored.resize((last + 8) / 8 * 8, '0');
        const Bytes word =
            bench.packed(stored + pattern(32 - static_cast<std::int32_t>(stored.size()), 9));
        bench.bulk = {word};
        EXPECT_EQ(bench.play(read(row)), 0) << width;
        bench.bulk = {flipped(word, 3, 0)};
        EXPECT_EQ(bench.play(read(row)), 1) << width;
    }
}

TEST(DeviceCode, OfFamily89IsTenRows) {
    SvfBench bench(89, 999);
    std::string text;
    Bytes rows;
    for (unsigned i = 0; i < 10; ++i) {
        const Bits bits = pattern(32, i);
        text += read(bits);
        const Bytes row = bench.packed(bits);
        rows.insert(rows.end(), row.begin(), row.end());
    }
    bench.bulk = {rows};
    EXPECT_EQ(bench.play(text), 0);
    EXPECT_EQ(bench.count("usbbulkread 16385"), 1U) << "after the tenth read";
    for (const std::size_t row : {0U, 1U, 2U, 9U}) {
        Bytes wrong = rows;
        wrong[row * 11 + 1] ^= 4;
        bench.bulk = {wrong};
        EXPECT_EQ(bench.play(text), row == 2 ? 0 : 1) << "whole byte of row " << row;
        wrong = rows;
        wrong[row * 11 + 3] ^= 0xFF;
        bench.bulk = {wrong};
        EXPECT_EQ(bench.play(text), 1) << "last bits of row " << row;
    }
    std::string oddrows;
    for (int i = 0; i < 10; ++i) oddrows += read(pattern(12, 1));
    bench.bulk = {};
    EXPECT_EQ(bench.play(oddrows), 0) << "rows with an incomplete byte are not compared";
}

TEST(DeviceCode, AReadWithoutRowChecksTheStoredRowAgain) {
    SvfBench bench(80, 999);
    const Bits code = pattern(32, 7);
    const std::string again = "SDR 32 TDI (00000000) TDO (0\n";
    bench.bulk = {bench.packed(code), bench.packed(pattern(32, 8))};
    EXPECT_EQ(bench.play(read(code) + again), 1);
    EXPECT_TRUE(hasnote(bench));
    bench.bulk = {};
    EXPECT_EQ(bench.play(again), 0) << "no row is stored yet";
    EXPECT_EQ(bench.count("usbbulkread 16385"), 1U) << "the comparison alone";
}

}  // namespace
}  // namespace keld2::testing
