// The text of a simulated algorithm image.
#include "sim/armalgorithm.h"

#include <gtest/gtest.h>

#include <string>

namespace keld2::sim {
namespace {

const std::string head = "keld2 simulated algorithm 1\n";

ArmAlgorithm parsed(const std::string& text) {
    return parsealgorithm({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

TEST(ArmAlgorithm, WrittenTextReadsBack) {
    ArmAlgorithm a{.family = ArmFamily::b,
                   .words = 1048576,
                   .wordsize = 1,
                   .ram = 196608,
                   .bank = 1,
                   .margin = 5,
                   .configuration = 2};
    a.operations[0] = {ArmPhase::erase, ArmPhase::blank, ArmPhase::program, ArmPhase::verify};
    a.operations[9] = {ArmPhase::secure};
    a.operations[17] = {};
    a.time[static_cast<std::size_t>(ArmPhase::erase)] = 400;
    const std::string text = algorithmtext(a);
    EXPECT_EQ(text, head +
                        "family B\nwords 1048576 1\nram 196608\nbank 1\nmargin 5\n"
                        "configuration 2\noperation auto erase blank program verify\n"
                        "operation config secure\noperation 17\ntime erase 400\n");
    EXPECT_EQ(algorithmtext(parsed(text)), text);
}

TEST(ArmAlgorithm, CommentsAndBlankLinesAreSkipped) {
    const ArmAlgorithm a = parsed(head + "\n# made by hand\nwords 64 2 # words\nfamily A\nram 32");
    EXPECT_EQ(a.bytes(), 128);
    EXPECT_EQ(a.blockwords(), 16);
}

TEST(ArmAlgorithm, WrongTextsSayLineAndExpectation) {
    const std::string good = "family A\nwords 64 1\nram 64\n";
    struct Row {
        std::string text;
        const char* message;
    };
    const Row rows[]{
        {"", "line 1: expected \"keld2 simulated algorithm 1\""},
        {"something else\n", "line 1: expected \"keld2 simulated algorithm 1\""},
        {head + "family C\n", "line 2: \"C\", expected A or B"},
        {head + "family\n", "line 2: the line ends, expected A or B"},
        {head + "\nwords 0 1\n", "line 3: \"0\", expected a number from 1 to 268435456"},
        {head + "words 64 3\n", "line 2: \"3\", expected a number from 1 to 2"},
        {head + "ram 64x\n", "line 2: \"64x\", expected a number from 2 to 268435456"},
        {head + "ram 64 1\n", "line 2: \"1\", expected the end of the line"},
        {head + "operation fly erase\n",
         "line 2: \"fly\", expected the name of an operation, or its number from 0 to 254"},
        {head + "operation auto rinse\n",
         "line 2: \"rinse\", expected a phase: erase, blank, program, verify, config, secure, "
         "read"},
        {head + "speed 3\n",
         "line 2: \"speed\", expected family, words, ram, bank, margin, configuration, operation "
         "or time"},
        {head + "family A\nram 64\n", "end of the text: expected a line \"words\""},
    };
    for (const Row& row : rows) {
        try {
            parsed(row.text);
            ADD_FAILURE() << row.text;
        } catch (const AlgorithmError& error) {
            EXPECT_STREQ(error.what(), row.message);
        }
    }
    EXPECT_NO_THROW(parsed(head + good));
}

}  // namespace
}  // namespace keld2::sim
