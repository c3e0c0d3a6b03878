#include "arm/operations.h"

namespace keld2 {

namespace {

constexpr std::uint8_t insidemode = 21;  // of prgmode[0]: two bytes within the data area
constexpr std::uint8_t serialmode = 41;  // of prgmode[0]: the device has a serial number
constexpr int configurationbytes = 11;
constexpr int serialbytes = 9;
constexpr int framebyte = 5;   // first of ubuf1
constexpr int recordbyte = 2;  // first of ibuf1

}  // namespace

bool loadconfiguration(const ArmContext& c) {
    SharedVariables& s = c.s;
    const std::int64_t total = std::int64_t{s.wordmode[0]} * s.tlength[0];
    const bool inside = s.prgmode[0] == insidemode;
    const std::int64_t from = inside ? total - 16 : total;
    const int count = inside ? 2 : configurationbytes;
    if (!s.ibuffer.holds(from, from + count - 1)) return false;
    for (int i = 0; i < count; ++i) s.ubuf1[framebyte + i] = s.ibuffer[from + i];
    return true;
}

bool holdsconfiguration(const ArmContext& c) {
    const std::int64_t from = c.s.buflength[0];
    return c.s.ibuffer.holds(from, from + configurationbytes - 1);
}

void storeconfiguration(const ArmContext& c) {
    SharedVariables& s = c.s;
    if (s.prgmode[0] == serialmode) {
        std::u16string digits;
        for (int i = 0; i < serialbytes; ++i)
            digits += bytedigits(c.helper, s.ibuf1[recordbyte + i]);
        appendlog(s, u"\n>>Device Serial No.:" + digits + u"\n");
    }
    const std::int64_t to = s.buflength[0];
    for (int i = 0; i < configurationbytes; ++i) {
        s.ibuffer[to + i] = s.ibuf1[recordbyte + i];
        s.ibuf1[recordbyte + i] = 0;
    }
}

}  // namespace keld2
