// The fuzzers' seeds and a fixed number of texts that are made from them.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>
#include <vector>

#include "fuzz/texts.h"
#include "host/files/files.h"

namespace keld2::fuzz {
namespace {

constexpr int spoiledtexts = 40;  // of each seed

std::vector<std::string> seedsof(const Target& target) {
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::directory_iterator(
             std::filesystem::path(KELD2_TEST_SOURCE) / target.seeds))
        paths.push_back(entry.path());
    std::ranges::sort(paths);
    std::vector<std::string> seeds;
    for (const auto& path : paths) seeds.push_back(host::readtext(path));
    return seeds;
}

// Bytes are changed, taken out, doubled.
std::string spoiled(std::string text, std::mt19937& random) {
    for (auto n = 1 + random() % 4; n > 0 && !text.empty(); --n) {
        const std::size_t at = random() % text.size();
        const std::size_t length = 1 + random() % 30;
        switch (random() % 3) {
            case 0:
                text[at] = static_cast<char>(random());
                break;
            case 1:
                text.erase(at, length);
                break;
            default:
                text.insert(at, text.substr(random() % text.size(), length));
        }
    }
    return text;
}

// What is wrong with a text; a refusal is, too, unless it is allowed.
std::string wrong(const Target& target, const std::string& text, bool mayberefused) try {
    return mayberefused ? wrongwith(target, text) : target.use(text);
} catch (const std::exception& error) {
    return error.what();
}

TEST(HostileTexts, AreUsedOrRefused) {
    std::mt19937 random(1);
    for (const Target& target : targets()) {
        const std::vector<std::string> seeds = seedsof(target);
        ASSERT_FALSE(seeds.empty()) << target.name;
        for (const std::string& seed : seeds) {
            EXPECT_EQ(wrong(target, seed, false), "") << target.name << ":\n" << seed;
            for (int i = 0; i < spoiledtexts; ++i) {
                const std::string text = spoiled(seed, random);
                EXPECT_EQ(wrong(target, text, true), "") << target.name << ":\n" << text;
            }
        }
    }
}

}  // namespace
}  // namespace keld2::fuzz
