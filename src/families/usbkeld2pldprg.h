// usbkeld2pldprg: the run window of the fixed logic family (mode bytes 41, 42 and 43: one chip
// family on three wirings) and of mode byte 50, which plays an SVF text.
//
// The fuse map in ibuffer is one text digit a fuse, row by row; behind its tlength[0] cells lie
// the 32 cells of the user code.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "families/fixedlogic.h"
#include "jtag/lines.h"
#include "jtag/sdr.h"
#include "run/runwindow.h"

namespace keld2 {

class usbkeld2pldprg final : public RunWindow {
  public:
    explicit usbkeld2pldprg(const RunContext& run);

  private:
    // What shiftdr does with the bits; the last two also leave Shift-DR with the last bit.
    enum class ShiftMode { drive, read, drivelast, readlast };
    // What fuseread does with the fuses: the operation number less that of read.
    enum FuseMode : std::int16_t { store, verify, blank, compare };

    int dohwstart() override;
    StopButton stopbutton(std::int16_t op) const override;
    void dooperation(std::int16_t op) override;
    void fixedoperation(std::int16_t op);

    // Shifts. A register is in Shift-DR when shiftdr is called.
    template <typename Lines>
    static std::uint32_t shiftdr(Lines& lines, std::int32_t bits, std::uint32_t value,
                                 ShiftMode mode);
    void shiftir(std::uint8_t instruction);
    void shiftintoidle(std::uint8_t instruction, std::int32_t pulses);
    void rowselect(std::int32_t count, std::int32_t position);
    void zeroshift(std::int32_t n);
    void pldenter();
    void startlists();  // the list engine's mode of this family

    // Device code.
    int idread();
    void queueid();
    void takeid();
    bool idmatch();
    void idnote();
    BoxAnswer askaboutid();

    // Whether ibuffer holds the fuse map and, where it is used, the user code.
    bool mapinbuffer(bool withusercode) const;

    // Read, verify, blank check, compare.
    void fuseread(FuseMode mode);
    void queuerow(std::int32_t row);
    void checkrows(FuseMode mode);
    bool checkrow(std::int32_t row, FuseMode mode);
    int fusecheck(std::int32_t address, bool bit, FuseMode mode);
    int fusedifference(std::int32_t address, bool bit);
    int fuselistline(std::int32_t address, bool bit);
    void readusercode();

    // Program, erase, secure.
    void fuseprogram();
    void takefuses();
    void programrow(std::int32_t row);
    void programusercode();
    void driveregister(const std::vector<std::uint8_t>& bytes, std::int32_t lastbits);
    void programpulse();
    void fuseerase();
    void fusesecure();
    void endlists();  // resets read-back and list engine
    void writerecordtdo(std::optional<std::uint8_t> reg);
    void writerowprogress(std::int32_t row);

    const FixedFamily* family_;  // nullptr for mode bytes outside the fixed logic family
    LineLevels levels_;
    QueuedLines queued_;
    DirectLines direct_;
    SvfState svfstate_{.rows = SvfRows(sdrrules50.limits)};  // of the mode byte that plays a text
    FixedGeometry geometry_;                                 // of the operation in hand
    DeviceCode idbytes_{};
    std::u16string idtext_;
    std::vector<std::uint8_t> fusechars_;  // 0 or 1 by fuse address, kept between operations
    std::u16string report_;                // lines of a compare that are not yet in MainRtstr[1]
};

template <typename Lines>
std::uint32_t usbkeld2pldprg::shiftdr(Lines& lines, std::int32_t bits, std::uint32_t value,
                                      ShiftMode mode) {
    const bool leave = mode == ShiftMode::drivelast || mode == ShiftMode::readlast;
    if (mode == ShiftMode::read || mode == ShiftMode::readlast) return lines.readbits(bits, leave);
    lines.drivebits(bits, value, leave);
    return 0;
}

}  // namespace keld2
