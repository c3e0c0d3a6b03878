// Cases for the chips in the simulated programmer, as text files below tests/data/sim.
//
// A line that is not indented begins a block, and the indented lines behind it are its own:
//   chip KIND          what sits in the socket of all cases: a key and its value, or values, a line
//   to NAME            a routine of steps; $1 is its first argument, $2* all from the second one on
//   case TITLE         steps for a fresh chip; "fault TEXT" makes it (or its programmer) a bad one,
//                      "chip KEY VALUE" another one
//   refused MESSAGE    what a chip is refused with that has these values in place of the chip's own
// A step is a word with its arguments, and behind -> what it has to answer (see busplayer_test.cpp), or
// the name of a routine with its arguments, or "each ROUTINE ARGUMENT..." to call it for each.
// 3*7 stands for 7 7 7, 1..4 for 1 2 3 4. Behind # stands a comment.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "sim/chipspec.h"

namespace keld2::test {

using Words = std::vector<std::string>;

struct BusLine {
    int number = 0;
    Words words;
};

struct BusBlock {
    std::string title;
    int number = 0;
    std::vector<BusLine> lines;
};

struct BusScript {
    std::string name;
    sim::ChipSpec chip;
    std::map<std::string, BusBlock> routines;
    std::vector<BusBlock> cases;
    std::vector<BusBlock> refusals;
};

// Throws std::runtime_error for a line that begins no block.
BusScript readscript(const std::filesystem::path& file);
// The words with the arguments of the routine that they stand in.
Words expanded(const Words& words, const Words& arguments);
// Sets a value of the chip, from a key and its values; without values takes it away.
void setvalue(sim::ChipSpec& chip, const Words& words);

}  // namespace keld2::test
