// The configuration editor: what it shows of the buffer, what a user can do, what OK writes.
#include <gtest/gtest.h>

#include "machine.h"

namespace keld2::test {
namespace {

constexpr std::array<const char*, 6> combos{"Combo1(0)", "Combo1(1)", "Combo1(2)",
                                            "Combo1(3)", "Combo2(0)", "Combo2(1)"};

TEST(EditConfiguration, LockBitWindow) {
    Editing e(21, 4112);
    e.configuration([](Form& form) {
        EXPECT_EQ(form.name(), "edit_figkeld2");
        EXPECT_EQ(form.caption(), u"Edit Configuration");
        EXPECT_EQ(form.width(), 4500);
        EXPECT_EQ(form.height(), 5500);
        EXPECT_FALSE(form.control("Frame1").visible);
        EXPECT_EQ(form.control("Frame2").left, 300);
        EXPECT_EQ(form.control("OKButton").left, 800);
        EXPECT_EQ(form.control("CancelButton").left, 3000);
        for (const char* button : {"OKButton", "CancelButton"})
            EXPECT_EQ(form.control(button).top, 4500);
        for (const char* name : combos)
            EXPECT_EQ(form.control(name).entries,
                      (std::vector<std::u16string>{u"Enable(0)", u"Disable(1)"}));
    });
}

TEST(EditConfiguration, OptionWindow) {
    Editing e(1, 4112);
    e.configuration([](Form& form) {
        EXPECT_EQ(form.width(), 5625);
        EXPECT_EQ(form.height(), 6500);
        EXPECT_TRUE(form.control("Frame1").visible);
        EXPECT_GE(form.control("Frame2").left, form.width());
        EXPECT_TRUE(form.control("Combo1(0)").entries.empty());
        EXPECT_EQ(form.control("Text2(0)").limit, 8u);
    });
}

TEST(EditConfiguration, Captions) {
    struct Case {
        const char* name;
        const char16_t* text;
    };
    Editing e(21, 4112);
    e.configuration([](Form& form) {
        for (const Case& c : {
                 Case{"Frame1", u""},
                 Case{"Frame2", u""},
                 Case{"Frame4(0)", u"Fuse Bit"},
                 Case{"Label1(0)", u"ISP Enable"},
                 Case{"Label1(1)", u"XTAL Osc Bypass"},
                 Case{"Label1(2)", u"User Row Programming"},
                 Case{"Label1(3)", u"System Clock Out"},
                 Case{"Frame4(1)", u"Lock Bit"},
                 Case{"Label2(0)", u"Lock Bit1"},
                 Case{"Label2(1)", u"Lock Bit2"},
                 Case{"Label6(0)", u"UserCode"},
                 Case{"Text2(0)", u"00000000"},
                 Case{"Frame3(1)", u"Configuration Mode"},
                 Case{"Option2(0)", u"Parallel Express/SelectMAP Modes(0)"},
                 Case{"Option2(1)", u"Serial Slave/Master Modes(1)"},
                 Case{"Frame3(2)", u"Secure(Read-Protect)"},
                 Case{"Option2(2)", u"Read-Protected(0)"},
                 Case{"Option2(3)", u"Not Secured(1)"},
                 Case{"Frame3(5)", u"CF Assignment"},
                 Case{"Option2(8)", u"Select D4/CF pin to be D4 pin(0)"},
                 Case{"Option2(9)", u"Select D4/CF pin to be CF pin(1)"},
                 Case{"Frame3(0)", u"Oscillator Configuration"},
                 Case{"Option1(0)", u"HF Crystal"},
                 Case{"Option1(1)", u"MF Crystal"},
                 Case{"Frame3(3)", u"RPE"},
                 Case{"Option2(4)", u"Reset Pin Disable"},
                 Case{"Option2(5)", u"Reset Pin Enable"},
                 Case{"Frame3(4)", u"WDTE"},
                 Case{"Option2(6)", u"Watchdog timer Disable"},
                 Case{"Option2(7)", u"Watchdog timer Enable"},
                 Case{"OKButton", u"OK"},
                 Case{"CancelButton", u"Cancel"},
             })
            EXPECT_EQ(textof(form, c.name), c.text) << c.name;
    });
}

TEST(EditConfiguration, UnboundGroupsStandRightOfTheirFrame) {
    Editing e(1, 4112);
    e.configuration([](Form& form) {
        for (const char* name : {"Frame3(0)", "Frame3(3)", "Frame3(4)"}) {
            EXPECT_EQ(form.control(name).container, "Frame1");
            EXPECT_GE(form.control(name).left, form.control("Frame1").width) << name;
        }
        // choosing there must not touch the options that are bound
        form.click("Option2(1)");
        for (const char* name : {"Option1(1)", "Option2(5)", "Option2(7)"}) form.click(name);
        EXPECT_TRUE(form.control("Option2(1)").selected);
        ok(form);
    });
    EXPECT_EQ(e.cell(4), 2);
}

TEST(EditConfiguration, TextsOfTheLanguage) {
    Editing e(21, 4112);
    e.s.Language[0] = 30000;
    e.configuration([](Form& form) {
        EXPECT_EQ(form.caption(), u"Konfiguráció szerkesztése");
        EXPECT_EQ(textof(form, "CancelButton"), u"Mégse");
        EXPECT_EQ(form.control("Combo1(0)").entries[1], u"Tiltás(1)");
    });
}

// fuse byte, lock byte -> entries shown -> the bytes that an unchanged OK leaves
TEST(EditConfiguration, LockBitsToAndFro) {
    struct Case {
        std::uint8_t fuse, lock;
        std::array<int, 6> shown;
    };
    for (const Case& c :
         {Case{0x0F, 0x03, {1, 1, 1, 1, 1, 1}}, Case{0x00, 0xFC, {}},
          Case{0xF5, 0xFE, {1, 0, 1, 0, 0, 1}}, Case{0x1A, 0x01, {0, 1, 0, 1, 1}}}) {
        Editing e(21, 4112);
        e.cell(-16) = c.fuse;
        e.cell(-15) = c.lock;
        e.configuration([&](Form& form) {
            for (std::size_t i = 0; i < combos.size(); ++i) {
                EXPECT_EQ(form.control(combos[i]).index, c.shown[i]) << combos[i];
                EXPECT_EQ(textof(form, combos[i]), c.shown[i] != 0 ? u"Disable(1)" : u"Enable(0)");
            }
            ok(form);
            EXPECT_TRUE(form.closed());
        });
        EXPECT_EQ(e.cell(-16), c.fuse & 0x0F);
        EXPECT_EQ(e.cell(-15), c.lock & 0x03);
    }
}

TEST(EditConfiguration, EachComboIsItsOwnBit) {
    for (std::size_t i = 0; i < combos.size(); ++i) {
        Editing e(21, 4112);
        e.configuration([&](Form& form) {
            form.choose(combos[i], 1);
            ok(form);
        });
        EXPECT_EQ(e.cell(-16), i < 4 ? 1 << i : 0) << combos[i];
        EXPECT_EQ(e.cell(-15), i < 4 ? 0 : 1 << (i - 4)) << combos[i];
    }
}

TEST(EditConfiguration, OptionsToAndFro) {
    struct Case {
        std::uint8_t before;
        const char *mode, *secure, *cf;
        std::uint8_t after;
    };
    for (const Case& c : {Case{0x00, "Option2(0)", "Option2(2)", "Option2(8)", 0x00},
                          Case{0xFF, "Option2(1)", "Option2(3)", "Option2(9)", 0x26},
                          Case{0x02, "Option2(1)", "Option2(2)", "Option2(8)", 0x02},
                          Case{0x04, "Option2(0)", "Option2(3)", "Option2(8)", 0x04},
                          Case{0x20, "Option2(0)", "Option2(2)", "Option2(9)", 0x20},
                          Case{0xD9, "Option2(0)", "Option2(2)", "Option2(8)", 0x00}}) {
        Editing e(2, 131072);
        e.cell(4) = c.before;
        e.configuration([&](Form& form) {
            for (const char* name : {"Option2(0)", "Option2(1)", "Option2(2)", "Option2(3)",
                                     "Option2(8)", "Option2(9)"})
                EXPECT_EQ(form.control(name).selected, std::string(name) == c.mode ||
                                                           std::string(name) == c.secure ||
                                                           std::string(name) == c.cf)
                    << name << " for " << int{c.before};
            ok(form);
        });
        EXPECT_EQ(e.cell(4), c.after);
    }
}

// The limit of the group and the limit of its bit differ.
TEST(EditConfiguration, PinAssignmentByLength) {
    struct Case {
        std::int32_t length;
        bool enabled;
        std::uint8_t stored;  // of a set bit 5
    };
    for (const Case& c : {Case{131072, true, 0x20}, Case{131073, true, 0}, Case{200000, true, 0},
                          Case{262143, true, 0}, Case{262144, false, 0}}) {
        Editing e(3, c.length);
        e.cell(4) = 0x20;
        e.configuration([&](Form& form) {
            for (const char* name : {"Frame3(5)", "Option2(8)", "Option2(9)"})
                EXPECT_EQ(form.control(name).enabled, c.enabled) << name << c.length;
            EXPECT_TRUE(form.control("Option2(9)").selected) << c.length;
            form.click("Option2(8)");
            EXPECT_EQ(form.control("Option2(8)").selected, c.enabled) << c.length;
            form.click("Option2(9)");
            ok(form);
        });
        EXPECT_EQ(e.cell(4), c.stored) << c.length;
    }
}

TEST(EditConfiguration, UserCodeDigits) {
    Editing e(1, 4112);
    for (int i = 0; i < 4; ++i)
        e.cell(i) =
            std::array<std::uint8_t, 4>{0x01, 0xAB, 0x00, 0xFF}[static_cast<std::size_t>(i)];
    e.configuration([](Form& form) {
        EXPECT_EQ(textof(form, "Text2(0)"), u"01AB00FF");
        form.setselection("Text2(0)", 1);
        EXPECT_TRUE(form.keypress("Text2(0)", u'a'));
        EXPECT_EQ(textof(form, "Text2(0)"), u"0aAB00FF");
        EXPECT_EQ(form.control("Text2(0)").caret, 2u);
        form.setselection("Text2(0)", 4, 3);  // one digit is overwritten, not the selection
        form.keypress("Text2(0)", u'C');
        EXPECT_EQ(textof(form, "Text2(0)"), u"0aABC0FF");
        form.setselection("Text2(0)", 8);
        EXPECT_TRUE(form.keypress("Text2(0)", u'7'));
        EXPECT_EQ(textof(form, "Text2(0)"), u"0aABC0FF");
        ok(form);
    });
    EXPECT_EQ((std::vector{e.cell(0), e.cell(1), e.cell(2), e.cell(3)}),
              (std::vector<std::uint8_t>{0x0A, 0xAB, 0xC0, 0xFF}));
}

TEST(EditConfiguration, RefusedKeys) {
    Editing e(1, 4112);
    e.configuration([](Form& form) {
        for (const char16_t c : std::u16string(u"\u0008\u0001 gG/:@`-\u00FF\u0416"))
            EXPECT_FALSE(form.keypress("Text2(0)", c)) << int{c};
        EXPECT_FALSE(form.keydown("Text2(0)", 46));
        EXPECT_TRUE(form.keydown("Text2(0)", 37));
        EXPECT_EQ(textof(form, "Text2(0)"), u"00000000");
        EXPECT_EQ(form.beeps(), 0);
    });
}

TEST(EditConfiguration, CancelAndForeignModesWriteNothing) {
    for (const std::uint8_t mode : std::array<std::uint8_t, 9>{0, 1, 2, 3, 4, 20, 21, 22, 255}) {
        Editing e(mode, 4112);
        for (std::int64_t i = 0; i < e.s.ibuffer.size(); ++i) e.s.ibuffer[i] = 0xA5;
        const bool bound = mode == 21 || (mode >= 1 && mode <= 3);
        e.configuration([&](Form& form) {
            EXPECT_EQ(form.caption(), u"Edit Configuration");
            EXPECT_EQ(textof(form, "OKButton"), u"OK");
            form.choose("Combo1(0)", 0);
            type(form, "Text2(0)", u"12345678");
            form.click("Option2(1)");
            bound ? cancel(form) : ok(form);
            EXPECT_TRUE(form.closed());
        });
        for (std::int64_t i = 0; i < e.s.ibuffer.size(); ++i)
            ASSERT_EQ(e.s.ibuffer[i], 0xA5) << int{mode} << " at " << i;
    }
}

// A length that leads out of the buffer must not reach beyond it.
TEST(EditConfiguration, BytesOutsideTheBufferAreSkipped) {
    for (const std::uint8_t mode : std::array<std::uint8_t, 2>{1, 21})
        for (const std::int32_t length : {INT32_MIN, -1, 0, 15, 16, Editing::buflength + 2197,
                                          Editing::buflength + 2200, INT32_MAX}) {
            Editing e(mode, length);
            e.configuration([](Form& form) {
                type(form, "Text2(0)", u"FFFFFFFF");
                ok(form);
            });
            EXPECT_EQ(e.s.prgresult[0], 0) << length;
        }
    Editing e(1, Editing::buflength + 2197);  // three bytes of the code are there
    e.configuration([](Form& form) {
        type(form, "Text2(0)", u"11223344");
        ok(form);
    });
    EXPECT_EQ(e.cell(2), 0x33);
}

}  // namespace
}  // namespace keld2::test
