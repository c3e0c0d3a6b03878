// ParallelChip: a flash memory on the parallel lines that is worked by commands on its data lines.
//
// Control bit 0 is write enable, bit 1 chip enable, bit 2 output enable, all low-active; the data
// of a write are taken when write enable rises. Bit 4 of register 6 low is a reset. The lowest
// address lines reach the chip's address pins, others may be chip selects that have to be high.
//
// Commands: 0x00 read, 0xFF reset, 0xC0 program check (shows the status), 0x20 twice erase, 0x40
// program, with data behind it. The status has bit 7 when the chip is ready, and bit 5 instead
// after a command that lacked VPP: then only a reset is heard. Programming clears bits; an erase
// sets all of them. A program or erase that loses power, VPP or patience leaves the cells as they
// were.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "sim/cells.h"
#include "sim/chip.h"
#include "sim/chipspec.h"
#include "sim/supplyneeds.h"

namespace keld2::sim {

struct ParallelParameters {
    std::uint32_t start = 0;   // chip address of the first cell
    std::uint32_t size = 0;    // cells
    std::uint32_t pins = 0;    // lowest address lines that reach the chip
    std::uint32_t select = 0;  // mask of the address lines that have to be high
    SupplyNeeds supplies;
    std::uint64_t programtime = 0;  // of a byte or page, in ns
    std::uint64_t erasetime = 0;    // in ns
};

class ParallelChip : public Chip {
  public:
    void supplieschanged(const Socket& socket) final;
    void registerwritten(const Socket& socket, std::uint8_t reg) final;
    std::uint8_t registerread(const Socket& socket, std::uint8_t reg, std::uint8_t idle) final;
    void busmoved(const Socket& socket) final;
    std::vector<StateSection> state() final;

  protected:
    // One byte of data on its way to the cell of a chip address.
    struct Datum {
        std::uint32_t address = 0;
        std::uint8_t data = 0;
    };

    ParallelChip(ParallelParameters parameters, const Faults& faults);

    // Begins to program; all of it takes the program time once, counted from the time that is
    // given. Without VPP the chip notes an error.
    void program(std::uint64_t from, std::vector<Datum> data);
    bool programming() const { return job_ && !job_->erase; }
    void breakoff() { job_.reset(); }
    void endprogramming() { mode_ = Mode::status; }  // of the data behind the command

  private:
    enum class Mode : std::uint8_t { array, status, erasesetup, program };
    struct Job {
        bool erase = false;
        std::vector<Datum> data = {};
        std::uint64_t done = 0;
    };

    // A write cycle behind the program command.
    virtual void takedata(const Socket& socket, Datum datum) = 0;
    // What ends by time alone, before the chip looks at its pins again.
    virtual void timepasses(const Socket&) {}
    // A command while the chip programs; it is heard when it has broken the programming off.
    virtual void disturbed() {}
    virtual void forget() {}  // all that needs power

    bool works(const Socket& socket) const { return powered_ && !inreset_ && selected(socket); }
    bool selected(const Socket& socket) const;
    std::uint32_t chipaddress(std::int32_t bus) const;
    void reset();
    void settle(const Socket& socket);
    void written(const Socket& socket, Datum datum);
    void command(const Socket& socket, std::uint8_t code);
    void erase(const Socket& socket);
    std::uint8_t shown(const Socket& socket) const;

    ParallelParameters p_;
    Cells cells_;
    bool powered_ = false;
    bool vpp_ = false;
    bool inreset_ = true;
    bool error_ = false;
    Mode mode_ = Mode::array;
    std::optional<Job> job_;
    std::optional<Datum> strobed_;  // the write cycle under way
};

// Programs a byte at a time; the next command ends its program pulse, too early or not.
class ByteChip final : public ParallelChip {
  public:
    ByteChip(const ParallelParameters& parameters, const Faults& faults)
        : ParallelChip(parameters, faults) {}

  private:
    void takedata(const Socket& socket, Datum datum) override;
    void disturbed() override { breakoff(); }
};

// Programs a page at a time: the bytes behind the command fill the latches of the page in which the
// first of them lies. The writing begins when a page's length of bytes has come, or when no
// further one has come for some time.
class PageChip final : public ParallelChip {
  public:
    PageChip(const ParallelParameters& parameters, const Faults& faults, std::uint32_t pagebytes,
             std::uint64_t loadtime)
        : ParallelChip(parameters, faults), pagebytes_(pagebytes), loadtime_(loadtime) {}

  private:
    void takedata(const Socket& socket, Datum datum) override;
    void timepasses(const Socket& socket) override;
    void forget() override { page_.clear(); }
    void write(std::uint64_t from);

    std::uint32_t pagebytes_;
    std::uint64_t loadtime_;  // ns that a further byte may take
    std::vector<Datum> page_;
    std::uint64_t lastload_ = 0;
};

// Keys of both: start (0 without it), size, pins, select (0 without it), programtime, erasetime (in
// microseconds) and those of SpecReader::supplies; of a page chip also page (bytes) and loadtime
// (microseconds).
std::unique_ptr<Chip> makebytechip(SpecReader& spec, const Faults& faults);
std::unique_ptr<Chip> makepagechip(SpecReader& spec, const Faults& faults);

}  // namespace keld2::sim
