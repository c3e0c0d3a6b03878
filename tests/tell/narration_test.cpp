// Traces told in words, and their first difference.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "common/madefolder.h"
#include "common/refusal.h"
#include "host/tell/printing.h"

namespace keld2::host {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class Traces : public ::testing::Test {
  protected:
    std::string told(const std::string& trace, int depth) {
        std::ostringstream out;
        showtrace(folder.file("trace.txt", trace), depth, out);
        return out.str();
    }
    std::string difference(const std::string& a, const std::string& b) {
        std::ostringstream out;
        const bool equal = comparetraces(folder.file("a", a), folder.file("b", b), out);
        EXPECT_EQ(equal, out.str().empty());
        return out.str();
    }

    test::MadeFolder folder;
};

// The lines of the first wiring: register 0, TMS 4, TCK 16, TDI 1, TDO 2.
class Wires {
  public:
    Wires& clock(bool tms, bool tdi, const std::string& sample = "") {
        const int lines = (tms ? 4 : 0) | (tdi ? 1 : 0);
        text += sample;
        write(lines);
        write(lines | 16);
        return write(lines);
    }
    Wires& write(int value) {
        text += "qregwrite " + std::to_string(130 | value) + " 0\n";
        return *this;
    }
    Wires& walk(const std::string& tms) {
        for (const char bit : tms) clock(bit == '1', false);
        return *this;
    }
    Wires& add(const std::string& lines) {
        text += lines;
        return *this;
    }
    std::string text = "window usbsvfprg load\ndrivercommit 000810a202010008080000\n";
};

TEST_F(Traces, TellScansByFollowingTheTestAccessPort) {
    Wires w;
    w.walk("11111").walk("0").walk("1100");                      // to Shift-IR
    w.clock(false, true).clock(false, false).clock(true, true);  // 1, 0, 1
    w.walk("10").walk("100");                                    // Update, Idle, to Shift-DR
    w.add("qregwrite 177 144\nqregwrite 1 143\n");               // 8 bits driven, 8 read
    w.clock(true, true, "qregread 0\n").walk("1");               // the last bit, Update-DR
    w.walk("0").walk("00").add("qwaitlong 20\nqrun\n");
    const std::string text = told(w.text, 3);
    EXPECT_THAT(text, HasSubstr("5 clocks to Test-Logic-Reset\n"));
    EXPECT_THAT(text, HasSubstr("shift IR 3 bits, TDI 0x5\n"));
    // The read code keeps TDI where the driven byte has left it: at bit 7 of 0xB1.
    EXPECT_THAT(text, HasSubstr("shift DR 17 bits, TDI 0x1FFB1, 9 bits read\n"));
    EXPECT_THAT(text, HasSubstr("2 clocks in Run-Test/Idle; pause 20 ms\n"));
    EXPECT_THAT(text, Not(HasSubstr("walk")));
    EXPECT_THAT(told(w.text, 4), HasSubstr("      walk Run-Test/Idle > Select-DR > Capture-DR > "
                                           "Shift-DR\n"));
}

TEST_F(Traces, TellWhatAnImmediateSampleHasRead) {
    Wires w;
    w.walk("0").walk("100");
    for (const int bit : {1, 0, 0, 1})
        w.clock(false, false, "regread 0 -> " + std::to_string(bit != 0 ? 255 : 253) + "\n");
    w.walk("11");
    std::string immediate = w.text;
    for (std::size_t at = 0; (at = immediate.find("qregwrite", at)) != immediate.npos;)
        immediate.erase(at, 1);
    // The walk out of Shift-DR clocks a fifth bit, which nobody looks at.
    EXPECT_THAT(told(immediate, 2), HasSubstr("shift DR 5 bits, TDI stays 0, TDO 0x9\n"));
}

TEST_F(Traces, TellBytesOfTheModeThatWorksBitSevenFirst) {
    const auto shifted = [this](const std::string& mode) {
        Wires w;
        w.add("usbcomwrite 15 0d" + mode + "0000000810a202010008080000 -> 0\n");
        w.walk("0").walk("100").add("qregwrite 3 146\n").walk("11").add("qrun\n");
        return told(w.text, 3);
    };
    EXPECT_THAT(shifted("2a"), HasSubstr("TDI 0x003\n"));
    EXPECT_THAT(shifted("0a"), HasSubstr("TDI 0x0C0\n"));
}

struct ToldCase {
    const char* what;
    std::string trace;
    int depth;
    std::string told;  // a part of it
};

std::string portbyte(int value, const std::string& q) {
    return q + "regwrite " + std::to_string(value) + " 4\n" + q + "regwrite 42 6\n" + q +
           "regwrite 10 6\n";
}

std::string portread(int value) {
    return "regread 4 -> " + std::to_string(value) + "\nregwrite 42 6\nregwrite 10 6\n";
}

TEST_F(Traces, TellPortsBusesFramesAndRepetitions) {
    const std::string mcu = "window usbkel2mpuprg load\n";
    const std::string address =
        portbyte(170, "q") + portbyte(48, "q") + portbyte(1, "q") + portbyte(128, "q");
    const std::string cycle = "qbuswrite 1310724 {} 252\nqwaitshort 5\nqbuswrite 1310724 {} 255\n";
    const auto write = [&](const std::string& data) {
        std::string text = cycle;
        for (std::size_t at; (at = text.find("{}")) != text.npos;) text.replace(at, 2, data);
        return text;
    };
    const auto enabled = [](const std::string& data) {
        const std::string line = "qbuswrite 1310724 " + data;
        return line + " 253\nqwaitshort 5\n" + line + " 252\n" + line + " 253\n";
    };
    const ToldCase cases[] = {
        {"immediate id read",
         mcu + "regwrite 10 6\n" + portbyte(170, "") + portbyte(56, "") + portbyte(255, "") +
             portbyte(0, "") + "regwrite 255 5\nregwrite 10 6\n" + portread(30) + portread(146) +
             "regwrite 0 5\nregwrite 74 6\n",
         2, "command: read id, 2 bytes read 1e92\n"},
        {"queued page read",
         mcu + "qregwrite 10 6\n" + address +
             "qregwrite 255 5\nqregread 4\nqwaitshort 10\nqregwrite 42 6\nqregwrite 10 6\n"
             "qregwrite 0 5\nqregwrite 74 6\nqrun\n",
         3, "    command: read page at 0x0180, 1 byte read\n"},
        {"folded at the list", mcu + "qregwrite 10 6\n" + address + "qregwrite 74 6\nqrun\n", 2,
         "list of 14 lines runs\n"},
        {"a list that never runs", mcu + "qregwrite 10 6\npowerdown\n", 2,
         "list of 1 line, never run\n"},
        {"byte program", mcu + write("64") + write("171") + write("192") + "qrun\n", 3,
         "bus: program ab at 0x140004\n"},
        {"data like the check", mcu + write("64") + write("192") + write("192") + "qrun\n", 3,
         "bus: program c0 at 0x140004\n"},
        {"a page whose cycles begin with the chip enabled",
         mcu + enabled("64") + enabled("91") +
             "qbuswrite 1310725 92 253\nqbuswrite 1310725 92 252\n"
             "qbuswrite 1310725 92 253\nqwaitlong 6\nqrun\n",
         3, "bus: program 5b5c at 0x140004\n"},
        {"erase", mcu + write("32") + write("32") + "qrun\n", 3, "bus: erase at 0x140004\n"},
        {"reads in a row",
         mcu + "buswrite 16 0 249\nregread 0 -> 1\nbuswrite 16 0 253\nbuswrite 17 0 249\n"
               "regread 0 -> 254\nbuswrite 17 0 253\n",
         2, "bus: read at 0x000010 to 0x000011, 2 bytes: 01fe\n"},
        {"frames of an ARM run",
         "usbcomwrite 8 3301800000000000 -> 0\nusbcomwrite 16 "
         "34078101020000000000000000000000 -> 0\n",
         2,
         "       1    frame: image write\n       2  operation Program\n       2    frame: Program, "
         "bank 1, block 513, the last one\n"},
        {"status waits",
         "transferwait 15 -> true\nprogress 5\ntransferwait 15 -> true\ntransferwait 15 -> "
         "false\n",
         4, "status asked 3 times, then the transfer failed\n       1      status asked\n"},
        {"checks", "checkbyte 255 16 2 -> 0\ncheckbyte 255 17 2 -> 0\ncheckbyte 7 18 2 -> 1\n", 2,
         "3 checks, blank check of 0xFF at 0x000010 to 0x000012; 1 ended with 1\n"},
        {"supplies and boxes",
         "setvpp 12500 1\nmessagebox okcancel none \"a\" \"b -> c\" -> cancel\n", 2,
         "VPP 1 12.500 V\n       2    question none \"a\" \"b -> c\": cancel\n"},
    };
    for (const ToldCase& one : cases)
        EXPECT_THAT(told(one.trace, one.depth), HasSubstr(one.told)) << one.what;
}

TEST_F(Traces, DifferByTheFirstLineAndTheStepItLiesIn) {
    const auto trace = [](bool bit) {
        Wires w;
        w.add("window usbsvfprg caption \"Verify\"\nsetvcc 3300\n");
        w.walk("0").walk("100").clock(false, bit).walk("11").add("qrun\npowerdown\n");
        return w.text;
    };
    EXPECT_EQ(difference(trace(true), trace(true)), "");
    const std::string text = difference(trace(true), trace(false));
    EXPECT_THAT(text, HasSubstr("first difference: line 17\n"));
    EXPECT_THAT(text, HasSubstr("  in operation \"Verify\"\n        4  VCC 3.300 V\n"
                                "        5  list of 21 lines runs\n"));
    EXPECT_THAT(text, HasSubstr("-       8    shift DR 2 bits, TDI 0x1\n"));
    EXPECT_THAT(text, HasSubstr("+       8    shift DR 2 bits, TDI 0x0\n"));
    EXPECT_THAT(text, HasSubstr("-          qregwrite 131 0\n"));
    EXPECT_THAT(text, HasSubstr("+          qregwrite 130 0\n"));
    EXPECT_THAT(difference("setvcc 5000\nqrun\n", "setvcc 5000\n"),
                HasSubstr("-       2  an empty list runs\n-          qrun\n"
                          "+          the trace ends here\n"));
}

TEST_F(Traces, RefuseWhatIsNoTrace) {
    const RefusedCase cases[] = {
        {"a word", "setvcc 5000\nsing\n",
         ":2: \"sing\" is no call, expected a line of a trace such as \"setvcc 5000\""},
        {"no number", "setvpp 12 x\n", ":1: \"x\" is no number, expected setvpp NUMBER NUMBER"},
        {"too few", "regwrite 1\n", ":1: \"\" is no number, expected regwrite NUMBER NUMBER"},
        {"too much", "qrun 5\n", ":1: \"5\" is too much, expected qrun"},
        {"no answer", "regread 4\n",
         ":1: the answer is missing, expected regread NUMBER -> ANSWER"},
        {"beyond the range", "setvcc 5000000000\n",
         ":1: \"5000000000\" is no number, expected setvcc NUMBER"},
    };
    for (const RefusedCase& one : cases) {
        const auto path = folder.file("trace.txt", one.text);
        std::ostringstream out;
        EXPECT_EQ(refusalof([&] { showtrace(path, 3, out); }), path.string() + one.message)
            << one.what;
    }
    std::ostringstream out;
    EXPECT_THAT(refusalof([&] { showtrace(folder / "none", 3, out); }, exitstatus::nofile),
                HasSubstr("none: cannot be opened"));
}

}  // namespace
}  // namespace keld2::host
