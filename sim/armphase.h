// The phases of an operation on an ARM device, as the programmer reports them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace keld2::sim {

enum class ArmPhase : std::uint8_t { erase, blank, program, verify, config, secure, read };
inline constexpr std::size_t armphases = 7;

std::string_view phasename(ArmPhase phase);
std::optional<ArmPhase> phasenamed(std::string_view name);
std::string allphases();  // "erase, blank, ..."
// Byte 2 of the status record; 0 for read, which has none.
std::uint8_t phasebyte(ArmPhase phase);

}  // namespace keld2::sim
