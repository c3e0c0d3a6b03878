// ByteSource: choices drawn from a fuzzer's bytes. When they run out it goes on with numbers that
// follow from them, so that a short input is a whole session too.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <span>
#include <string>
#include <vector>

namespace keld2::fuzz {

class ByteSource {
  public:
    explicit ByteSource(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    std::uint8_t byte() {
        if (!empty()) {
            state_ = (state_ ^ bytes_[place_]) * 1099511628211U;
            return bytes_[place_++];
        }
        state_ = state_ * 6364136223846793005U + 1442695040888963407U;
        return static_cast<std::uint8_t>(state_ >> 56);
    }
    std::uint32_t number() {
        std::uint32_t value = 0;
        for (int i = 0; i < 4; ++i) value = value << 8 | byte();
        return value;
    }
    std::uint32_t below(std::uint32_t count) { return number() % count; }
    bool chance(std::uint32_t percent) { return byte() * 100U < percent * 256U; }
    bool empty() const { return place_ == bytes_.size(); }

    template <typename Range>
    const auto& pick(const Range& range) {
        return *std::next(std::begin(range), below(static_cast<std::uint32_t>(std::size(range))));
    }
    std::vector<std::uint8_t> block(std::uint32_t most) {
        std::vector<std::uint8_t> bytes(below(most + 1));
        const std::uint8_t fill = byte();
        for (std::size_t i = 0; i < bytes.size(); ++i)
            bytes[i] = i < 64 || chance(5) ? byte() : fill;
        return bytes;
    }

  private:
    std::span<const std::uint8_t> bytes_;
    std::size_t place_ = 0;
    std::uint64_t state_ = 14695981039346656037U;  // of the bytes so far
};

}  // namespace keld2::fuzz
