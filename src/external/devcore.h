// DevCore: the component that drives the programmer's supplies, pin drivers and parallel bus.
//
// An implementation stands outside the plug-in: the simulated programmer, a replay, the closed
// component on Windows, or somebody's own hardware. Immediate operations act at once, in call
// order. A q-operation is appended to a command list; qrun sends the list as one job and empties
// it. A call that cannot be carried out at all throws; every other answer is the value returned.
#pragma once

#include <cstdint>

namespace keld2 {

class DevCore {
  public:
    virtual ~DevCore() = default;

    // Supplies and socket pins.
    virtual void setvcc(std::int32_t mv) = 0;                        // VCC level in mV
    virtual void setvpp(std::int32_t mv, std::uint8_t channel) = 0;  // VPP supply 0 or 1 in mV
    virtual void setgndpin(std::uint8_t pin,
                           std::uint8_t on) = 0;  // socket pin to ground: 1 on, 0 off
    virtual void setvccpin(std::uint8_t pin, std::uint8_t on) = 0;  // socket pin to VCC
    virtual void setvpppin(std::uint8_t pin, std::uint8_t on) = 0;  // socket pin to VPP
    virtual void drivercommit() = 0;  // ends a pin set-up; takes the record in ubuf1[4] to [14]
    virtual void powerdown() = 0;     // all supplies and drive off

    // The run as a whole.
    virtual void signalpass(std::uint8_t zero) = 0;  // end-of-run signal
    virtual void signalfail(std::uint8_t zero) = 0;
    virtual int readycheck() = 0;                   // 1: the programmer refuses the run
    virtual void readyfail() = 0;                   // called after a refusal
    virtual int modeselect(std::uint8_t mode) = 0;  // 2: failed
    virtual int modeselect2(std::uint8_t mode, int second) = 0;  // ARM family B; 2: failed
    virtual int modeselect3(std::uint8_t mode, int second) = 0;  // ARM family A; 2: failed
    virtual int armready() = 0;                                  // ARM; 1: refused

    // Pin-driver registers.
    virtual void regwrite(std::int32_t value, std::uint8_t reg) = 0;
    virtual void qregwrite(std::int32_t value, std::uint8_t reg) = 0;
    virtual std::uint8_t regread(std::uint8_t reg) = 0;
    virtual void qregread(std::uint8_t reg) = 0;  // the byte comes in the read-back

    // Pauses: n short ticks of one microsecond, or n long ticks of one millisecond.
    virtual void waitshort(std::int32_t n) = 0;
    virtual void qwaitshort(std::int32_t n) = 0;
    virtual void waitlong(std::int32_t n) = 0;
    virtual void qwaitlong(std::int32_t n) = 0;

    virtual void qrun() = 0;  // the command list is sent, started and emptied

    // Parallel lines: one cycle; control bits are low-active strobes.
    virtual void buswrite(std::int32_t address, std::uint8_t data, std::uint8_t control) = 0;
    virtual void qbuswrite(std::int32_t address, std::uint8_t data, std::uint8_t control) = 0;
    virtual void busconfig(std::int32_t zero, std::uint8_t direction,
                           std::uint8_t mode) = 0;  // direction: 0 out, 255 in
    virtual void qbusconfig(std::int32_t zero, std::uint8_t direction, std::uint8_t mode) = 0;

    // Checks of a byte (or word) read from the chip against the main buffer.
    // mode 0 stores it, 1 compares, 2 checks blank, 3 compares and collects a report in
    // MainRtstr[1]. A mismatch leaves 1 in prgresult[0] and answers 1.
    virtual int checkbyte(std::int16_t value, std::int32_t address, int mode) = 0;
    virtual int checkword(std::uint8_t low, std::uint8_t high, std::int32_t address, int mode,
                          int blank) = 0;

    // ARM.
    virtual bool transferwait(
        std::uint8_t count) = 0;  // newest status record to ibuf1; false: failed
    virtual void loadalgobuf(
        std::int32_t& length) = 0;  // takes the image in algobuf; may change both
};

}  // namespace keld2
