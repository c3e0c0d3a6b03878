#include "shared/datacheck.h"

#include <algorithm>
#include <string>

#include "shared/notes.h"

namespace keld2 {

namespace {

struct Item {
    std::int64_t index;    // of its low byte in ibuffer
    std::int64_t bytes;    // 1 or 2
    std::int32_t address;  // as the report shows it
    std::uint32_t value;   // from the chip
};

std::u16string hexdigits(std::uint32_t value, int digits) {
    std::u16string text;
    for (int i = digits - 1; i >= 0; --i)
        text.push_back(u"0123456789ABCDEF"[(value >> (4 * i)) & 15]);
    return text;
}

std::uint32_t buffered(SharedVariables& s, const Item& item) {
    std::uint32_t value = s.ibuffer[item.index];
    if (item.bytes == 2) value |= std::uint32_t{s.ibuffer[item.index + 1]} << 8;
    return value;
}

void store(SharedVariables& s, const Item& item) {
    for (std::int64_t i = 0; i < item.bytes; ++i)
        s.ibuffer[item.index + i] = static_cast<std::uint8_t>(item.value >> (8 * i));
}

int mismatch(SharedVariables& s) {
    s.prgresult.release(0, result::failed);
    return 1;
}

// Notes the difference; answers 1 when the report is full.
int report(SharedVariables& s, const Item& item, std::uint32_t expected) {
    mismatch(s);
    std::u16string text = s.MainRtstr[1].text();
    const auto lines = std::count(text.begin(), text.end(), u'\n');
    if (lines >= reportlimit) return 1;
    const auto digits = static_cast<int>(item.bytes * 2);
    text += u">> " + hexdigits(static_cast<std::uint32_t>(item.address), 6) + u"      " +
            hexdigits(item.value, digits) + u"         " + hexdigits(expected, digits) + u"\n";
    s.MainRtstr[1] = text;
    return lines + 1 >= reportlimit ? 1 : 0;
}

int check(SharedVariables& s, const Item& item, int mode) {
    if (!s.ibuffer.holds(item.index, item.index + item.bytes - 1)) return mismatch(s);
    const std::uint32_t blank = item.bytes == 2 ? 0xFFFF : 0xFF;
    switch (mode) {
        case checkmode::store:
            store(s, item);
            return 0;
        case checkmode::compare:
            return item.value == buffered(s, item) ? 0 : mismatch(s);
        case checkmode::blank:
            return item.value == blank ? 0 : mismatch(s);
        case checkmode::report: {
            const std::uint32_t expected = buffered(s, item);
            return item.value == expected ? 0 : report(s, item, expected);
        }
        default:
            return 0;
    }
}

}  // namespace

int checkbyte(SharedVariables& s, std::int16_t value, std::int32_t address, int mode) {
    return check(s,
                 {.index = address,
                  .bytes = 1,
                  .address = address,
                  .value = static_cast<std::uint8_t>(value)},
                 mode);
}

int checkword(SharedVariables& s, std::uint8_t low, std::uint8_t high, std::int32_t address,
              int mode) {
    return check(s,
                 {.index = std::int64_t{address} * 2,
                  .bytes = 2,
                  .address = address,
                  .value = static_cast<std::uint32_t>(high << 8 | low)},
                 mode);
}

}  // namespace keld2
