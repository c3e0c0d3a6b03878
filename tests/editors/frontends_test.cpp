// The editors answered by a script and on a terminal.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "common/madefolder.h"
#include "host/forms/scriptedform.h"
#include "host/forms/terminalform.h"
#include "machine.h"

namespace keld2::test {
namespace {

using nlohmann::json;

class FrontEnds : public testing::Test {
  protected:
    host::FormScript script(const std::string& actions) {
        return host::readformscript(folder_.file("actions.txt", actions));
    }
    // Plays actions in the editors that open one after the other; the log's lines.
    std::vector<json> play(Editing& e, const std::string& actions, const std::string& editors) {
        {
            host::ScriptedForms forms(script(actions), log_, messages_);
            for (const char editor : editors) {
                const auto show = [&](Form& form) { forms.show(form); };
                editor == 'u' ? e.code(show) : e.configuration(show);
            }
            forms.check();
        }
        std::vector<json> lines;
        std::ifstream in(log_);
        for (std::string line; std::getline(in, line);) lines.push_back(json::parse(line));
        return lines;
    }
    std::string errorof(Editing& e, const std::string& actions, const std::string& editors) {
        try {
            play(e, actions, editors);
        } catch (const host::HostError& error) {
            EXPECT_EQ(error.status(), 65);
            const std::string message = error.what();
            return message.substr(message.find("actions.txt") + 11);
        }
        return "nothing";
    }

    MadeFolder folder_;
    std::filesystem::path log_ = folder_ / "log.json";
    std::ostringstream messages_;
};

TEST_F(FrontEnds, ScriptEditsTheConfiguration) {
    Editing e(2, 4112);
    const auto lines = play(e,
                            "[\"caret\", \"Text2(0)\", 6, 2]\r\n"
                            "[\"key\", \"Text2(0)\", \"e\"]\n"
                            "[\"key\", \"Text2(0)\", \"\\b\"]\n"
                            "[\"keydown\", \"Text2(0)\", 46]\n"
                            "[\"select\", \"Option2(3)\"]\n"
                            "[\"ok\"]",
                            "c");
    ASSERT_EQ(lines.size(), 6u);  // load and five actions
    EXPECT_EQ(lines[0]["window"], "edit_figkeld2");
    EXPECT_EQ(lines[0]["caption"], "Edit Configuration");
    EXPECT_EQ(lines[0]["width"], 5625);
    EXPECT_EQ(lines[0]["height"], 6500);
    const std::string box = "Text2(0)";
    const json before = lines[1]["controls"][box], after = lines[2]["controls"][box];
    EXPECT_EQ(before["caret"], 6);
    EXPECT_EQ(before["selection"], 2);
    EXPECT_EQ(after["text"], "000000e0");
    EXPECT_EQ(after["caret"], 7);
    EXPECT_EQ(after["selection"], 0);
    for (const std::size_t i : {0u, 1u, 5u}) EXPECT_FALSE(lines[i].contains("passed")) << i;
    EXPECT_EQ(lines[2]["passed"], true);
    EXPECT_EQ(lines[3]["passed"], false);
    EXPECT_EQ(lines[4]["passed"], false);
    EXPECT_EQ(lines[4]["controls"]["Option2(3)"]["selected"], false);
    EXPECT_EQ(lines[5]["controls"]["Option2(3)"]["selected"], true);
    EXPECT_EQ(e.cell(3), 0xE0);
    EXPECT_EQ(e.cell(4), 4);
    EXPECT_EQ(messages_.str(), "");
}

TEST_F(FrontEnds, LogHasTheMembersOfEachKind) {
    Editing e(21, 4112);
    const json controls = play(e, "[\"cancel\"]\n", "c").at(0)["controls"];
    const auto members = [&](const char* name) {
        std::string found;
        for (const auto& [member, value] : controls.at(name).items()) found += member + " ";
        return found;
    };
    const std::string every = "enabled left text top visible ";
    for (const char* name : {"Frame1", "Label1(0)", "OKButton"}) EXPECT_EQ(members(name), every);
    EXPECT_EQ(members("Combo1(0)"), "enabled entries index left text top visible ");
    EXPECT_EQ(members("Option2(0)"), "enabled left selected text top visible ");
    EXPECT_EQ(members("Text2(0)"), "caret enabled left selection text top visible ");
    EXPECT_EQ(controls["Combo2(1)"]["entries"], json({"Enable(0)", "Disable(1)"}));
    EXPECT_EQ(controls["Frame1"]["visible"], false);
    EXPECT_EQ(controls["Frame2"]["left"], 300);
}

TEST_F(FrontEnds, BlankLineBeginsTheNextEditor) {
    Editing e(1, 4112);
    const auto lines =
        play(e,
             "[\"key\", \"Text1\", \"x\"]\n[\"key\", \"Text3\", \"\u00E9\"]\n[\"ok\"]\n"
             "  \n[\"key\",\"Text2(0)\",\"7\"]\n[\"ok\"]\n",
             "uc");
    ASSERT_EQ(lines.size(), 5u);
    EXPECT_EQ(lines[1]["beeps"], 1);
    EXPECT_EQ(lines[2]["beeps"], 1);
    EXPECT_EQ(lines[2]["controls"]["Text3"]["text"], "\u00E9   ");
    EXPECT_EQ(lines[3]["window"], "edit_figkeld2");
    EXPECT_EQ(lines[3]["beeps"], 0);
    EXPECT_EQ(e.cell(0), 0x71);  // the digit "1" that the first editor left there, 0x31
}

TEST_F(FrontEnds, EditorsWithoutActionsAreCancelled) {
    Editing e(1, 4112);
    e.cell(0) = 0x55;
    const auto lines = play(e, "[\"key\", \"Text2(0)\", \"7\"]\n", "cc");
    EXPECT_EQ(e.cell(0), 0x55);
    EXPECT_EQ(lines.size(), 2u);
    const std::string cancelled =
        "keld2: edit_figkeld2 is cancelled: " + (folder_ / "actions.txt").string() +
        " has no further actions for it, expected [\"ok\"] or "
        "[\"cancel\"]\n";
    EXPECT_EQ(messages_.str(), cancelled + cancelled);
}

TEST_F(FrontEnds, WrongActions) {
    const std::string any =
        "expected a JSON array that begins with caret, key, keydown, choose, select, ok or cancel";
    const std::string caret =
        R"j(expected ["caret", BOX, POSITION] or ["caret", BOX, POSITION, LENGTH])j";
    const std::string key = R"(expected ["key", BOX, CHARACTER] with a text of one character)";
    const std::pair<std::string, std::string> cases[]{
        {"x", ":1: no action, " + any},
        {"[]", ":1: no action, " + any},
        {"[\"ok\"]\n\n\n{}", ":4: no action, " + any},
        {R"j(["press"])j", ":1: there is no action press, " + any},
        {R"j(["caret", "Text2(0)"])j", ":1: 2 elements, " + caret},
        {R"j(["caret", "Text2(0)", -1])j",
         ":1: -1 is no whole number from 0 to 2147483647, " + caret},
        {R"j(["caret", "Text2(0)", 1, 1.5])j",
         ":1: 1.5 is no whole number from 0 to 2147483647, " + caret},
        {R"j(["key", 7, "a"])j", ":1: 7 is no name, " + key},
        {R"j(["key", "Text2(0)", "ab"])j", R"(:1: "ab" is no character, )" + key},
        {R"j(["key", "Text2(0)", ""])j", R"(:1: "" is no character, )" + key},
        {R"j(["key", "Text2(0)", 8])j", ":1: 8 is no character, " + key},
        {"[\"cancel\"]\n[\"ok\"]",
         ":2: an action behind the one that closes the editor, expected a blank line"},
        {"[\"caret\", \"Text2(0)\", 1]\n[\"key\", \"Text2\", \"a\"]\n[\"ok\"]",
         ":2: Text2 is no control of edit_figkeld2, expected a text box: Text2(0)"},
        {R"j(["choose", "Frame1", 0])j",
         ":1: Frame1 is a frame, expected a combo: Combo1(0), Combo1(1), Combo1(2), Combo1(3), "
         "Combo2(0), Combo2(1)"},
        {R"j(["choose", "Combo1(0)", 2])j",
         ":1: Combo1(0) has no entry 2, expected an index from 0 to 1"},
    };
    for (const auto& [actions, error] : cases) {
        Editing e(21, 4112);
        e.cell(-16) = 0x5A;
        EXPECT_EQ(errorof(e, actions, "c"), error) << actions;
        EXPECT_EQ(e.cell(-16), 0x5A) << actions;
    }
}

// A character that no box can hold is a key like any other: refused.
TEST_F(FrontEnds, CharactersBeyondTheBoxes) {
    Editing e(41, 4112);
    const auto lines = play(e,
                            "[\"key\",\"Text3\",\"\u20AC\"]\n[\"key\",\"Text3\",\"\U0001F600\"]\n"
                            "[\"ok\"]\n",
                            "u");
    ASSERT_EQ(lines.size(), 3u);
    for (const std::size_t i : {1u, 2u}) {
        EXPECT_EQ(lines[i]["passed"], false) << i;
        EXPECT_EQ(lines[i]["beeps"], i);
        EXPECT_EQ(lines[i]["controls"]["Text3"]["text"], "    ");
    }
}

TEST_F(FrontEnds, DisabledOptionsStay) {
    Editing e(1, 262144);
    const auto lines = play(e, "[\"select\",\"Option2(9)\"]\n[\"ok\"]\n", "c");
    EXPECT_EQ(lines.at(1)["controls"]["Option2(9)"]["selected"], false);
    EXPECT_EQ(lines.at(1)["controls"]["Option2(9)"]["enabled"], false);
}

std::string terminal(Editing& e, const std::string& input, bool code) {
    std::istringstream in(input);
    std::ostringstream out;
    host::TerminalForms forms(in, out);
    const auto show = [&](Form& form) { forms.show(form); };
    code ? e.code(show) : e.configuration(show);
    return out.str();
}

TEST_F(FrontEnds, TerminalEditsTheLockBits) {
    Editing e(21, 4112);
    const std::string out = terminal(e, "2=1\n 6 = 1 \n7=1\n1=2\n1\n\nok\n", false);
    EXPECT_EQ(e.cell(-16), 0x02);
    EXPECT_EQ(e.cell(-15), 0x02);
    EXPECT_NE(out.find("   2  XTAL Osc Bypass  Disable(1)  [0 Enable(0), 1 Disable(1)]"), out.npos);
    EXPECT_NE(out.find("no such field, expected a number from 1 to 6"), out.npos);
    EXPECT_NE(out.find("no such entry, expected a number from 0 to 1"), out.npos);
    EXPECT_NE(out.find("expected NUMBER=VALUE for this field"), out.npos);
    EXPECT_EQ(out.find("UserCode"), out.npos) << "the other layout is hidden";
}

TEST_F(FrontEnds, TerminalEditsOptionsAndCode) {
    Editing e(1, 200000);
    const std::string out = terminal(e, "1=12aBxF\n3\n7\nok\n", false);
    EXPECT_EQ((std::vector{e.cell(0), e.cell(1), e.cell(2), e.cell(4)}),
              (std::vector<std::uint8_t>{0x12, 0xAB, 0xF0, 2}));
    EXPECT_NE(out.find("refused: \"x\""), out.npos);
    EXPECT_NE(out.find("   3  (*) Serial Slave/Master Modes(1)"), out.npos);
    EXPECT_EQ(out.find("HF Crystal"), out.npos) << "outside the window";
}

TEST_F(FrontEnds, TerminalWhoseInputEndsCancels) {
    Editing e(41, 4112);
    e.cell(0) = 0x77;
    EXPECT_NE(terminal(e, "2=FFFFFFFF\n", true).find("usercode0 is cancelled"), std::string::npos);
    EXPECT_EQ(e.cell(0), 0x77);
}

}  // namespace
}  // namespace keld2::test
