// How a device range is cut into RAM blocks and bulk transfers. Values only: nothing here touches
// hardware or shared blocks.
//
// A range is counted in words of wordsize bytes. It goes block by block through the programmer's
// RAM; a block moves in bulks of bulksize bytes. The last block holds what remains, and its last
// bulk ends with the last word.
#pragma once

#include <cstdint>
#include <optional>

namespace keld2 {

struct ArmRange {
    double first = 0;               // first word
    double last = 0;                // last word
    double bufferoffset = 0;        // byte of the main buffer that goes with the first word
    std::int32_t wordsize = 0;      // bytes
    std::int32_t ramlength = 0;     // bytes of the programmer's RAM block
    std::int32_t bulksize = 0;      // bytes
    std::int32_t widebulksize = 0;  // bytes; in its place when a block has 0x10000 words or more
    std::int32_t extension = 0;     // bytes sent behind the last word, where a bulk has room
    // When set, the words of the last block follow from this instead of from the range.
    std::optional<std::int32_t> tail = {};
};

struct ArmBulk {
    std::int32_t index = 0;
    std::int64_t offset = 0;  // byte of the main buffer
    std::int32_t length = 0;  // bytes
};

struct ArmBlock {
    std::int32_t index = 0;
    bool last = false;
    std::int32_t lastbulk = 0;  // index of the block's last bulk
};

// x rounded toward zero to a multiple of 256.
constexpr std::int32_t trunc256(std::int32_t x) { return x / 256 * 256; }

class ArmGeometry {
  public:
    // No value when the range cannot be carried out: a word size or RAM length of 0 or below, a
    // RAM block shorter than a word, bounds that are no numbers or negative, a last word below
    // the first, more than 65536 blocks.
    static std::optional<ArmGeometry> cut(const ArmRange& range);

    std::int32_t lastblock() const { return lastblock_; }
    std::int32_t wordsize() const { return wordsize_; }  // bytes
    ArmBlock block(std::int32_t index) const;
    ArmBulk bulk(const ArmBlock& block, std::int32_t index) const;
    // The first byte behind all bulks of the range in the main buffer.
    std::int64_t bufferend() const;

  private:
    ArmGeometry() = default;

    std::int32_t wordsize_ = 0;
    std::int32_t ramlength_ = 0;
    std::int32_t blockwords_ = 0;
    std::int32_t bulksize_ = 0;
    std::int32_t extension_ = 0;
    std::int32_t lastblock_ = 0;
    std::int64_t tailbytes_ = 0;  // of the last block, up to its last word
    double bufferoffset_ = 0;
};

}  // namespace keld2
