// Whatever a trace holds, each of its lines is told once, and none is lost in a group.
#include <gtest/gtest.h>

#include <map>
#include <random>

#include "host/tell/narrator.h"

namespace keld2::host {
namespace {

class Leaves final : public Narration {
  public:
    void operation(const std::string&, std::int64_t) override {}
    void step(Step step) override { count(step); }
    std::map<std::int64_t, int> times;  // that a line is told

  private:
    void count(const Step& step) {
        if (step.parts.empty()) ++times[step.first];
        for (const Step& part : step.parts) {
            EXPECT_LE(step.first, part.first) << step.words;
            EXPECT_GE(step.last, part.last) << step.words;
            count(part);
        }
    }
};

class RandomTrace {
  public:
    explicit RandomTrace(unsigned seed) : random_(seed) {}

    std::vector<std::string> lines(int count) {
        std::vector<std::string> list;
        list.push_back("window " + pick({"usbkel2mpuprg", "usbsvfprg"}) + " load");
        list.push_back("drivercommit " + pick({"000810a202010008080000", "04084000200800080800",
                                               "0608040840010008080a00", "00"}));
        while (count-- > 0) list.push_back(line());
        return list;
    }

  private:
    std::string pick(std::initializer_list<std::string> choices) {
        return choices.begin()[random_() % choices.size()];
    }
    std::string line() {
        const std::string q = pick({"", "q", "q", "q"});
        const std::string reg = pick({"0", "0", "4", "4", "5", "6", "6", "144", "143", "146"});
        const std::string value =
            pick({"0", "10", "42", "74", "255", "130", "146", "134", "150", "-1", "2147483647"});
        switch (random_() % 12) {
            case 0:
                return "regread " + reg + " -> 255";
            case 1:
                return "qregread " + reg;
            case 2:
                return q + "waitshort " + value;
            case 3:
                return q + "buswrite " + pick({"16", "17", "18", "2147483647", "-2147483648"}) +
                       " " + pick({"64", "32", "192", "0", "7"}) + " " +
                       pick({"252", "253", "249", "255"});
            case 4:
                return pick({"qrun", "powerdown", "progress 3", "setvcc -1",
                             "usbcomwrite 2 341d -> 0", "usbcomwrite 1 34 -> 0",
                             "usbcomwrite 15 0d0a00000608040840010008080a00 -> 0"});
            case 5:
                return pick({"checkbyte 255 7 1 -> 0", "transferwait 15 -> true",
                             "checkword 1 2 3 9 255 -> 1", "qbusconfig 0 0 1"});
            default:
                return q + "regwrite " + value + " " + reg;
        }
    }

    std::mt19937 random_;
};

TEST(EveryLine, IsToldOnce) {
    for (unsigned seed = 0; seed < 400; ++seed) {
        Leaves leaves;
        Narrator narrator(leaves, 100);
        const auto lines = RandomTrace(seed).lines(80);
        std::int64_t number = 0;
        for (const std::string& line : lines)
            narrator.take(parsetraceline(line, ++number, "random"));
        narrator.finish();
        for (number = 1; number <= std::ssize(lines); ++number) {
            const std::string& line = lines[static_cast<std::size_t>(number - 1)];
            const int least = line == "qrun" ? 0 : 1;  // it may be the end of its list
            ASSERT_GE(leaves.times[number], least) << "seed " << seed << ", " << number << line;
            const bool code = line.find(" 14") != line.npos;  // may reach from a walk into a shift
            ASSERT_LE(leaves.times[number], code ? 8 : 1)
                << "seed " << seed << ", " << number << line;
        }
    }
}

}  // namespace
}  // namespace keld2::host
