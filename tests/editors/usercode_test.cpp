// The user-code editor: three views of 32 cells that keep in step.
#include <gtest/gtest.h>

#include "machine.h"
#include "platform/numbers.h"

namespace keld2::test {
namespace {

constexpr std::int32_t length = 33440;

void fill(Editing& e, std::uint32_t value) {
    for (int i = 0; i < 32; ++i)
        e.cell(i) = static_cast<std::uint8_t>('0' + (value >> (31 - i) & 1));
}

std::u16string bits(std::uint32_t value) {
    std::u16string text;
    for (int i = 31; i >= 0; --i) text += (value >> i & 1) != 0 ? u'1' : u'0';
    return text;
}

void expectviews(const Form& form, std::u16string_view bin, std::u16string_view hex,
                 std::u16string_view text, const std::string& what) {
    EXPECT_EQ(textof(form, "Text1"), bin) << what;
    EXPECT_EQ(textof(form, "Text2"), hex) << what;
    EXPECT_EQ(textof(form, "Text3"), text) << what;
}

TEST(UserCode, Window) {
    Editing e(41, length);
    e.code([](Form& form) {
        EXPECT_EQ(form.name(), "usercode0");
        EXPECT_EQ(form.caption(), u"Edit E_Field");
        EXPECT_EQ(textof(form, "Label1"), u"Bin:");
        EXPECT_EQ(textof(form, "Label2"), u"Hex:");
        EXPECT_EQ(textof(form, "Label3"), u"Text:");
        EXPECT_EQ(textof(form, "OKButton"), u"OK");
        EXPECT_EQ(textof(form, "CancelButton"), u"Cancel");
        EXPECT_EQ(form.control("Text1").limit, 32u);
        EXPECT_EQ(form.control("Text2").limit, 8u);
        EXPECT_EQ(form.control("Text3").limit, 4u);
    });
}

TEST(UserCode, ViewsOfTheCells) {
    struct Case {
        std::uint32_t value;
        const char16_t *hex, *text;
    };
    for (const Case& c :
         {Case{0xFFFFFFFF, u"FFFFFFFF", u"\u00FF\u00FF\u00FF\u00FF"}, Case{0, u"00000000", u"    "},
          Case{0x41004280, u"41004280", u"A B\u0080"},
          Case{0x0123ABCD, u"0123ABCD", u"\u0001#\u00AB\u00CD"}}) {
        Editing e(41, length);
        fill(e, c.value);
        e.code([&](Form& form) {
            expectviews(form, bits(c.value), c.hex, c.text, "load");
            ok(form);
            EXPECT_TRUE(form.closed());
        });
        for (int i = 0; i < 32; ++i) EXPECT_EQ(e.cell(i), 48 + (c.value >> (31 - i) & 1)) << i;
    }
}

// Only the lowest bit of a cell counts, and OK makes digits of them all.
TEST(UserCode, CellsThatAreNoDigits) {
    Editing e(41, length);
    for (int i = 0; i < 32; ++i) e.cell(i) = static_cast<std::uint8_t>(i % 2 != 0 ? 0xFF : 0x02);
    e.code([](Form& form) {
        EXPECT_EQ(textof(form, "Text1"), bits(0x55555555));
        ok(form);
    });
    for (int i = 0; i < 32; ++i) EXPECT_EQ(e.cell(i), 48 + i % 2) << i;
}

TEST(UserCode, TypingInEachView) {
    struct Case {
        const char* what;
        const char* box;
        std::size_t position;
        const char16_t* keys;
        std::u16string bin;
        const char16_t *hex, *text;
        std::size_t caret;
    };
    const Case cases[]{
        {"first bit", "Text1", 0, u"0", bits(0x41424344), u"41424344", u"ABCD", 1},
        {"a run of bits", "Text1", 4, u"0010", bits(0xC2424344), u"C2424344", u"\u00C2BCD", 8},
        {"behind the last bit", "Text1", 32, u"1", bits(0xC1424344), u"C1424344", u"\u00C1BCD", 32},
        {"lower case stays", "Text2", 0, u"a", bits(0xA1424344), u"a1424344", u"\u00A1BCD", 1},
        {"a byte of zero", "Text2", 2, u"00", bits(0xC1004344), u"C1004344", u"\u00C1 CD", 4},
        {"behind the last digit", "Text2", 8, u"5", bits(0xC1424344), u"C1424344", u"\u00C1BCD", 8},
        {"last digit", "Text2", 7, u"f", bits(0xC142434F), u"C142434f", u"\u00C1BCO", 8},
        {"a character", "Text3", 1, u"z", bits(0xC17A4344), u"C17A4344", u"\u00C1zCD", 2},
        {"all characters", "Text3", 0, u"TQ5!", bits(0x54513521), u"54513521", u"TQ5!", 4},
        {"ANSI above 127", "Text3", 3, u"\u0080", bits(0xC1424380), u"C1424380", u"\u00C1BC\u0080",
         4},
        {"below 16 gives one digit", "Text3", 0, u"\u0001", bits(0x01424344), u"1424344",
         u"\u0001BCD", 1},
    };
    for (const Case& c : cases) {
        Editing e(41, length);
        fill(e, 0xC1424344);
        e.code([&](Form& form) {
            form.setselection(c.box, c.position, 3);  // a longer selection is not replaced whole
            type(form, c.box, c.keys);
            expectviews(form, c.bin, c.hex, c.text, c.what);
            EXPECT_EQ(form.control(c.box).caret, c.caret) << c.what;
            EXPECT_EQ(form.beeps(), 0) << c.what;
            ok(form);
        });
        for (int i = 0; i < 32; ++i)
            EXPECT_EQ(e.cell(i), c.bin[static_cast<std::size_t>(i)]) << c.what << " at " << i;
    }
}

// A space that stands for a byte of 0 is a space once text is typed.
TEST(UserCode, TypingTextTakesShownSpacesAsCharacters) {
    Editing e(41, length);
    fill(e, 0);
    e.code([](Form& form) {
        type(form, "Text3", u"A");
        expectviews(form, bits(0x41202020), u"41202020", u"A   ", "typed");
    });
}

// The character 0 is a key like any other: only Backspace is refused in the text.
TEST(UserCode, TypingTheCharacterZero) {
    Editing e(41, length);
    fill(e, 0x41424344);
    e.code([](Form& form) {
        form.setselection("Text3", 1);
        EXPECT_TRUE(form.keypress("Text3", 0));
        expectviews(form, bits(0x41004344), u"4104344", std::u16string_view(u"A\0CD", 4), "text");
        EXPECT_EQ(form.beeps(), 0);
        for (const char* box : {"Text1", "Text2"}) EXPECT_FALSE(form.keypress(box, 0)) << box;
        EXPECT_EQ(form.beeps(), 2);
        EXPECT_TRUE(form.keydown("Text3", 0));
    });
}

// With a digit missing the hexadecimal view can be filled up again.
TEST(UserCode, ShortHexadecimalView) {
    Editing e(41, length);
    fill(e, 0x41424344);
    e.code([](Form& form) {
        type(form, "Text3", u"\u0001");
        form.setselection("Text2", 7);
        type(form, "Text2", u"5");
        expectviews(form, bits(0x14243445), u"14243445", u"\u0014$4E", "filled up");
    });
}

TEST(UserCode, RefusedKeysBeep) {
    struct Case {
        const char* box;
        const char16_t* keys;
    };
    for (const Case& c : {Case{"Text1", u"2a \u0008\u0130"}, Case{"Text2", u"gG/:@`\u0008\u0410"},
                          Case{"Text3", u"\u0008\u0416"}}) {
        Editing e(41, length);
        fill(e, 0x41424344);
        e.code([&](Form& form) {
            int beeps = 0;
            for (const char16_t key : std::u16string_view(c.keys)) {
                EXPECT_FALSE(form.keypress(c.box, key)) << c.box << int{key};
                EXPECT_EQ(form.beeps(), ++beeps) << c.box << int{key};
            }
            EXPECT_FALSE(form.keydown(c.box, 46));
            EXPECT_EQ(form.beeps(), beeps);
            expectviews(form, bits(0x41424344), u"41424344", u"ABCD", c.box);
        });
    }
}

TEST(UserCode, CancelWritesNothing) {
    Editing e(41, length);
    for (int i = 0; i < 32; ++i) e.cell(i) = 0x77;
    e.code([](Form& form) {
        type(form, "Text2", u"12345678");
        cancel(form);
        EXPECT_TRUE(form.closed());
    });
    for (int i = 0; i < 32; ++i) EXPECT_EQ(e.cell(i), 0x77) << i;
}

TEST(UserCode, CellsOutsideTheBufferAreSkipped) {
    for (const std::int32_t t : {INT32_MIN, -32, -1, Editing::buflength + 2199, INT32_MAX}) {
        Editing e(41, t);
        e.code([](Form& form) {
            EXPECT_EQ(textof(form, "Text1").size(), 32u);
            type(form, "Text2", u"FFFFFFFF");
            ok(form);
        });
        EXPECT_EQ(e.s.prgresult[0], 0) << t;
        if (t == -1) {
            EXPECT_EQ(e.s.ibuffer[30], '1');
        }
    }
}

}  // namespace
}  // namespace keld2::test
