// ByteSource: choices drawn from a fuzzer's bytes. When they run out every choice is the first.
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
        if (place_ == bytes_.size()) return 0;
        return bytes_[place_++];
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
};

}  // namespace keld2::fuzz
