// The texts that users hand to the program, each as a target for a fuzzer.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace keld2::fuzz {

struct Target {
    std::string_view name;
    // Uses the text and answers what must never be; empty: nothing. Throws what such a text is
    // refused with.
    std::string (*use)(std::string_view text);
    std::string_view seeds;  // folder of texts to begin with, from the source tree's root
};

std::span<const Target> targets();

// use(), with refusals taken as no fault. Any other exception goes through.
std::string wrongwith(const Target& target, std::string_view text);

}  // namespace keld2::fuzz
