// ArmProfile: what tells one family of ARM devices from the other. The algorithm is one.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "arm/context.h"
#include "arm/geometry.h"

namespace keld2 {

// --- start-up and file names --------------------------------------------------------------------

struct ArmStartupCall {
    enum class Kind {
        none,
        ready,         // armready
        modeselect2,   // with figmode[0] + add and 0
        modeselect3,   // the same
        switchadaptor  // setvpppin(20, 1)
    };
    Kind kind = Kind::none;
    int add = 0;
};

struct ArmStartupRow {
    std::int16_t firstmodel;  // of modeltype[0]
    std::int16_t lastmodel;
    std::optional<bool> usbable = {};  // of usbable[3]; none: either
    std::array<ArmStartupCall, 2> calls;
    std::u16string_view folder;        // below the current folder
    std::u16string_view firstending;   // of the file in the sub-folder clk, behind algorithm[0]
    std::u16string_view secondending;  // of the file in algorithm[1], behind algorithm[2]
};

// --- transfers ----------------------------------------------------------------------------------

struct ArmTransferRule {
    enum class End {
        length,     // tlength[0] - 1; in Compare of more than 0x10000 words rounded
        rounded,    // tlength[0] - 1; of more than 0x10000 words rounded
        bound,      // wltbigendbuf[1] as the host set it
        truncated,  // tlength[0] rounded - 1, which is stored into wltbigendbuf[1] first
        file        // the length of the data file
    };
    End end = End::length;
    std::int32_t bulksize = 0;      // bytes
    std::int32_t widebulksize = 0;  // bytes, for blocks of 0x10000 words and more; 0: the same
    bool tailbylength = false;      // the last block's remainder follows from tlength[0] - 1
    bool marklastblock = false;     // 0x80 in the bank byte of the last block
    std::int32_t extension = 0;     // bytes sent behind the data
};

struct ArmProfile {
    std::string_view name;
    std::span<const ArmStartupRow> startup;  // the first row that matches wins; the last takes all
    ArmTransferRule read;                    // and Compare
    ArmTransferRule verify;
    ArmTransferRule program;
    ArmTransferRule programfile;
    bool writeafterid = false;    // regwrite(1, 53) behind the device code
    bool stopstransfers = false;  // a stop in Read, Compare and Verify is told to the programmer
    bool readselecteachbulk = false;  // else once a block
    bool fixedprogramside = false;  // the write select of armprogram has side 2, whatever the bank
};

extern const ArmProfile arm_prg;      // family A
extern const ArmProfile arm_prg_32f;  // family B

// The row of a profile's start-up table for a device.
const ArmStartupRow& startuprow(const ArmProfile& profile, std::int16_t modeltype, bool usbable);

// One run: its surroundings, its family, and the operation, prgresult[1] as the run found it.
struct ArmJob {
    const ArmContext& c;
    const ArmProfile& profile;
    std::uint8_t op = 0;
};

// The range of an operation by its rule. filelength (bytes) counts for rules that end with the
// file. Stores the range's end where the rule says so. No value when the range cannot be carried
// out or does not lie within the main buffer.
std::optional<ArmGeometry> armgeometry(const ArmJob& job, const ArmTransferRule& rule,
                                       std::int32_t filelength = 0);

}  // namespace keld2
