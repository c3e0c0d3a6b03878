// The four JTAG lines of a run: line changes and walks turned into register writes.
//
// LineLevels remembers the level last driven on each line of a wiring. A LineDriver changes them
// and hands the register values to a sink: QueuedLines append to DevCore's command list,
// DirectLines act at once. Both work on the same levels. No model of the chip's state is kept: the
// walks and the order of the calls keep the chip where the next call expects it. For a family
// without a row nothing is written and nothing sampled.
#pragma once

#include <array>
#include <cstdint>

#include "external/devcore.h"
#include "jtag/wiring.h"

namespace keld2 {

class LineLevels {
  public:
    enum Line : std::size_t { tms, tck, tdi };

    // A register value, ready to be written.
    struct Write {
        std::int32_t value = 0;
        std::uint8_t reg = 0;
    };

    explicit LineLevels(std::uint8_t family);

    bool wired() const { return row_ != nullptr; }
    // The family's row; an empty one, without codes, for a family outside the table.
    const JtagFamily& family() const { return row_ != nullptr ? *row_ : none; }
    std::uint8_t tdomask() const { return family().wiring.tdo.bits; }
    std::uint8_t tdoregister() const { return family().wiring.tdo.reg; }
    std::uint8_t extrabit() const { return family().extrabit; }

    // The level of a line as last driven, or cleared: its bit in its register, or 0. For who looks
    // on at a run; the engine itself needs whole registers alone.
    std::int16_t tmsbit() const { return bit(tms); }
    std::int16_t tckbit() const { return bit(tck); }
    std::int16_t tdibit() const { return bit(tdi); }

    Write high(Line line) {
        driven_[slot_[line]] |= bits_[line];
        return write(line);
    }
    Write low(Line line) {
        driven_[slot_[line]] &= static_cast<std::uint8_t>(~bits_[line]);
        return write(line);
    }
    Write refresh() const;
    bool hasrefresh() const { return wired() && row_->wiring.refresh.has_value(); }
    void clear() { driven_ = {}; }  // all lines low; nothing is written

    // Read-back bytes queued since the caller last cleared it.
    std::int32_t readcount = 0;

  private:
    static constexpr JtagFamily none{};

    std::int16_t bit(Line line) const { return driven_[slot_[line]] & bits_[line]; }
    Write write(Line line) const {
        const std::size_t slot = slot_[line];
        return {fixed_[slot] | driven_[slot], reg_[slot]};
    }

    const JtagFamily* row_;
    std::array<std::uint8_t, 3> bits_{};    // by line
    std::array<std::size_t, 3> slot_{};     // by line; lines of one register share a slot
    std::array<std::uint8_t, 3> reg_{};     // by slot
    std::array<std::uint8_t, 3> fixed_{};   // by slot: fixed level and extra bit
    std::array<std::uint8_t, 3> driven_{};  // by slot: the lines that are high
};

// Appends to DevCore's command list; what a read gives comes with the read-back.
class QueueSink {
  public:
    explicit QueueSink(DevCore& devcore) : devcore_(devcore) {}
    void write(LineLevels::Write w) { devcore_.qregwrite(w.value, w.reg); }
    std::uint8_t read(std::uint8_t reg, std::int32_t& readcount) {
        devcore_.qregread(reg);
        ++readcount;
        return 0;
    }

  private:
    DevCore& devcore_;
};

// Writes and reads at once.
class DirectSink {
  public:
    explicit DirectSink(DevCore& devcore) : devcore_(devcore) {}
    void write(LineLevels::Write w) { devcore_.regwrite(w.value, w.reg); }
    std::uint8_t read(std::uint8_t reg, std::int32_t&) { return devcore_.regread(reg); }

  private:
    DevCore& devcore_;
};

template <typename Sink>
class LineDriver {
  public:
    LineDriver(LineLevels& levels, DevCore& devcore) : levels_(levels), sink_(devcore) {}

    LineLevels& levels() { return levels_; }
    const JtagFamily& family() const { return levels_.family(); }

    void tmshigh() { high(LineLevels::tms); }
    void tmslow() { low(LineLevels::tms); }
    void tckhigh() { high(LineLevels::tck); }
    void tcklow() { low(LineLevels::tck); }
    void tdihigh() { high(LineLevels::tdi); }
    void tdilow() { low(LineLevels::tdi); }
    void tdidrive(bool level) { level ? tdihigh() : tdilow(); }
    void pinrefresh() {
        if (levels_.hasrefresh()) sink_.write(levels_.refresh());
    }

    void tckpulse() {
        tckhigh();
        tcklow();
    }
    void tckpulses(std::int32_t count) {  // none when count is 0 or below
        for (std::int32_t i = 0; i < count; ++i) tckpulse();
    }

    // One byte of the register that holds TDO: the byte itself when immediate, 0 when queued.
    std::uint8_t tdosample() {
        return levels_.wired() ? sink_.read(levels_.tdoregister(), levels_.readcount) : 0;
    }

    // From Capture by way of Exit1, Pause and Exit2 to right before Shift; only some families.
    void pausewalk() {
        if (!family().pausewalk) return;
        tmshigh();
        tckpulse();
        tmslow();
        tckpulse();
        tmshigh();
        tckpulse();
        tmslow();
    }
    // From Run-Test/Idle or an Update state to Shift-DR.
    void goshiftdr() {
        tmshigh();
        tckpulse();
        tmslow();
        tckpulse();
        pausewalk();
        tckpulse();
    }

    // From Run-Test/Idle or an Update state to Shift-IR.
    void goshiftir() {
        tmshigh();
        tckpulses(2);
        tmslow();
        tckpulse();
        pausewalk();
        tckpulse();
    }
    // count bits of value on TDI, bit 0 first; 0 stands behind the last bit of value. leave: TMS
    // goes high with the last bit.
    void drivebits(std::int32_t count, std::uint32_t value, bool leave) {
        for (std::int32_t i = 0; i < count; ++i) {
            tdidrive((value & 1) != 0);
            value >>= 1;
            if (leave && i == count - 1) tmshigh();
            tckpulse();
        }
    }
    // count samples, each before its pulse. The bits read, the first in bit 0; 0 when queued.
    std::uint32_t readbits(std::int32_t count, bool leave) {
        std::uint32_t value = 0;
        for (std::int32_t i = 0; i < count; ++i) {
            if (leave && i == count - 1) tmshigh();
            const bool set = (tdosample() & levels_.tdomask()) != 0;
            if (set && i < 32) value |= std::uint32_t{1} << i;
            tckpulse();
        }
        return value;
    }
    // A whole instruction, from Run-Test/Idle or an Update state to Update-IR with TMS high.
    void shiftir(std::int32_t count, std::uint32_t value) {
        goshiftir();
        drivebits(count, value, true);
        tckpulse();
    }

  private:
    void high(LineLevels::Line line) {
        if (levels_.wired()) sink_.write(levels_.high(line));
    }
    void low(LineLevels::Line line) {
        if (levels_.wired()) sink_.write(levels_.low(line));
    }

    LineLevels& levels_;
    Sink sink_;
};

using QueuedLines = LineDriver<QueueSink>;
using DirectLines = LineDriver<DirectSink>;

}  // namespace keld2
