// The lines of a text, and fields that run over several of them.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "jtag/svfreader.h"
#include "platform/fault.h"

namespace keld2 {
namespace {

std::span<const std::uint8_t> bytes(const std::string& text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

TEST(SvfReader, CrLfAndBothEndALine) {
    struct Case {
        std::string text;
        std::vector<std::string> lines;
    };
    const std::vector<Case> cases{
        {"", {}},
        {"a", {"a"}},
        {"a\nb", {"a", "b"}},
        {"a\rb\r", {"a", "b"}},
        {"a\r\nb\r\n", {"a", "b"}},
        {"a\n\rb", {"a", "", "b"}},
        {"\r\r\n\n", {"", "", ""}},
        {"a\nb\rc\r\nd", {"a", "b", "c", "d"}},
        {std::string("\0x\n y ", 6), {std::string("\0x", 2), " y "}},
    };
    for (const Case& c : cases) {
        SvfReader reader(bytes(c.text));
        std::vector<std::string> lines;
        std::int64_t chars = 0;
        while (!reader.atend()) {
            lines.emplace_back(reader.readcounted());
            chars += static_cast<std::int64_t>(lines.back().size());
        }
        EXPECT_EQ(lines, c.lines) << c.text;
        EXPECT_EQ(reader.svfchars(), chars) << "blanks count, line ends do not: " << c.text;
        EXPECT_THROW(reader.read(), RunFault);
    }
}

// A field's text, a bar, and the line that the reader stands on; or "fault".
std::string field(const std::string& first, const std::string& further, SvfReader::Key key,
                  bool mayclosefirst) {
    const std::string text = first + "\n" + further;
    SvfReader reader(bytes(text));
    reader.readcounted();
    try {
        const std::string got = mayclosefirst ? reader.popMLinedata1(reader.svfline(), key)
                                              : reader.popMLinedata(reader.svfline(), key);
        return got + "|" + std::string(reader.svfline());
    } catch (const RunFault&) {
        return "fault";
    }
}

struct FieldCase {
    const char* first;
    const char* further;
    const char* tdo;
    const char* mask;
};

TEST(SvfReader, FieldsOverSeveralLines) {
    const FieldCase cases[] = {
        {"TDO (12", "\t34  \n 56)\nnext", "123456| 56)", "123456| 56)"},
        {"TDO (12", "34);", "1234;|34);", "1234|34);"},
        {"TDO (", "34) MASK (FF);", "34;|34) MASK (FF);", "34|34) MASK (FF);"},
        {"TDO (12", ");", "12;|);", "fault"},
        {"TDO (12", ")", "fault", "fault"},
        {"TDO (12", "34;", "fault", "fault"},
        {"TDO (12", "\n34)", "fault", "fault"},
        {"TDO (12", "34", "fault", "fault"},
        {"TDO 12", "34)", "fault", "fault"},
        {"TDO (12)", "34)", "12)34|34)", "12)34|34)"},
    };
    for (const FieldCase& c : cases) {
        EXPECT_EQ(field(c.first, c.further, SvfReader::Key::tdo, false), c.tdo) << c.further;
        EXPECT_EQ(field(c.first, c.further, SvfReader::Key::mask, false), c.mask) << c.further;
    }
}

TEST(SvfReader, FieldsThatMayCloseOnTheirFirstLine) {
    const FieldCase cases[] = {
        {"TDO (12) x", "34)", "12|TDO (12) x", "12) x|TDO (12) x"},
        {"TDO (12);", "34)", "12|TDO (12);", "12);|TDO (12);"},
        {"TDO (12;", "34)", "fault", "12;|TDO (12;"},
        {"TDO ()", "34)", "fault", ")|TDO ()"},
        {"TDO (12", "34);", "1234|34);", "1234);|34);"},
        {"TDO (12", "3)4\n56)", "123)456|56)", "123)456)|56)"},
        {"TDO (", "\t34)\t\n5);", "34)5|5);", "34)5);|5);"},
    };
    for (const FieldCase& c : cases) {
        EXPECT_EQ(field(c.first, c.further, SvfReader::Key::tdo, true), c.tdo) << c.first;
        EXPECT_EQ(field(c.first, c.further, SvfReader::Key::mask, true), c.mask) << c.first;
    }
}

TEST(SvfReader, AFieldEndsAfterTwentyOneLines) {
    std::string further;
    std::string digits;
    for (int i = 0; i < 22; ++i) {
        const std::string line(1, static_cast<char>('a' + i));
        further += line + "\n";
        if (i < 21) digits += line;
    }
    for (const bool mayclosefirst : {false, true})
        EXPECT_EQ(field("TDO (", further, SvfReader::Key::tdo, mayclosefirst), digits + "|u");
}

}  // namespace
}  // namespace keld2
