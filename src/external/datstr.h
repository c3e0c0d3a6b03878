// The text helper beside the plug-in: bytes as hexadecimal text.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace keld2 {

class TextHelper {
  public:
    virtual ~TextHelper() = default;
    // Writes value as width (2) upper-case hexadecimal digits into text.
    virtual void datstr(std::array<char16_t, 2>& text, std::uint8_t value, int width) = 0;
};

// The helper of the platforms that have no closed one.
class PlainTextHelper final : public TextHelper {
  public:
    void datstr(std::array<char16_t, 2>& text, std::uint8_t value, int width) override;
};

// The two digits of a byte, by helper.
std::u16string bytedigits(TextHelper& helper, std::uint8_t value);

}  // namespace keld2
