// What every window does with the events of its user, whatever its own filters are.
#include "platform/form.h"

#include <gtest/gtest.h>

#include "platform/fault.h"

namespace keld2 {
namespace {

// A window that lets every key through.
class Plain final : public Form {
  public:
    Plain() : Form("plain", 3000, 2000) {
        using enum ControlKind;
        add({.name = "Box", .kind = text, .text = u"abcd", .limit = 5});
        add({.name = "Free", .kind = text});
        add({.name = "Group", .kind = frame});
        add({.name = "One", .kind = option, .container = "Group"});
        add({.name = "Two", .kind = option, .container = "Group"});
        add({.name = "Other", .kind = option});
        add({.name = "List", .kind = combo});
        at("List").entries = {u"first", u"second"};
        add({.name = "Button", .kind = button});
    }
    Control& edit(std::string_view name) { return at(name); }
    int typed = 0, clicks = 0;

  private:
    void doload() override {}
    bool dokeypress(Control&, char16_t) override { return true; }
    bool dokeydown(Control&, int) override { return true; }
    void dotyped(Control&) override { ++typed; }
    void doclick(Control&) override { ++clicks; }
};

TEST(Form, KeysInABox) {
    struct Case {
        const char* what;
        std::size_t position, length;
        char16_t key;
        const char16_t* text;
        std::size_t caret;
    };
    for (const Case& c : {Case{"at the beginning", 0, 0, u'x', u"xabcd", 1},
                          Case{"in the middle", 2, 0, u'x', u"abxcd", 3},
                          Case{"at the end", 4, 0, u'x', u"abcdx", 5},
                          Case{"over a selection", 1, 2, u'x', u"axd", 2},
                          Case{"over everything", 0, 4, u'x', u"x", 1},
                          Case{"position beyond the text", 9, 3, u'x', u"abcdx", 5},
                          Case{"selection beyond the text", 3, 9, u'x', u"abcx", 4},
                          Case{"last ANSI character", 4, 0, 255, u"abcd\u00FF", 5},
                          Case{"control character", 4, 0, 1, u"abcd\u0001", 5},
                          Case{"backspace", 2, 0, 8, u"acd", 1},
                          Case{"backspace at the beginning", 0, 0, 8, u"abcd", 0},
                          Case{"backspace over a selection", 1, 2, 8, u"ad", 1}}) {
        Plain form;
        form.setselection("Box", c.position, c.length);
        EXPECT_TRUE(form.keypress("Box", c.key)) << c.what;
        EXPECT_EQ(form.control("Box").text, c.text) << c.what;
        EXPECT_EQ(form.control("Box").caret, c.caret) << c.what;
        EXPECT_EQ(form.control("Box").selection, 0u) << c.what;
        EXPECT_EQ(form.typed, 1) << c.what;
    }
}

TEST(Form, LimitHoldsAgainstInsertionButNotReplacement) {
    Plain form;
    form.setselection("Box", 4);
    for (const char16_t c : {u'e', u'f', u'g'}) EXPECT_TRUE(form.keypress("Box", c));
    EXPECT_EQ(form.control("Box").text, u"abcde");
    EXPECT_EQ(form.control("Box").caret, 5u);
    form.setselection("Box", 4, 1);
    form.keypress("Box", u'z');
    EXPECT_EQ(form.control("Box").text, u"abcdz");
    for (int i = 0; i < 100; ++i) form.keypress("Free", u'x');
    EXPECT_EQ(form.control("Free").text, std::u16string(100, u'x'));
}

TEST(Form, KeysThatNoBoxTakes) {
    Plain form;
    EXPECT_FALSE(form.keypress("Box", 256));
    EXPECT_FALSE(form.keypress("Nowhere", u'x'));
    EXPECT_FALSE(form.keypress("List", u'x'));
    EXPECT_EQ(form.control("Box").text, u"abcd");
    EXPECT_EQ(form.typed, 0);
}

TEST(Form, KeysThatMoveOrDelete) {
    struct Case {
        int code;
        std::size_t position, length;
        const char16_t* text;
        std::size_t caret;
    };
    for (const Case& c : {Case{keys::del, 1, 0, u"acd", 1}, Case{keys::del, 1, 2, u"ad", 1},
                          Case{keys::del, 4, 0, u"abcd", 4}, Case{keys::left, 2, 0, u"abcd", 1},
                          Case{keys::left, 0, 0, u"abcd", 0}, Case{keys::left, 1, 2, u"abcd", 1},
                          Case{keys::right, 2, 0, u"abcd", 3}, Case{keys::right, 4, 0, u"abcd", 4},
                          Case{keys::right, 1, 2, u"abcd", 3}, Case{keys::home, 3, 0, u"abcd", 0},
                          Case{keys::end, 1, 1, u"abcd", 4}, Case{65, 1, 2, u"abcd", 1}}) {
        Plain form;
        form.setselection("Box", c.position, c.length);
        EXPECT_TRUE(form.keydown("Box", c.code));
        EXPECT_EQ(form.control("Box").text, c.text) << c.code << " at " << c.position;
        EXPECT_EQ(form.control("Box").caret, c.caret) << c.code << " at " << c.position;
        EXPECT_EQ(form.control("Box").selection, c.code == 65 ? c.length : 0u) << c.code;
    }
}

TEST(Form, OptionsOfOneFrameExcludeEachOther) {
    Plain form;
    form.click("Other");
    form.click("One");
    form.click("Two");
    EXPECT_FALSE(form.control("One").selected);
    EXPECT_TRUE(form.control("Two").selected);
    EXPECT_TRUE(form.control("Other").selected);
}

TEST(Form, ComboTakesItsEntriesOnly) {
    Plain form;
    for (const int index : {-1, 2, 1000}) {
        form.choose("List", index);
        EXPECT_EQ(form.control("List").index, -1);
    }
    form.choose("List", 1);
    EXPECT_EQ(form.control("List").text, u"second");
}

TEST(Form, WhatTheUserCannotReachDoesNothing) {
    Plain form;
    form.click("One");
    form.edit("Two").enabled = false;
    form.click("Two");
    EXPECT_TRUE(form.control("One").selected);
    form.edit("Two").enabled = true;
    form.edit("Group").visible = false;
    form.click("Two");
    EXPECT_TRUE(form.control("One").selected);
    form.edit("Button").enabled = false;
    form.click("Button");
    EXPECT_EQ(form.clicks, 0);
    form.dismiss();
    EXPECT_TRUE(form.closed());
    EXPECT_FALSE(form.keypress("Box", u'x'));
    EXPECT_THROW(form.control("Nowhere"), RunFault);
}

}  // namespace
}  // namespace keld2
