// SVF statements as the plug-in's families take them, in each of the layouts.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "jtag/wiring.h"

namespace keld2::host {

// How the reads of a text lie over its lines.
enum class SvfLayout {
    a2,  // on one line
    b1,  // TDO on a second line, no MASK
    b2,  // TDO on a second line, MASK on a third
    c1,  // each field over two lines
    c2,  // TDO and MASK begin on the first line
    c3,  // as far as TDO: the read is queued, but not compared
    c4   // SMASK and TDO on the first line, the rest of TDO and MASK on the second
};

std::optional<SvfLayout> layoutnamed(std::string_view name);  // "A2", "b1", ...
std::string_view nameof(SvfLayout layout);
std::string layoutnames();  // "A2, B1, ..."

using SvfBits = std::vector<bool>;  // the one that is shifted first at 0

// bits as a hexadecimal field.
std::string hexfield(const SvfBits& bits);

std::string svfsir(std::size_t bits, std::uint32_t value);
std::string svfdrive(const SvfBits& tdi);
// A read of as many bits as expected has. mask: which of them are compared; B1 and C3 have none.
std::string svfread(SvfLayout layout, const SvfBits& expected, const SvfBits& mask);
// A stay in Run-Test/Idle of at least that many microseconds, as the family understands it.
std::string svfpulse(const JtagFamily& family, std::int64_t microseconds);

}  // namespace keld2::host
