#include "sim/components.h"

#include "shared/datacheck.h"

namespace keld2::sim {

void SimDevCore::drivercommit() {
    constexpr std::size_t recordplace = 4;  // of the parameter record in ubuf1
    if (s_.ubuf1.holds(recordplace, recordplace + recordlength - 1))
        p_.engine_.setrecord(std::span<const std::uint8_t, recordlength>(
            s_.ubuf1.data() + recordplace, recordlength));
}

int SimDevCore::checkbyte(std::int16_t value, std::int32_t address, int mode) {
    return keld2::checkbyte(s_, value, address, mode);
}

int SimDevCore::checkword(std::uint8_t low, std::uint8_t high, std::int32_t address, int mode,
                          int) {
    return keld2::checkword(s_, low, high, address, mode);
}

bool SimDevCore::transferwait(std::uint8_t count) {
    return p_.transferwait(count, {s_.ibuf1.data(), static_cast<std::size_t>(s_.ibuf1.size())});
}

void SimDevCore::loadalgobuf(std::int32_t& length) {
    p_.loadalgobuf(length, {s_.algobuf.data(), static_cast<std::size_t>(s_.algobuf.size())});
}

}  // namespace keld2::sim
