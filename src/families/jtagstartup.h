// What a JTAG family does to the socket after the common head of the hardware start-up: lists of
// steps, and the parameter record that tells the programmer where the family's lines lie.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "run/runcontext.h"

namespace keld2 {

// ubuf1[4] to [14], sent with each frame of kind 13. In order: the register of TCK, 8, the TCK
// bit, a level for that register, the mask of TDO, the TDI bit, a byte of the wiring, 8, 8, the
// register of TDO, a byte of the wiring.
using ParameterRecord = std::array<std::uint8_t, 11>;
inline constexpr std::int64_t recordplace = 4;      // in ubuf1
inline constexpr std::int64_t recordtdoplace = 13;  // in ubuf1: the register of TDO

struct StartupStep {
    enum class Kind {
        write,      // value to register number
        qwrite,     // the same, queued
        clear,      // 0 to registers 1, 0, 3, 2, 5, 4, 7, 6, 9, 8, 11, 10
        off,        // the chip's VCC pins
        on,         //
        gndpin,     // a socket pin of the wiring to ground
        vccpin,     // a socket pin of the wiring to VCC
        record,     // fills the record and commits the pin set-up
        waitshort,  // value short ticks
        qwaitlong,  // value long ticks, queued
        run         // the command list is sent
    };
    Kind kind;
    std::uint8_t number = 0;  // register or socket pin
    std::int32_t value = 0;
};

struct JtagStartup {
    std::uint8_t family = 0;  // prgmode[0]
    ParameterRecord record;
    std::span<const StartupStep> steps;
};

extern const std::array<JtagStartup, 20> jtagstartups;

// The row of a family byte; nullptr for one that has the head alone.
const JtagStartup* findjtagstartup(std::uint8_t family);

void playstartup(const RunContext& run, const JtagStartup& startup);

}  // namespace keld2
