// SerialPort: the eight-bit strobed port through which the serial family is worked.
//
// Register 4 is the data byte, register 5 its direction, register 6 the control lines. Every
// byte is moved on by a strobe; a byte read is sampled before its strobe.
#pragma once

#include <cstdint>
#include <initializer_list>

#include "external/devcore.h"

namespace keld2 {

class SerialPort {
  public:
    // What readbyte does with the direction of the data lines.
    enum class Turn { none, beforeread, afterread };

    explicit SerialPort(DevCore& devcore) : devcore_(devcore) {}

    // Immediate.
    void sendbyte(std::uint8_t b);
    void send(std::initializer_list<std::uint8_t> bytes);
    void portselect();
    void portrelease();
    void chipdrives();        // the data lines are inputs
    void programmerdrives();  // the data lines are outputs
    std::uint8_t readbyte(Turn turn = Turn::none);
    void progenable();  // the frame that enters programming mode

    // Queued.
    void qsendbyte(std::uint8_t b);
    void qsend(std::initializer_list<std::uint8_t> bytes);
    void qportselect();
    void qportrelease();
    void qchipdrives();
    void qprogrammerdrives();
    void qreadbyte(Turn turn = Turn::none);

  private:
    void qstep(std::int32_t value, std::uint8_t reg);

    DevCore& devcore_;
};

// Command bytes of the family; each frame starts with framestart.
namespace serialcommand {
inline constexpr std::uint8_t framestart = 170;
inline constexpr std::uint8_t enable = 172;
inline constexpr std::uint8_t enableoperand = 83;
inline constexpr std::uint8_t readid = 56;
inline constexpr std::uint8_t readpage = 48;
inline constexpr std::uint8_t readidarea = 50;
inline constexpr std::uint8_t readconfig0 = 97;
inline constexpr std::uint8_t readconfig1 = 100;
inline constexpr std::uint8_t loadpage = 81;
inline constexpr std::uint8_t writepage = 80;
inline constexpr std::uint8_t writeidarea = 82;
inline constexpr std::uint8_t writeconfig0 = 225;
inline constexpr std::uint8_t writeconfig1 = 228;
inline constexpr std::uint8_t erase = 138;
}  // namespace serialcommand

}  // namespace keld2
