// How the expectations below tests/data keep what a run leaves.
#pragma once

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/files/files.h"

namespace keld2::test {

inline std::vector<std::string> linesof(const std::filesystem::path& path) {
    std::ifstream in(path);
    std::vector<std::string> list;
    for (std::string line; std::getline(in, line);) list.push_back(line);
    return list;
}

// The elapsed seconds of each line ">> 0.42Sec" replaced by <TIME>.
inline std::string withouttime(std::string log) {
    constexpr std::string_view digits = "0123456789.";
    for (std::size_t at = 0; (at = log.find(">> ", at)) != log.npos; at += 3) {
        const std::size_t end = log.find_first_not_of(digits, at + 3);
        if (end != log.npos && end > at + 3 && log.compare(end, 4, "Sec\n") == 0)
            log.replace(at + 3, end - at - 3, "<TIME>");
    }
    return log;
}

// Bytes in hexadecimal as a list: 16 or more equal ones as "COUNT*BYTE", others as they stand.
inline nlohmann::ordered_json runsof(const std::string& hex) {
    constexpr std::size_t longrun = 2 * 16;
    auto list = nlohmann::ordered_json::array();
    std::string mixed;
    const auto endmixed = [&] {
        if (!mixed.empty()) list.push_back(std::exchange(mixed, {}));
    };
    for (std::size_t at = 0, end = 0; at < hex.size(); at = end) {
        const std::string byte = hex.substr(at, 2);
        while (end < hex.size() && hex.compare(end, 2, byte) == 0) end += 2;
        if (end - at < longrun) {
            mixed += hex.substr(at, end - at);
            continue;
        }
        endmixed();
        list.push_back(std::to_string((end - at) / 2) + "*" + byte);
    }
    endmixed();
    return list;
}

// A dump whose log has no times.
inline nlohmann::ordered_json dumpof(const std::filesystem::path& path) {
    auto dump = nlohmann::ordered_json::parse(host::readtext(path));
    dump["MainRtstr"][0] = withouttime(dump["MainRtstr"][0]);
    return dump;
}

}  // namespace keld2::test
