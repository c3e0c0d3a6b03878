// Faults that the simulated programmer is asked to have, aimed by count or by address.
//
//   refuse[=COUNT]                   readycheck refuses
//   modefail[=COUNT]                 modeselect (any of the three) fails
//   bulkfail[=COUNT]                 a bulk read ends with an error
//   bulkhang[=COUNT]                 a bulk read never ends
//   transferfail[=COUNT]             transferwait fails
//   sendfail[=COUNT]                 a bulk write fails
//   stuck=ADDRESS:BIT[:LEVEL]        a bit of the chip's memory always reads LEVEL (0 without it)
//   wrongid                          the chip tells another id than its own
//   nopower                          VCC never reaches the socket
//   weak=ADDRESS                     a byte of the chip's memory loses its zeros below nominal VCC
//   phasefail=PHASE:ADDRESS          an operation on an ARM device fails in this phase at this word
//   neverdone                        no operation on an ARM device comes to its end
//   nostop                           operations on an ARM device cannot be stopped
//
// COUNT is a number from 1 (that call only) or a number with + behind it (that call and all after
// it); without COUNT every call. ADDRESS is decimal, or hexadecimal with 0x before it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sim/armphase.h"

namespace keld2::sim {

// Which calls of an operation fail.
class CountedFault {
  public:
    // first: the first failing call, from 1; onwards: all later ones too.
    void aim(std::uint32_t first, bool onwards) {
        first_ = first;
        onwards_ = onwards;
    }
    // Counts one call and tells whether it fails.
    bool strikes() {
        ++calls_;
        return first_ != 0 && (onwards_ ? calls_ >= first_ : calls_ == first_);
    }

  private:
    std::uint32_t first_ = 0;  // 0: none
    bool onwards_ = false;
    std::uint32_t calls_ = 0;
};

struct StuckBit {
    std::uint32_t address = 0;  // of the chip's main memory
    std::uint8_t bit = 0;       // 0 to 7
    bool level = false;
};

struct ArmFaults {
    std::optional<ArmPhase> failphase = {};
    std::uint32_t failaddress = 0;  // of a word
    bool neverdone = false;
    bool nostop = false;
};

struct Faults {
    CountedFault refuse;
    CountedFault modefail;
    CountedFault bulkfail;
    CountedFault bulkhang;
    CountedFault transferfail;
    CountedFault sendfail;
    std::vector<StuckBit> stuck = {};
    std::vector<std::uint32_t> weak = {};  // addresses in the chip's main memory
    ArmFaults arm = {};
    bool wrongid = false;
    bool nopower = false;
};

// Takes one fault text. Throws RunFault, with the text and what was expected, and changes nothing
// when it cannot be understood.
void addfault(Faults& faults, std::string_view text);

}  // namespace keld2::sim
