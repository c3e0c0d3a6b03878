// ArmAlgorithm: what a simulated algorithm image tells the simulated programmer.
//
// An image is a text of lines; a word begins each, # begins a comment:
//
//     keld2 simulated algorithm 1
//     family B
//     words 1048576 1          # words of the device, bytes of a word
//     ram 196608               # bytes of the programmer's RAM block
//     bank 0
//     margin 5                 # verify at 5 % above and below the nominal VCC; 0: at nominal
//     configuration 11         # bytes that the phase config writes
//     operation auto erase blank program verify config
//     time erase 400           # microseconds a KiB
//
// The first line must stand; of the others family, words and ram must. An operation that is not
// named is refused by the programmer.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "sim/armphase.h"

namespace keld2::sim {

enum class ArmFamily : char { a = 'A', b = 'B' };

struct ArmAlgorithm {
    ArmFamily family = ArmFamily::a;
    std::int32_t words = 0;
    std::int32_t wordsize = 1;  // bytes
    std::int32_t ram = 0;       // bytes
    std::uint8_t bank = 0;
    std::int32_t margin = 0;          // percent
    std::int32_t configuration = 11;  // bytes
    std::map<std::uint8_t, std::vector<ArmPhase>> operations =
        {};                                      // by the host's operation number
    std::array<std::int32_t, armphases> time{};  // microseconds a KiB, by ArmPhase

    std::int64_t bytes() const { return std::int64_t{words} * wordsize; }
    std::int32_t blockwords() const { return ram / wordsize; }
};

// The text cannot be used; what() says line, what is wrong and what was expected.
class AlgorithmError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

ArmAlgorithm parsealgorithm(std::span<const std::uint8_t> image);
std::string algorithmtext(const ArmAlgorithm& algorithm);

}  // namespace keld2::sim
