// SerialChip: a microcontroller that is worked through an eight-bit strobed port.
//
// Register 4 is the data byte, register 5 its direction (bits of 1: the chip may drive; as long as
// it does not, the programmer still holds the line weakly at its own level), register 6
// the control lines: bit 6 deselects, bit 5 is the strobe (a byte is taken, or the next one shown,
// when it falls), bits 1 and 3 keep the port open. A frame begins with the selection and, where it
// writes, takes effect with the release. Nothing is understood before the enable frame, which
// needs VPP; loss of VPP ends the programming mode.
//
// A page is written only when the same bytes come twice, first with the load command and then with
// a write command. An erase needs its key in configuration byte 0, a power cycle, and the erase
// command. While a write is under way the port is deaf; a write that loses VPP or power leaves the
// cells as they were.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "sim/cells.h"
#include "sim/chip.h"
#include "sim/chipspec.h"
#include "sim/supplyneeds.h"

namespace keld2::sim {

struct SerialParameters {
    std::size_t programbytes = 0;
    std::size_t idbytes = 0;    // of the ID area
    std::size_t pagebytes = 0;  // of a page write
    std::array<std::uint8_t, 3> id{};
    SupplyNeeds supplies;
    std::uint64_t writetime = 0;   // of a page, in ns
    std::uint64_t configtime = 0;  // of a configuration byte, in ns
    std::uint64_t erasetime = 0;   // in ns
};

class SerialChip final : public Chip {
  public:
    explicit SerialChip(SerialParameters parameters, const Faults& faults = {});

    void supplieschanged(const Socket& socket) override;
    void registerwritten(const Socket& socket, std::uint8_t reg) override;
    std::uint8_t registerread(const Socket& socket, std::uint8_t reg, std::uint8_t idle) override;
    std::vector<StateSection> state() override;

  private:
    enum class Action : std::uint8_t;
    struct Command;
    static const std::array<Command, 12> commands;

    // A write or erase that is under way.
    struct Job {
        Action action{};
        std::uint32_t address = 0;
        std::vector<std::uint8_t> bytes = {};
        std::uint64_t done = 0;  // when the socket's clock is there
    };

    static const Command* find(std::uint8_t code);
    void settle(const Socket& socket);
    void beginframe();
    void strobe(const Socket& socket);
    void takebyte(std::uint8_t b);
    void endframe(const Socket& socket);
    void carryout(const Socket& socket, const Command& command);
    void start(const Socket& socket, Action action, std::uint64_t time);
    void finishjob();
    void writepage(Cells& cells);
    bool pagerepeated() const;
    std::uint32_t operand() const;
    std::uint8_t shown() const;
    bool headercomplete() const;

    SerialParameters p_;
    Cells program_;
    Cells idarea_;
    Cells configuration_;
    std::array<std::uint8_t, 1> erasekey_{};  // 1: set in configuration byte 0

    bool powered_ = false;
    bool vpp_ = false;
    bool enabled_ = false;
    bool keyatpowerup_ = false;
    std::uint8_t control_ = 0xFF;  // register 6 as last seen

    const Command* command_ = nullptr;
    std::vector<std::uint8_t> frame_;   // header bytes of the frame
    std::uint32_t position_ = 0;        // data byte within the frame
    std::vector<std::uint8_t> loaded_;  // first transfer of a page
    std::vector<std::uint8_t> data_;    // data of the frame
    std::optional<Job> job_;
};

// Keys: program, idarea, page (bytes), id (three bytes), writetime, configtime, erasetime (in
// microseconds) and those of SpecReader::supplies.
std::unique_ptr<Chip> makeserialchip(SpecReader& spec, const Faults& faults);

}  // namespace keld2::sim
