// TapScans: tells what the four JTAG lines do, by following the chip's test access port.
//
// A step is a scan: from Select-DR to the next one, or a stay in Run-Test/Idle. Its parts are
// walks, shifts and pauses, and theirs the single lines.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "host/tell/grouper.h"
#include "sim/listengine.h"
#include "sim/tap.h"

namespace keld2::host {

class TapScans final : public Grouper {
  public:
    // fixedmode: the list engine is in the mode whose codes work bit 7 first.
    TapScans(const sim::JtagLines& lines, bool fixedmode) : lines_(lines), fixed_(fixedmode) {}

    void setfixedmode(bool fixed) { fixed_ = fixed; }
    void take(const TraceLine& line, const StepSink& done) override;
    void close(const StepSink& done) override;
    void reset() { state_ = sim::TapState::testlogicreset; }  // the power went off

  private:
    enum class Kind { walk, shiftir, shiftdr, idle, reset, pause };
    // A stretch of clocks of one kind.
    struct Stretch {
        Kind kind = Kind::walk;
        Step step;
        std::vector<sim::TapState> path;  // of a walk
        std::vector<bool> driven;         // TDI, first bit first
        std::vector<bool> read;           // TDO where it is known
        std::int64_t clocks = 0;
        std::int64_t samples = 0;
        std::int64_t pause = 0;  // us
    };

    void write(const TraceLine& line, const StepSink& done);
    void shiftcode(const TraceLine& line, const StepSink& done);
    void sample(const TraceLine& line);
    void clock(bool tdi, const StepSink& done);
    void pause(const TraceLine& line, const StepSink& done);
    void begin(Kind kind, const StepSink& done);
    void endstretch();
    bool level(const sim::Line& line) const { return (registers_[line.reg] & line.bit) != 0; }

    static Kind kindof(sim::TapState before, sim::TapState after);
    static std::string wordsof(const Stretch& stretch);

    sim::JtagLines lines_;
    bool fixed_;
    sim::TapState state_ = sim::TapState::testlogicreset;
    std::array<std::uint8_t, 256> registers_{};
    std::vector<Step> pending_;  // lines that lead to the next clock
    int sampled_ = -1;           // TDO before the next clock: -2 read, but not known; -1 not read
    std::int64_t codeline_ =
        0;               // the last shift code, whose clocks may reach into the next stretch
    bool open_ = false;  // a stretch is begun
    Stretch stretch_;
    Step scan_;
    std::vector<std::string> essence_;  // words for the scan: its shifts and stays
};

// "0x2A5": the first bit is the lowest.
std::string bitswords(const std::vector<bool>& bits);

}  // namespace keld2::host
