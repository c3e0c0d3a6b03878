// A host that means harm: it fills the shared variables, the main buffer, the files and every
// answer of the programmer with structured nonsense and makes any of the calls.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace keld2::fuzz {

// One session from a fuzzer's bytes. Answers what the plug-in did that it must never do: power
// left on after a run, a result cell that is none, a run without an end. Empty: nothing. Accesses
// outside a block are for the sanitizers: each block is an allocation of its own, of its exact
// size.
std::string hostilesession(std::span<const std::uint8_t> bytes);

}  // namespace keld2::fuzz
