#include "external/datstr.h"

namespace keld2 {

void PlainTextHelper::datstr(std::array<char16_t, 2>& text, std::uint8_t value, int) {
    constexpr char16_t digits[] = u"0123456789ABCDEF";
    text = {digits[value >> 4], digits[value & 15]};
}

std::u16string bytedigits(TextHelper& helper, std::uint8_t value) {
    std::array<char16_t, 2> text{u'0', u'0'};
    helper.datstr(text, value, 2);
    return {text.begin(), text.end()};
}

}  // namespace keld2
