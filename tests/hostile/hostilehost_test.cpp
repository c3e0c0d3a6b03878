#include "fuzz/hostilehost.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <vector>

namespace keld2::fuzz {
namespace {

// KELD2_SESSIONS and KELD2_FIRST_SESSION choose more of them, or one to look into.
int setting(const char* name, int otherwise) {
    const char* text = std::getenv(name);
    return text != nullptr ? std::atoi(text) : otherwise;
}

TEST(HostileHost, HarmsNothing) {
    const int first = setting("KELD2_FIRST_SESSION", 1);
    const int last = first + setting("KELD2_SESSIONS", 1500) - 1;
    for (int seed = first; seed <= last; ++seed) {
        std::mt19937 random(static_cast<std::mt19937::result_type>(seed));
        std::vector<std::uint8_t> bytes(200 + random() % 4000);
        for (std::uint8_t& b : bytes) b = static_cast<std::uint8_t>(random());
        EXPECT_EQ(hostilesession(bytes), "") << "session " << seed;
    }
}

}  // namespace
}  // namespace keld2::fuzz
