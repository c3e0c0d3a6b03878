// A run of the fixed logic family with a scripted programmer: what the window asks of it, and what
// a chip on the JTAG lines would take from the queued lists.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "families/fixedlogic.h"
#include "jtag/script.h"
#include "jtag/wiring.h"
#include "platform/platformdecorator.h"
#include "sim/programmer.h"
#include "sim/tap.h"
#include "testmachine.h"

namespace keld2::testing {

inline constexpr std::array<std::uint8_t, 3> fixedmodes{41, 42, 43};

// One pass through Shift-DR: the instruction in force and the bits on TDI.
struct Scan {
    int instruction = 0;
    Bits bits;
    bool operator==(const Scan&) const = default;
};

// What a TAP takes from queued calls: instructions, data scans, and the pauses in
// Run-Test/Idle that follow an instruction.
class Chip {
  public:
    explicit Chip(std::uint8_t family) : wiring_(findjtagfamily(family)->wiring) {}
    void take(const std::vector<std::string>& calls);

    std::vector<int> instructions;
    std::vector<Scan> scans;
    std::vector<std::pair<int, int>> pauses;  // instruction, long ticks

  private:
    void write(int value, int reg);
    void clock();
    void shift(int code, int value);

    const Wiring wiring_;
    sim::TapState state_ = sim::TapState::testlogicreset;
    bool tms_ = false, tck_ = false, tdi_ = false;
    int instruction_ = 0;
    Bits bits_;
};

class FixedBench : public Script, public PlatformDecorator {
  public:
    // programmer: works the jobs instead of the scripted answers; must outlive the bench.
    FixedBench(std::uint8_t family, std::int32_t fuses, sim::SimProgrammer* programmer = nullptr);

    // Runs one operation, or the sequence that autoprg holds when op is 0.
    void run(std::int16_t op);

    // The read-back of a chip with these fuses, cell by cell from address 0.
    Bytes rows(const std::string& map) const;
    // The read-back of a device code.
    Bytes id(DeviceCode code) const;
    // The answers of the direct samples that give these user code cells.
    std::deque<std::uint8_t> usercode(const std::string& cells) const;
    // The fuse map and user code cells of the buffer.
    std::string cells(std::int64_t first, std::int64_t count) const;
    void setcells(std::int64_t first, const std::string& text);
    std::string log() const { return utf8text(0); }
    std::string report() const { return utf8text(1); }
    std::vector<std::string> calls() const { return devcore->calls; }
    std::size_t count(const std::string& call) const;

    std::vector<BoxAnswer> answers;
    std::vector<std::string> boxes;  // texts of the boxes shown
    std::function<void()> onservice = [] {};
    int waits = 0;  // services that could have waited for events

    SharedVariables& s() { return module_.variables(); }

    void service() override {
        if (!std::exchange(awake_, false)) ++waits;
        onservice();
    }
    void wake() override { awake_ = true; }
    BoxAnswer messagebox(const Box& box) override;

  private:
    static External simulated(sim::SimProgrammer& programmer);
    std::string utf8text(int index) const;
    std::uint8_t raw(char bit) const;

    const JtagFamily* family_;
    FixedGeometry geometry_;
    mutable test::TestMachine machine_;
    mutable Module module_;
    bool awake_ = false;
    std::size_t boxesshown_ = 0;
};

}  // namespace keld2::testing
