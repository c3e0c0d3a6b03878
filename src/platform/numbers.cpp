#include "platform/numbers.h"

#include <array>
#include <cfenv>
#include <charconv>
#include <cmath>
#include <limits>

#include "platform/fault.h"

namespace keld2 {

namespace {

std::u16string widened(const std::string& ascii) { return {ascii.begin(), ascii.end()}; }

constexpr char16_t replacement = 0xFFFD;

struct Decoded {
    char32_t code;
    std::size_t length;  // bytes taken
};

Decoded decodeutf8(const std::string& s, std::size_t at) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(s[i]); };
    const unsigned char lead = byte(at);
    if (lead < 0x80) return {lead, 1};
    const std::size_t more = lead >= 0xF0 ? 3U : lead >= 0xE0 ? 2U : 1U;
    constexpr std::array<char32_t, 4> least{0, 0x80, 0x800, 0x10000};
    if (lead < 0xC2 || lead > 0xF4) return {replacement, 1};
    char32_t code = lead & (0x3FU >> more);
    for (std::size_t i = 1; i <= more; ++i) {
        if (at + i >= s.size() || (byte(at + i) & 0xC0) != 0x80) return {replacement, i};
        code = (code << 6) | (byte(at + i) & 0x3F);
    }
    if (code < least[more] || code > 0x10FFFF || (code >= 0xD800 && code < 0xE000))
        return {replacement, more + 1};
    return {code, more + 1};
}

void appendutf8(std::string& out, char32_t c) {
    const auto put = [&](char32_t b) { out.push_back(static_cast<char>(b)); };
    if (c < 0x80) {
        put(c);
    } else if (c < 0x800) {
        put(0xC0 | (c >> 6));
        put(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        put(0xE0 | (c >> 12));
        put(0x80 | ((c >> 6) & 0x3F));
        put(0x80 | (c & 0x3F));
    } else {
        put(0xF0 | (c >> 18));
        put(0x80 | ((c >> 12) & 0x3F));
        put(0x80 | ((c >> 6) & 0x3F));
        put(0x80 | (c & 0x3F));
    }
}

}  // namespace

std::int32_t roundint32(double x) {
    const double rounded = std::nearbyint(x);  // the default mode: ties to even
    if (!(rounded >= std::numeric_limits<std::int32_t>::min() &&
          rounded <= std::numeric_limits<std::int32_t>::max()))
        throw RunFault("number does not fit 32 bits");
    return static_cast<std::int32_t>(rounded);
}

std::int64_t roundint64(double x) {
    constexpr double limit = 9223372036854775808.0;  // 2 to the power 63
    const double rounded = std::nearbyint(x);
    if (!(rounded >= -limit && rounded < limit)) throw RunFault("number does not fit 64 bits");
    return static_cast<std::int64_t>(rounded);
}

std::int32_t checkedint32(std::int64_t x) {
    if (x < std::numeric_limits<std::int32_t>::min() ||
        x > std::numeric_limits<std::int32_t>::max())
        throw RunFault("number does not fit 32 bits");
    return static_cast<std::int32_t>(x);
}

std::uint8_t checkedbyte(std::int64_t x) {
    if (x < 0 || x > 255) throw RunFault("number does not fit a byte");
    return static_cast<std::uint8_t>(x);
}

std::u16string numbertext(double x) {
    std::array<char, 400> digits{};
    const auto end =
        std::to_chars(digits.data(), digits.data() + digits.size(), x, std::chars_format::fixed)
            .ptr;
    std::string text(digits.data(), end);
    return widened(x < 0 ? text : " " + text);
}

std::u16string secondstext(double seconds) {
    std::array<char, 400> digits{};
    const double shown = seconds > 0 ? seconds : 0;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), shown,
                                   std::chars_format::fixed, 2)
                         .ptr;
    return widened(std::string(digits.data(), end));
}

std::u16string hextext(std::int32_t x) {
    std::array<char, 16> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(),
                                   static_cast<std::uint32_t>(x), 16)
                         .ptr;
    std::u16string text;
    for (const char* c = digits.data(); c != end; ++c)
        text.push_back(static_cast<char16_t>(*c >= 'a' ? *c - 'a' + 'A' : *c));
    return text;
}

std::u16string sixdigits(std::int32_t x) {
    std::u16string text = widened(std::to_string(x));
    if (text.size() < 6) text.insert(x < 0 ? 1U : 0U, 6 - text.size(), u'0');
    return text;
}

std::u16string utf16(const std::string& utf8) {
    std::u16string out;
    out.reserve(utf8.size());
    for (std::size_t i = 0; i < utf8.size();) {
        const auto [code, length] = decodeutf8(utf8, i);
        if (code >= 0x10000) {
            out.push_back(static_cast<char16_t>(0xD7C0 + (code >> 10)));
            out.push_back(static_cast<char16_t>(0xDC00 | (code & 0x3FF)));
        } else {
            out.push_back(static_cast<char16_t>(code));
        }
        i += length;
    }
    return out;
}

std::string utf8(const std::u16string& utf16) {
    std::string out;
    out.reserve(utf16.size());
    for (std::size_t i = 0; i < utf16.size(); ++i) {
        char32_t c = utf16[i];
        const bool high = c >= 0xD800 && c < 0xDC00;
        const bool paired = high && i + 1 < utf16.size() && (utf16[i + 1] & 0xFC00) == 0xDC00;
        if (paired) {
            c = 0x10000 + ((c - 0xD800) << 10) + (utf16[++i] & 0x3FFU);
        } else if (c >= 0xD800 && c < 0xE000) {
            c = replacement;
        }
        appendutf8(out, c);
    }
    return out;
}

}  // namespace keld2
