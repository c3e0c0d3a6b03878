// ArmEngine: the part of the simulated programmer that works on ARM devices by itself.
//
// It takes an algorithm image, keeps a block of RAM between host and chip, and carries out
// operations block by block while it reports status records. A record stands for recordtime of
// work: the phases of an operation go on record by record, so a stop or a lost connection leaves
// the chip as far as it was.
#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <vector>

#include "sim/armalgorithm.h"
#include "sim/debugport.h"
#include "sim/faults.h"

namespace keld2::sim {

inline constexpr std::int32_t recordtime = 10'000;  // microseconds

class ArmEngine {
  public:
    // firmware: the revision that the programmer reports. chip must outlive the engine; nullptr:
    // the chip in the socket cannot be reached.
    ArmEngine(DebugPort* chip, std::uint8_t firmware, ArmFaults faults = {});

    // The programmer has been switched to a family, with the chip's supplies on.
    void start(ArmFamily family);
    void powerdown();  // the image and what runs are gone
    bool running() const { return family_.has_value(); }

    // A command frame; one that it does not know is ignored.
    void frame(std::span<const std::uint8_t> bytes);
    // Bulk data by the frame before; false: nothing is there to take or give them.
    bool bulkwrite(std::span<const std::uint8_t> source);
    bool bulkread(std::span<std::uint8_t> target);
    // The newest status record into the first bytes of target (20); false: not switched to ARM.
    bool record(std::span<std::uint8_t> target);

  private:
    // A stretch of a phase: bytes of the chip, or configuration cells.
    struct Step {
        ArmPhase phase = ArmPhase::read;
        std::int64_t from = 0;
        std::int64_t to = 0;
        int vcc = nominalvcc;
        std::uint8_t pass = 0;  // of the verify passes at two voltages
    };
    enum class Bulk { none, imagein, imageout, ramin, ramout };

    void imageframe(std::span<const std::uint8_t> bytes);
    void selectframe(std::span<const std::uint8_t> bytes);
    void commandframe(std::span<const std::uint8_t> bytes);
    void devicecode();
    void operation(std::span<const std::uint8_t> bytes);
    void plan(const std::vector<ArmPhase>& phases, std::int32_t block, bool marked);
    void planphase(ArmPhase phase, const Step& block);
    void advance();
    bool work(const Step& step, std::int64_t end);  // false: failed
    bool workword(const Step& step, std::int64_t address);
    void workcell(const Step& step, std::int64_t cell);
    std::uint8_t buffered(std::int64_t address) const;
    void fail(const Step& step, std::int64_t address);
    void refuse();
    void finish();
    void report(std::initializer_list<std::uint8_t> bytes);

    DebugPort* chip_;
    std::uint8_t firmware_;
    ArmFaults faults_;

    std::optional<ArmFamily> family_;
    std::vector<std::uint8_t> image_;
    std::optional<ArmAlgorithm> algorithm_;  // of the image, when it can be read as one
    std::vector<std::uint8_t> ram_;
    std::size_t ramat_ = 0;
    Bulk bulk_ = Bulk::none;
    std::array<std::uint8_t, armconfigurationcells> configuration_{};

    std::vector<Step> steps_;  // of the running operation; empty: none runs
    std::size_t step_ = 0;
    std::int64_t cursor_ = 0;     // within the step
    std::int64_t blockfrom_ = 0;  // byte of the chip that goes with the first of the RAM
    bool closed_ = false;         // the phases behind the last block have been planned
    bool reading_ = false;
    bool stopasked_ = false;
    std::array<std::uint8_t, 20> record_{};
};

}  // namespace keld2::sim
