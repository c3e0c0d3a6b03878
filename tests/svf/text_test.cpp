// What the text helpers, the reader and SDR statements make of a text, and what is a fault.
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <sstream>

#include "jtag/cases.h"
#include "jtag/sdrstatement.h"
#include "jtag/svfreader.h"
#include "jtag/svftext.h"
#include "platform/fault.h"

namespace keld2 {
namespace {

const std::string texts =
#include "data/svf/texts.txt"
    ;

const std::map<int, const SdrRules*> sdrrules{
    {50, &sdrrules50}, {80, &sdrrules80}, {92, &sdrrules92}, {94, &sdrrules94}};

SvfReader readerof(const std::string& text) {
    return SvfReader({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

std::string hex(const std::vector<std::uint8_t>& bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += text.empty() ? "" : " ";
        text += "0123456789ABCDEF"[byte >> 4];
        text += "0123456789ABCDEF"[byte & 15];
    }
    return text;
}

std::string lines(const std::string& text) {
    SvfReader reader = readerof(text);
    std::string told;
    while (!reader.atend()) told += std::string(reader.readcounted()) + "|";
    EXPECT_THROW(reader.read(), RunFault);
    return told + ", " + std::to_string(reader.svfchars()) + " counted";
}

std::string field(const std::string& text, bool closing, SvfReader::Key key) {
    SvfReader reader = readerof(text);
    const std::string_view first = reader.readcounted();
    const std::string got =
        closing ? reader.popMLinedata1(first, key) : reader.popMLinedata(first, key);
    return got + "|" + std::string(reader.svfline());
}

std::string told(const SdrStatement& s) {
    const std::string row = !s.counted         ? " -"
                            : s.expect.empty() ? " empty"
                                               : " " + hex(s.expect) + "/" + hex(s.mask);
    switch (s.kind) {
        case SdrStatement::Kind::givenup:
            return "given up";
        case SdrStatement::Kind::drive:
            return "drive " + hex(s.tdi);
        case SdrStatement::Kind::read:
            return "read" + row;
        case SdrStatement::Kind::replay:
            break;
    }
    return "replay " + hex(s.tdi) + row;
}

// The statement, the characters counted behind its first line, and the lines behind it.
std::string sdr(const std::string& text, const SdrRules& rules, int fuses, int row = 0) {
    SvfReader reader = readerof(text);
    const auto first = static_cast<std::int64_t>(reader.readcounted().size());
    SdrStatement statement;
    readsdr(reader, rules, fuses, row, statement);
    std::string all = told(statement);
    const std::int64_t counted = reader.svfchars() - first;
    if (counted != 0) all += ", " + std::to_string(counted) + " counted";
    while (!reader.atend()) all += ", then " + std::string(reader.read());
    return all;
}

// subject: what is asked, and of what kind: "sdr RULES FUSES", "field KEY".
std::string answer(const std::string& subject, const std::string& text) {
    std::istringstream in(subject);
    std::string asked, kind;
    int fuses = 0;
    in >> asked >> kind >> fuses;
    if (asked == "trim") return std::string(Trim(text));
    if (asked == "cleartab") return std::string(ClearTAB(text));
    if (asked == "int16") return std::to_string(readint16(text));
    if (asked == "int32") return std::to_string(readint32(text));
    if (asked == "lines") return lines(text);
    if (asked == "sdr") return sdr(text, *sdrrules.at(std::stoi(kind)), fuses);
    return field(text, asked == "closing",
                 kind == "tdo" ? SvfReader::Key::tdo : SvfReader::Key::mask);
}

std::string answerorfault(const std::function<std::string()>& ask) {
    try {
        return ask();
    } catch (const RunFault&) {
        return "fault";
    }
}

TEST(SvfText, IsReadAsItsCasesSay) {
    for (const auto& [subject, text, expected] : testing::readcases(texts))
        EXPECT_EQ(answerorfault([&] { return answer(subject, text); }), expected)
            << subject << ": " << text;
}

TEST(SdrStatement, RowsHaveLimits) {
    struct Limit {
        int rules, bytes, rows;
    };
    for (const Limit& limit : {Limit{80, 2001, 5001}, {94, 2001, 5001}, {50, 4001, 501}}) {
        const auto isfault = [&limit](int bytes, bool read, int row) {
            const std::string digits(static_cast<std::size_t>(2 * bytes), '0');
            const std::string text = "SDR " + std::to_string(8 * bytes) + " TDI (" + digits +
                                     (read ? ") TDO (" + digits + ");" : ");");
            return answerorfault([&] { return sdr(text, *sdrrules.at(limit.rules), 0, row); }) ==
                   "fault";
        };
        EXPECT_FALSE(isfault(limit.bytes, true, limit.rows - 1));
        EXPECT_TRUE(isfault(limit.bytes + 1, true, 0));
        EXPECT_TRUE(isfault(1, true, limit.rows));
        EXPECT_FALSE(isfault(4095, false, limit.rows)) << "a drive stores no row";
    }
    const std::string smask = "SDR 12 TDI (000) SMASK (FF) TDO (0\n1) MASK (3C);";
    EXPECT_EQ(sdr(smask, sdrrules80, 25809, 5001), "read empty, 13 counted") << "nor does this";
    EXPECT_EQ(sdr(smask, sdrrules94, 0, 5001), "read empty, 13 counted");
}

}  // namespace
}  // namespace keld2
