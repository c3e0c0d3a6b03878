#include "arm/geometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace keld2 {
namespace {

// Every bulk of a range as "block:offset+length", blocks that are last with a star.
std::string cut(const ArmRange& range) {
    const auto geometry = ArmGeometry::cut(range);
    if (!geometry) return "impossible";
    std::string text;
    for (std::int32_t i = 0; i <= geometry->lastblock(); ++i) {
        const ArmBlock block = geometry->block(i);
        for (std::int32_t k = 0; k <= block.lastbulk; ++k) {
            const ArmBulk bulk = geometry->bulk(block, k);
            text += (text.empty() ? "" : " ") + std::to_string(i) + (block.last ? "*" : "") + ":" +
                    std::to_string(bulk.offset) + "+" + std::to_string(bulk.length);
        }
    }
    return text;
}

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

struct Row {
    const char* what;
    ArmRange range;
    const char* bulks;
};

TEST(ArmGeometry, CutsRangesIntoBlocksAndBulks) {
    const Row rows[]{
        {"one word", {.wordsize = 2, .ramlength = 0x8000, .bulksize = 0x8000}, "0*:0+2"},
        {"one full block of one bulk",
         {.last = 0x7FFF, .wordsize = 1, .ramlength = 0x8000, .bulksize = 0x8000},
         "0*:0+32768"},
        {"a word beyond it",
         {.last = 0x8000, .wordsize = 1, .ramlength = 0x8000, .bulksize = 0x8000},
         "0:0+32768 1*:32768+1"},
        {"bulks within a block, last bulk by a word",
         {.last = 0x18000, .wordsize = 1, .ramlength = 0x20000, .bulksize = 0xC000},
         "0*:0+49152 0*:49152+49152 0*:98304+1"},
        {"words of two bytes: a full block, then its last word alone",
         {.last = 0x6000, .wordsize = 2, .ramlength = 0xC000, .bulksize = 0xC000},
         "0:0+49152 1*:49152+2"},
        {"full bulks of a block that is no multiple of them",
         {.last = 0xC000, .wordsize = 1, .ramlength = 0xC000, .bulksize = 0x8000},
         "0:0+32768 0:32768+32768 1*:49152+1"},
        {"bulks longer than the block",
         {.last = 5000, .wordsize = 1, .ramlength = 4096, .bulksize = 0x8000},
         "0:0+32768 1*:4096+905"},
        {"wide bulks for wide blocks",
         {.last = 0xFFFF,
          .wordsize = 1,
          .ramlength = 0x10000,
          .bulksize = 0x8000,
          .widebulksize = 0x10000},
         "0*:0+65536"},
        {"a block one word short of wide",
         {.last = 0xFFFE,
          .wordsize = 1,
          .ramlength = 0xFFFF,
          .bulksize = 0x8000,
          .widebulksize = 0x10000},
         "0*:0+32768 0*:32768+32767"},
        {"the offset of the buffer, and a range that begins later",
         {.first = 1000,
          .last = 1063,
          .bufferoffset = 7,
          .wordsize = 2,
          .ramlength = 64,
          .bulksize = 0x8000},
         "0:7+32768 1*:71+64"},
        {"bounds between words: the difference to even, the offset too",
         {.first = 0.5,
          .last = 10,
          .bufferoffset = 2.5,
          .wordsize = 1,
          .ramlength = 64,
          .bulksize = 64},
         "0*:2+11"},
        {"a last block that follows from the length",
         {.last = 0xFF, .wordsize = 1, .ramlength = 0x80, .bulksize = 0x8000, .tail = 0x101},
         "0:0+32768 1*:128+2"},
        {"a RAM block that is no multiple of a word",
         {.last = 6, .wordsize = 4, .ramlength = 11, .bulksize = 8},
         "0:0+8 0:8+8 1:8+8 1:16+8 2:16+8 2:24+8 3*:24+4"},
    };
    for (const Row& row : rows) EXPECT_EQ(cut(row.range), row.bulks) << row.what;
}

TEST(ArmGeometry, ExtendsOnlyAShortLastBulk) {
    ArmRange range{.wordsize = 1, .ramlength = 0x8000, .bulksize = 0x8000, .extension = 100};
    range.last = 0x8000 - 100 - 2;  // one byte below the edge
    EXPECT_EQ(cut(range), "0*:0+" + std::to_string(0x8000 - 1));
    range.last = 0x8000 - 100 - 1;  // at the edge
    EXPECT_EQ(cut(range), "0*:0+" + std::to_string(0x8000 - 100));
    range.last = 0x8000;
    EXPECT_EQ(cut(range), "0:0+32768 1*:32768+101");
}

TEST(ArmGeometry, RefusesWhatCannotBeCarriedOut) {
    const ArmRange good{.last = 63, .wordsize = 1, .ramlength = 64, .bulksize = 64};
    const auto with = [&](auto change) {
        ArmRange range = good;
        change(range);
        return cut(range);
    };
    EXPECT_EQ(cut(good), "0*:0+64");
    EXPECT_EQ(with([](ArmRange& r) { r.wordsize = 0; }), "impossible");
    EXPECT_EQ(with([](ArmRange& r) { r.ramlength = 0; }), "impossible");
    EXPECT_EQ(with([](ArmRange& r) { r.ramlength = -64; }), "impossible");
    EXPECT_EQ(with([](ArmRange& r) { r.wordsize = 65; }), "impossible");
    EXPECT_EQ(with([](ArmRange& r) { r.first = 64; }), "impossible");
    EXPECT_EQ(with([](ArmRange& r) { r.last = 65536.0 * 64; }), "impossible");
    for (const double bad : {nan, infinity, -1.0, 4e9}) {
        EXPECT_EQ(with([bad](ArmRange& r) { r.first = bad; }), "impossible") << bad;
        EXPECT_EQ(with([bad](ArmRange& r) { r.last = bad; }), "impossible") << bad;
        EXPECT_EQ(with([bad](ArmRange& r) { r.bufferoffset = bad; }), "impossible") << bad;
    }
}

TEST(ArmGeometry, BufferEndIsTheFarthestByteOfAnyBulk) {
    // the full bulk of the first block reaches beyond the short last block
    const auto geometry =
        ArmGeometry::cut({.last = 5000, .wordsize = 1, .ramlength = 4096, .bulksize = 0x8000});
    ASSERT_TRUE(geometry);
    EXPECT_EQ(geometry->bufferend(), 0x8000);
    const auto plain = ArmGeometry::cut({.last = 0x8005,
                                         .bufferoffset = 3,
                                         .wordsize = 1,
                                         .ramlength = 0x8000,
                                         .bulksize = 0x8000});
    ASSERT_TRUE(plain);
    EXPECT_EQ(plain->bufferend(), 0x8009);
    EXPECT_EQ(
        ArmGeometry::cut({.last = 65535.0 * 64, .wordsize = 1, .ramlength = 64, .bulksize = 64})
            ->lastblock(),
        65535);
}

TEST(ArmGeometry, RoundsTowardZeroToMultiplesOf256) {
    EXPECT_EQ(trunc256(0x10180), 0x10100);
    EXPECT_EQ(trunc256(255), 0);
    EXPECT_EQ(trunc256(-257), -256);
}

}  // namespace
}  // namespace keld2
