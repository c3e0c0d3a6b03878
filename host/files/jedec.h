// JEDEC fuse maps of logic devices.
//
// Fields end with '*'; the text between STX and ETX is covered by the transmission checksum behind
// ETX (0000: none was computed). Read and used: QF, F, L, C, U, UH, UA, G, E, QP, N. Read and
// passed over: QV, A, D, J, P, R, S, T, V, X, which describe test vectors and the part.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/files/segments.h"

namespace keld2::host {

inline constexpr std::size_t usercodecells = 32;

struct FuseMap {
    std::string fuses;                    // a character '0' or '1' for each fuse, fuse 0 first
    std::optional<std::string> usercode;  // 32 characters '0' or '1' in the order of the file
    std::optional<bool> secured;          // the file's wish for the security fuse
    std::string electrical;               // content of the E field, as the file has it
    std::uint32_t pins = 0;               // 0: not said
    std::vector<std::string> notes;
    std::string header;  // text before the first field
};

// name: of the file, for messages. Throws HostError (65) with line, field, what is wrong and what
// was expected.
FuseMap readjedec(std::string_view text, const std::string& name);
// With fuse checksum and transmission checksum. Runs of the more frequent state are left to the
// default field.
std::string writejedec(const FuseMap& map);

// Sum of the fuses taken as bytes, lowest fuse in bit 0, as the C field holds it.
std::uint16_t fusechecksum(std::string_view fuses);

// The map as it stands in the main buffer: a character a fuse from address 0, the user code behind.
Image cellsof(const FuseMap& map);

}  // namespace keld2::host
