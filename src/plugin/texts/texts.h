// The string table: the plug-in's own texts in twelve language blocks.
//
// A text is looked up by id + language, where language is the offset of a block (Language[0], a
// multiple of 3000). An offset that names no block reads the English one.
#pragma once

#include <cstdint>
#include <string_view>

namespace keld2 {

// The texts by what they say in English; the value is the text's base id.
enum class TextId : std::int32_t {
    editefield = 1011,         // "Edit E_Field"
    warning = 1066,            // "Warning! "
    ok = 1067,                 // "OK"
    cancel = 1068,             // "Cancel"
    note = 1095,               // "Note!"
    devcode = 1097,            // "Dev. Code:"
    deviceaddress = 1149,      // ">>Device Address:"
    hdevicedata = 1150,        // "H  Device Data:"
    hbufferaddress = 1151,     // "H  Buffer Address:"
    hbufferdata = 1152,        // "H  Buffer Data:"
    stop = 1210,               // "Stop"
    information = 1240,        // "Information"
    devicedata = 1268,         // "   Device Data:"
    bufferdata = 1269,         // "   Buffer Data:"
    disable = 1273,            // "Disable"
    enable = 1274,             // "Enable"
    devicecodeerror = 1278,    // "Device Code Error!"
    devicebuffer = 1281,       // " Device         Buffer"
    programmemory = 1282,      // "Program Memory:"
    idlocations = 1283,        // "  ID Locations:"
    configword = 1285,         // "  Config. Word:"
    editconfiguration = 1293,  // "Edit Configuration"
    needacadaptor = 1313,      // " Need AC adaptor!"
    autoprogram = 2000,        // "Auto Program"
    read = 2001,               // "Read"
    verify = 2002,             // "Verify"
    blankcheck = 2003,         // "Blank Check"
    compare = 2004,            // "Compare"
    program = 2005,            // "Program"
    secure = 2006,             // "Secure"
    memoryprotect = 2007,      // "Memory Protect"
    erase = 2008,              // "Erase"
    progconfig = 2024,         // "Prog Config"
};

std::u16string_view text(TextId id, std::int32_t language);
// The same by number; empty when the table has no such id.
std::u16string_view text(std::int32_t id, std::int32_t language);

}  // namespace keld2
