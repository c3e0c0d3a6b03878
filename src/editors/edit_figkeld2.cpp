#include "editors/edit_figkeld2.h"

#include <array>
#include <span>

#include "plugin/texts/texts.h"

namespace keld2 {

namespace {

using enum ControlKind;

constexpr std::uint8_t lockbitmode = 21;            // of prgmode[0]; 1 to 3 have the options
constexpr std::int64_t nocfassignment = 0x40000;    // the CF group is disabled from this length on
constexpr std::int64_t lastcfassignment = 0x20000;  // and its bit stored up to this one
constexpr std::int64_t fusebyte = -16, lockbyte = -15;  // from tlength[0]
constexpr std::int64_t optionbyte = 4;

constexpr std::array layout{
    ControlLayout{"Frame1", frame, {}, u"", 120, 120, 5250, 4700},
    ControlLayout{"Label6(0)", label, "Frame1", u"UserCode", 240, 390, 1200, 255},
    ControlLayout{"Text2(0)", text, "Frame1", u"00000000", 1560, 330, 1500, 345, 8},
    ControlLayout{"Frame3(1)", frame, "Frame1", u"Configuration Mode", 180, 840, 4890, 1150},
    ControlLayout{"Option2(0)", option, "Frame3(1)", u"Parallel Express/SelectMAP Modes(0)", 240,
                  330, 4500, 300},
    ControlLayout{"Option2(1)", option, "Frame3(1)", u"Serial Slave/Master Modes(1)", 240, 720,
                  4500, 300},
    ControlLayout{"Frame3(2)", frame, "Frame1", u"Secure(Read-Protect)", 180, 2130, 4890, 1150},
    ControlLayout{"Option2(2)", option, "Frame3(2)", u"Read-Protected(0)", 240, 330, 4500, 300},
    ControlLayout{"Option2(3)", option, "Frame3(2)", u"Not Secured(1)", 240, 720, 4500, 300},
    ControlLayout{"Frame3(5)", frame, "Frame1", u"CF Assignment", 180, 3420, 4890, 1150},
    ControlLayout{"Option2(8)", option, "Frame3(5)", u"Select D4/CF pin to be D4 pin(0)", 240, 330,
                  4500, 300},
    ControlLayout{"Option2(9)", option, "Frame3(5)", u"Select D4/CF pin to be CF pin(1)", 240, 720,
                  4500, 300},
    // groups that stand right of the frame's visible width and are bound to nothing
    ControlLayout{"Frame3(0)", frame, "Frame1", u"Oscillator Configuration", 5520, 240, 2700, 1150},
    ControlLayout{"Option1(0)", option, "Frame3(0)", u"HF Crystal", 240, 330, 2300, 300},
    ControlLayout{"Option1(1)", option, "Frame3(0)", u"MF Crystal", 240, 720, 2300, 300},
    ControlLayout{"Frame3(3)", frame, "Frame1", u"RPE", 5520, 1530, 2700, 1150},
    ControlLayout{"Option2(4)", option, "Frame3(3)", u"Reset Pin Disable", 240, 330, 2300, 300},
    ControlLayout{"Option2(5)", option, "Frame3(3)", u"Reset Pin Enable", 240, 720, 2300, 300},
    ControlLayout{"Frame3(4)", frame, "Frame1", u"WDTE", 5520, 2820, 2700, 1150},
    ControlLayout{"Option2(6)", option, "Frame3(4)", u"Watchdog timer Disable", 240, 330, 2300,
                  300},
    ControlLayout{"Option2(7)", option, "Frame3(4)", u"Watchdog timer Enable", 240, 720, 2300, 300},
    // right of the window until the lock bits move it in
    ControlLayout{"Frame2", frame, {}, u"", 5760, 120, 3840, 4260},
    ControlLayout{"Frame4(0)", frame, "Frame2", u"Fuse Bit", 90, 180, 3660, 2400},
    ControlLayout{"Label1(0)", label, "Frame4(0)", u"ISP Enable", 90, 420, 1770, 255},
    ControlLayout{"Combo1(0)", combo, "Frame4(0)", u"", 1890, 360, 1680, 345},
    ControlLayout{"Label1(1)", label, "Frame4(0)", u"XTAL Osc Bypass", 90, 900, 1770, 255},
    ControlLayout{"Combo1(1)", combo, "Frame4(0)", u"", 1890, 840, 1680, 345},
    ControlLayout{"Label1(2)", label, "Frame4(0)", u"User Row Programming", 90, 1380, 1770, 255},
    ControlLayout{"Combo1(2)", combo, "Frame4(0)", u"", 1890, 1320, 1680, 345},
    ControlLayout{"Label1(3)", label, "Frame4(0)", u"System Clock Out", 90, 1860, 1770, 255},
    ControlLayout{"Combo1(3)", combo, "Frame4(0)", u"", 1890, 1800, 1680, 345},
    ControlLayout{"Frame4(1)", frame, "Frame2", u"Lock Bit", 90, 2700, 3660, 1440},
    ControlLayout{"Label2(0)", label, "Frame4(1)", u"Lock Bit1", 90, 420, 1770, 255},
    ControlLayout{"Combo2(0)", combo, "Frame4(1)", u"", 1890, 360, 1680, 345},
    ControlLayout{"Label2(1)", label, "Frame4(1)", u"Lock Bit2", 90, 900, 1770, 255},
    ControlLayout{"Combo2(1)", combo, "Frame4(1)", u"", 1890, 840, 1680, 345},
    ControlLayout{"OKButton", button, {}, u"", 1100, 5200, 1215, 420},
    ControlLayout{"CancelButton", button, {}, u"", 3300, 5200, 1215, 420},
};

// A combo whose entry is a bit of a byte.
struct BitCombo {
    std::string_view name;
    std::int64_t offset;  // of the byte, from tlength[0]
    unsigned bit;
};
constexpr std::array bitcombos{
    BitCombo{"Combo1(0)", fusebyte, 0}, BitCombo{"Combo1(1)", fusebyte, 1},
    BitCombo{"Combo1(2)", fusebyte, 2}, BitCombo{"Combo1(3)", fusebyte, 3},
    BitCombo{"Combo2(0)", lockbyte, 0}, BitCombo{"Combo2(1)", lockbyte, 1},
};

// Two options that show a bit of the option byte, and the last tlength[0] up to which it is stored.
struct BitOptions {
    std::string_view clear, set;
    unsigned mask;
    std::int64_t stored;
};
constexpr std::array bitoptions{
    BitOptions{"Option2(0)", "Option2(1)", 1u << 1, INT32_MAX},
    BitOptions{"Option2(2)", "Option2(3)", 1u << 2, INT32_MAX},
    BitOptions{"Option2(8)", "Option2(9)", 1u << 5, lastcfassignment},
};
constexpr std::array<std::string_view, 3> cfassignment{"Frame3(5)", "Option2(8)", "Option2(9)"};

bool hasoptions(std::uint8_t mode) { return mode >= 1 && mode <= 3; }

}  // namespace

edit_figkeld2::edit_figkeld2(SharedVariables& s, TextHelper& helper)
    : Form("edit_figkeld2", 5625, 6500), s_(s), helper_(helper), cells_(s) {
    for (const ControlLayout& control : layout) add(control);
}

void edit_figkeld2::doload() {
    const std::int32_t language = s_.Language[0];
    setcaption(keld2::text(TextId::editconfiguration, language));
    if (s_.prgmode[0] == lockbitmode) loadlockbits();
    if (hasoptions(s_.prgmode[0])) loadoptions();
    settext(at("OKButton"), keld2::text(TextId::ok, language));
    settext(at("CancelButton"), keld2::text(TextId::cancel, language));
}

void edit_figkeld2::loadlockbits() {
    const std::int32_t language = s_.Language[0];
    const std::u16string entries[]{
        std::u16string(keld2::text(TextId::enable, language)) + u"(0)",
        std::u16string(keld2::text(TextId::disable, language)) + u"(1)",
    };
    for (const BitCombo& row : bitcombos) {
        Control& combo = at(row.name);
        combo.entries.assign(std::begin(entries), std::end(entries));
        setindex(combo, 1);
    }
    setsize(4500, 5500);
    at("Frame1").visible = false;
    at("Frame2").left = 300;
    moveto("OKButton", 800, 4500);
    moveto("CancelButton", 3000, 4500);
    for (const BitCombo& row : bitcombos)
        if (const auto byte = cells_.read(row.offset)) setindex(at(row.name), *byte >> row.bit & 1);
}

void edit_figkeld2::loadoptions() {
    setsize(5625, 6500);
    if (cells_.imagelength() >= nocfassignment)
        for (const std::string_view name : cfassignment) at(name).enabled = false;
    std::u16string digits;
    for (int i = 0; i < 4; ++i) digits += bytedigits(helper_, cells_.read(i).value_or(0));
    settext(at("Text2(0)"), digits);
    if (const auto byte = cells_.read(optionbyte))
        for (const BitOptions& row : bitoptions)
            selectoption(at((*byte & row.mask) != 0 ? row.set : row.clear));
}

bool edit_figkeld2::dokeypress(Control& box, char16_t character) {
    if (!hexvalue(character)) return false;
    select(box, box.caret, 1);  // the digit overwrites the one after the caret
    return true;
}

bool edit_figkeld2::dokeydown(Control&, int code) { return code != keys::del; }

void edit_figkeld2::doclick(Control& button) {
    const bool ok = button.name == "OKButton";
    if (ok && s_.prgmode[0] == lockbitmode) storelockbits();
    if (ok && hasoptions(s_.prgmode[0])) storeoptions();
    close(ok);
}

void edit_figkeld2::storelockbits() {
    for (const std::int64_t offset : {fusebyte, lockbyte}) {
        unsigned value = 0;
        for (const BitCombo& row : bitcombos)
            if (row.offset == offset && control(row.name).index == 1) value |= 1u << row.bit;
        cells_.write(offset, static_cast<std::uint8_t>(value));
    }
}

void edit_figkeld2::storeoptions() {
    const std::u16string& digits = control("Text2(0)").text;
    for (std::size_t i = 0; i < 4 && 2 * i + 1 < digits.size(); ++i) {
        const auto high = hexvalue(digits[2 * i]), low = hexvalue(digits[2 * i + 1]);
        // a byte whose digits are not both there keeps its value
        if (high && low)
            cells_.write(static_cast<std::int64_t>(i),
                         static_cast<std::uint8_t>(*high * 16 + *low));
    }
    unsigned value = 0;
    for (const BitOptions& row : bitoptions)
        if (control(row.set).selected && cells_.imagelength() <= row.stored) value |= row.mask;
    cells_.write(optionbyte, static_cast<std::uint8_t>(value));
}

}  // namespace keld2
