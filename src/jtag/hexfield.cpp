#include "jtag/hexfield.h"

#include <array>
#include <string>

#include "platform/fault.h"

namespace keld2 {

namespace {

constexpr std::uint8_t nodigit = 0x80;

constexpr std::array<std::uint8_t, 256> makedigits() {
    std::array<std::uint8_t, 256> table{};
    table.fill(nodigit);
    for (std::uint8_t i = 0; i < 10; ++i) table[static_cast<std::size_t>('0' + i)] = i;
    for (std::uint8_t i = 0; i < 6; ++i) {
        table[static_cast<std::size_t>('A' + i)] = static_cast<std::uint8_t>(10 + i);
        table[static_cast<std::size_t>('a' + i)] = static_cast<std::uint8_t>(10 + i);
    }
    return table;
}

constexpr std::array<std::uint8_t, 256> digits = makedigits();

std::uint8_t digit(char c) { return digits[static_cast<unsigned char>(c)]; }

[[noreturn]] void refuseshort() {
    throw RunFault("a field has fewer digits than its bit count needs");
}

[[noreturn]] void refusedigit() {
    throw RunFault("a field holds a character that is no hexadecimal digit");
}

// The digit at a position counted from 1.
std::uint8_t digitat(std::string_view text, std::int64_t position) {
    if (position < 1 || position > static_cast<std::int64_t>(text.size())) refuseshort();
    const std::uint8_t value = digit(text[static_cast<std::size_t>(position - 1)]);
    if (value == nodigit) refusedigit();
    return value;
}

std::uint8_t byteat(std::string_view text, std::int64_t length, std::int64_t i) {
    return static_cast<std::uint8_t>(digitat(text, length - 2 * i - 1) << 4 |
                                     digitat(text, length - 2 * i));
}

}  // namespace

void decodefield(std::string_view text, std::size_t length, std::int32_t nbits, Tail tail,
                 std::vector<std::uint8_t>& bytes) {
    const std::int32_t whole = nbits / 8;
    const std::int32_t rest = nbits % 8;
    const auto l = static_cast<std::int64_t>(length);
    bytes.resize(static_cast<std::size_t>(whole + (rest != 0 ? 1 : 0)));
    if (l > static_cast<std::int64_t>(text.size()) || l < 2 * std::int64_t{whole}) refuseshort();
    const char* from = text.data() + l;
    std::uint8_t wrong = 0;
    for (std::int32_t i = 0; i < whole; ++i) {
        from -= 2;
        const std::uint8_t high = digit(from[0]);
        const std::uint8_t low = digit(from[1]);
        wrong |= high | low;
        bytes[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(high << 4 | low);
    }
    if ((wrong & nodigit) != 0) refusedigit();
    if (rest == 0) return;
    const std::int64_t last = l - 2 * std::int64_t{whole};
    const bool single = tail == Tail::stored ? rest <= 4 : last - 1 <= 0;
    bytes.back() = single ? digitat(text, last) : byteat(text, l, whole);
}

}  // namespace keld2
