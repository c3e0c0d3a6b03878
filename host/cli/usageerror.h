// What is wrong with a command line, in words.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace keld2::host {

// One line without the program's name: the word or option that cannot be understood and the names
// that come nearest to it, or what the library says.
std::string usageerror(const CLI::App& program, const CLI::ParseError& error);

}  // namespace keld2::host
