// Bytes as hexadecimal text without blanks.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace keld2::host {

// Two digits of either case for each byte; nullopt for an odd count or another character.
std::optional<std::vector<std::uint8_t>> bytesfromhex(std::string_view text);
// Lower-case digits, appended to out.
void appendhex(std::string& out, std::span<const std::uint8_t> bytes);
std::string hexfrombytes(std::span<const std::uint8_t> bytes);

}  // namespace keld2::host
