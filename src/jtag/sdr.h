// SDR statements: queued as drives, reads or replays, and the check of the chip's device code.
#pragma once

#include <cstdint>

#include "jtag/lines.h"
#include "jtag/sdrstatement.h"
#include "jtag/svfrows.h"
#include "run/runcontext.h"

namespace keld2 {

// What the statements of an operation have left.
struct SvfState {
    SvfRows rows;
    std::int32_t rowcount = 0;  // rows stored or counted in this operation
    std::int32_t rowmark = 0;   // replays done in this operation
};

// Which rows the check of the device code compares, and when it is made.
struct CodeCheck {
    enum class Rows {
        code32,    // row 0, taken as 32 bits whatever its width
        ownwidth,  // row 0, of the statement's width
        firstten   // rows 0 to 9, when the width is whole bytes; row 2's whole bytes may differ
    };
    Rows rows = Rows::code32;
    std::int32_t rowcount = 1;  // made right behind a read that leaves this count
};

// Carries out statements of one family. One object an operation.
class SdrExecutor {
  public:
    SdrExecutor(const RunContext& run, QueuedLines& lines, SvfState& state, CodeCheck check)
        : run_(run), lines_(lines), state_(state), check_(check) {}

    // Stores the row and queues the shift. A device code that is wrong or cannot be read leaves 1
    // in prgresult[0] and its note as the log.
    void SDRdate(const SdrStatement& statement);    // families 80 to 93, and 50
    void SDRdate95(const SdrStatement& statement);  // families 94 and 95

  private:
    void store(const SdrStatement& statement);
    void drive(const SdrStatement& statement);
    void read(std::int32_t nbits);
    void read95(std::int32_t nbits);
    void replay(const SdrStatement& statement);
    void checkcode(std::int32_t nbits);
    bool codeagrees(std::int32_t nbits) const;
    // Row row at place of the read-back: whole packed bytes, then bits raw bytes.
    bool rowagrees(std::int32_t row, std::int32_t place, std::int32_t whole, std::int32_t bits,
                   bool bytesmaydiffer) const;

    const RunContext& run_;
    QueuedLines& lines_;
    SvfState& state_;
    CodeCheck check_;
};

// A raw read-back byte's TDO bit against bit i of an expected byte, under bit i of its mask.
inline bool bitagrees(std::uint8_t raw, std::uint8_t tdomask, std::uint8_t expected,
                      std::uint8_t mask, std::int32_t i) {
    return (mask >> i & 1) == 0 || ((raw & tdomask) != 0) == ((expected >> i & 1) != 0);
}

}  // namespace keld2
