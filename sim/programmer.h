// SimProgrammer: a whole programmer in software, with a chip in its socket.
//
// It keeps supplies, pins and pin-driver registers, runs command lists in virtual time, holds what
// they read until it is fetched, and delivers bulk reads from a thread of its own. The components
// that it hands out share it: it has to outlive them.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "external/devcore.h"
#include "external/usbtransport.h"
#include "shared/sharedvariables.h"
#include "sim/board.h"
#include "sim/bulkthread.h"
#include "sim/faults.h"
#include "sim/listengine.h"
#include "sim/readback.h"

namespace keld2::sim {

// The calls that switch the programmer to a mode of its own for ARM devices.
enum class ArmMode { modeselect2, modeselect3, armready };

// A part of the firmware with frames and transfers of its own. A part that takes a call answers
// so, and the programmer's own handling is left out; parts are asked last added first.
class FirmwarePart {
  public:
    virtual ~FirmwarePart() = default;
    virtual void selected(ArmMode) {}
    virtual void powerdown() {}
    virtual bool frame(std::span<const std::uint8_t> /*frame*/) { return false; }
    // Fills all of data for a bulk read.
    virtual bool bulkread(std::span<std::uint8_t> /*data*/) { return false; }
    virtual bool bulkwrite(std::span<const std::uint8_t> /*data*/) { return false; }
    // Lays the newest status record over the first bytes of ibuf1. None: not this part's. False:
    // the transfer has failed.
    virtual std::optional<bool> transferwait(std::uint8_t /*count*/,
                                             std::span<std::uint8_t> /*ibuf1*/) {
        return {};
    }
    // May change the image in algobuf and its length.
    virtual bool loadalgobuf(std::int32_t& /*length*/, std::span<std::uint8_t> /*algobuf*/) {
        return false;
    }
};

// Where a chip's state is kept between processes.
struct ImageFile {
    std::filesystem::path path;
    std::string device;  // the name that the file carries
};

struct SimSetting {
    std::unique_ptr<Chip> chip;  // nullptr: the socket is empty
    Faults faults = {};          // those of the programmer; the chip has been made with its own
    std::optional<ImageFile> image = {};
    std::function<void()> wake = {};  // called from the bulk thread when a transfer has ended
};

// One entry of a command list.
struct ListEntry {
    enum class Kind : std::uint8_t { write, read, pauseshort, pauselong, bus, busturn };
    std::int32_t value = 0;  // of a register, count of ticks, or address
    Kind kind = Kind::write;
    std::uint8_t reg = 0;      // register; of bus: data; of busturn: direction
    std::uint8_t control = 0;  // of busturn: mode
};

class SimProgrammer {
  public:
    // Takes the chip's state from the image file when there is one; throws RunFault when it cannot
    // be used.
    explicit SimProgrammer(SimSetting setting);
    ~SimProgrammer();
    SimProgrammer(const SimProgrammer&) = delete;
    SimProgrammer& operator=(const SimProgrammer&) = delete;

    // s: the plug-in's views of the shared blocks; they have to outlive the component.
    std::unique_ptr<DevCore> devcore(SharedVariables& s);
    std::unique_ptr<UsbTransport> transport();

    void addpart(std::unique_ptr<FirmwarePart> part) { parts_.push_back(std::move(part)); }

    // Writes the chip's state to the image file where it has changed. Each power-down does so by
    // itself, but keeps a failure quiet; a host calls this behind the run and hears of it by
    // RunFault. Without an image file nothing happens.
    void save();

    const Socket& socket() const { return board_.socket(); }
    Chip& chip() { return board_.chip(); }
    // Signals of the end of a run, so far.
    struct Signals {
        int pass = 0;
        int fail = 0;
    };
    const Signals& signals() const { return signals_; }

  private:
    friend class SimDevCore;
    friend class SimTransport;

    void queue(const ListEntry& entry) { list_.push_back(entry); }
    void runlist();
    void run(const ListEntry& entry);
    void writeregister(std::int32_t value, std::uint8_t reg);
    void powerdown();
    void selectarm(ArmMode mode);

    int frame(std::span<const std::uint8_t> frame);
    void readbackframe(std::span<const std::uint8_t> frame);
    void listframe(std::span<const std::uint8_t> frame);
    void fastblock(std::span<const std::uint8_t> frame);
    void bulkread(std::span<std::uint8_t> target, std::uint8_t* cell);
    int bulkwrite(std::span<const std::uint8_t> source);
    BulkState collect(std::span<std::uint8_t> data);
    bool transferwait(std::uint8_t count, std::span<std::uint8_t> ibuf1);
    void loadalgobuf(std::int32_t& length, std::span<std::uint8_t> algobuf);

    // Asks the parts in turn until one takes the call.
    template <typename Ask>
    bool anypart(Ask ask);

    Faults faults_;
    std::optional<ImageFile> image_;
    Board board_;
    ListEngine engine_{board_};
    ReadBack readback_;
    bool requested_ = false;  // a frame has asked for what the next bulk read fetches
    std::vector<ListEntry> list_;
    std::vector<std::unique_ptr<FirmwarePart>> parts_;
    Signals signals_;
    std::vector<std::uint8_t> saved_;  // the chip's state as the image file has it
    BulkThread bulk_;                  // last: its thread ends before the rest goes
};

}  // namespace keld2::sim
