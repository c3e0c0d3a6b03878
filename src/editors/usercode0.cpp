#include "editors/usercode0.h"

#include <array>

#include "platform/numbers.h"
#include "plugin/texts/texts.h"

namespace keld2 {

namespace {

using enum ControlKind;

constexpr std::size_t bitcount = 32, digitcount = 8, bytecount = 4;

constexpr std::array layout{
    ControlLayout{"Label1", label, {}, u"Bin:", 180, 300, 600, 255},
    ControlLayout{
        "Text1", text, {}, u"11111111111111111111111111111111", 840, 240, 4200, 345, bitcount},
    ControlLayout{"Label2", label, {}, u"Hex:", 180, 810, 600, 255},
    ControlLayout{"Text2", text, {}, u"FFFFFFFF", 840, 750, 1500, 345, digitcount},
    ControlLayout{"Label3", label, {}, u"Text:", 180, 1320, 600, 255},
    ControlLayout{"Text3", text, {}, u"FFFF", 840, 1260, 1500, 345, bytecount},
    ControlLayout{"OKButton", button, {}, u"", 1100, 1920, 1215, 420},
    ControlLayout{"CancelButton", button, {}, u"", 3000, 1920, 1215, 420},
};

char16_t bitcharacter(unsigned value, unsigned bit) { return value >> bit & 1 ? u'1' : u'0'; }

// The character of a digit that a box may lack counts as 0.
unsigned digitat(const std::u16string& digits, std::size_t index) {
    return index < digits.size() ? hexvalue(digits[index]).value_or(0) : 0;
}

// A byte of 0 cannot be shown and stands as a space.
char16_t showncharacter(unsigned value) { return value == 0 ? u' ' : static_cast<char16_t>(value); }

void appendbits(std::u16string& bits, unsigned value, unsigned count) {
    for (unsigned bit = count; bit-- > 0;) bits += bitcharacter(value, bit);
}

}  // namespace

usercode0::usercode0(SharedVariables& s) : Form("usercode0", 5400, 3000), s_(s), cells_(s) {
    for (const ControlLayout& control : layout) add(control);
}

void usercode0::doload() {
    const std::int32_t language = s_.Language[0];
    setcaption(keld2::text(TextId::editefield, language));
    settext(at("OKButton"), keld2::text(TextId::ok, language));
    settext(at("CancelButton"), keld2::text(TextId::cancel, language));
    std::u16string bits;
    for (std::size_t i = 0; i < bitcount; ++i)
        appendbits(bits, cells_.read(static_cast<std::int64_t>(i)).value_or(0), 1);
    settext(at("Text1"), bits);
    frombin();
}

void usercode0::frombin() {
    const std::u16string& bits = control("Text1").text;
    std::u16string digits, characters;
    for (std::size_t i = 0; i < bytecount; ++i) {
        unsigned value = 0;
        for (std::size_t j = 0; j < 2; ++j) {
            unsigned n = 0;
            for (std::size_t k = 0; k < 4; ++k) n = n * 2 + digitat(bits, 8 * i + 4 * j + k);
            value = value * 16 + n;
            digits += hextext(static_cast<std::int32_t>(n));
        }
        characters += showncharacter(value);
    }
    settext(at("Text2"), digits);
    settext(at("Text3"), characters);
}

void usercode0::fromhex() {
    const std::u16string& digits = control("Text2").text;
    std::u16string bits, characters;
    for (std::size_t i = 0; i < bytecount; ++i) {
        const unsigned value = digitat(digits, 2 * i) * 16 + digitat(digits, 2 * i + 1);
        appendbits(bits, value, 8);
        characters += showncharacter(value);
    }
    settext(at("Text1"), bits);
    settext(at("Text3"), characters);
}

void usercode0::fromtext() {
    const std::u16string& characters = control("Text3").text;
    std::u16string bits, digits;
    for (std::size_t i = 0; i < bytecount; ++i) {
        const unsigned a = i < characters.size() ? characters[i] : 0;
        digits += hextext(static_cast<std::int32_t>(a));
        appendbits(bits, a, 8);
    }
    settext(at("Text1"), bits);
    settext(at("Text2"), digits);
}

bool usercode0::dokeypress(Control& box, char16_t character) {
    const bool passes = box.name == "Text1"   ? character == u'0' || character == u'1'
                        : box.name == "Text2" ? hexvalue(character).has_value()
                                              : character != keys::backspace && character <= 255;
    if (!passes) {
        beep();
        return false;
    }
    select(box, box.caret, 1);  // the character overwrites the one after the caret
    return true;
}

bool usercode0::dokeydown(Control&, int code) { return code != keys::del; }

void usercode0::dotyped(Control& box) {
    if (box.name == "Text1") frombin();
    if (box.name == "Text2") fromhex();
    if (box.name == "Text3") fromtext();
}

void usercode0::doclick(Control& button) {
    const bool ok = button.name == "OKButton";
    if (ok) store();
    close(ok);
}

void usercode0::store() {
    const std::u16string& bits = control("Text1").text;
    for (std::size_t i = 0; i < bitcount; ++i)
        cells_.write(static_cast<std::int64_t>(i),
                     static_cast<std::uint8_t>(u'0' | digitat(bits, i)));
}

}  // namespace keld2
