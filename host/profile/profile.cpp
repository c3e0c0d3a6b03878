#include "host/profile/profile.h"

#include <array>
#include <cstdio>
#include <nlohmann/json.hpp>

namespace keld2::host {

namespace {

using std::chrono::nanoseconds;

double milliseconds(nanoseconds time) { return static_cast<double>(time.count()) / 1e6; }

struct Row {
    const char* name;
    const Profile::Share* share;
};

std::array<Row, 4> rowsof(const Profile& profile) {
    return {{{"message loop", &profile.loop},
             {"transfers", &profile.transfers},
             {"waits", &profile.waits},
             {"pulses", &profile.pulses}}};
}

std::string line(const char* name, const std::string& calls, const std::string& programmer,
                 nanoseconds real) {
    std::array<char, 120> text{};
    std::snprintf(text.data(), text.size(), "%-14s %12s %14s %14.3f\n", name, calls.c_str(),
                  programmer.c_str(), milliseconds(real));
    return text.data();
}

std::string shown(nanoseconds time) {
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%.3f", milliseconds(time));
    return text.data();
}

}  // namespace

std::string profiletable(const Profile& profile) {
    std::array<char, 120> head{};
    std::snprintf(head.data(), head.size(), "%-14s %12s %14s %14s\n", "", "calls", "programmer ms",
                  "real ms");
    std::string text = head.data();
    nanoseconds programmer{0};
    text += line("host", "", "", profile.host());
    for (const auto& [name, share] : rowsof(profile)) {
        text += line(name, std::to_string(share->calls), shown(share->programmer), share->real);
        programmer += share->programmer;
    }
    return text + line("total", "", shown(programmer), profile.total);
}

std::string profilejson(const Profile& profile) {
    nlohmann::ordered_json json;
    json["host"] = {{"real_ms", milliseconds(profile.host())}};
    for (const auto& [name, share] : rowsof(profile))
        json[name == std::string("message loop") ? "message_loop" : name] = {
            {"calls", share->calls},
            {"programmer_ms", milliseconds(share->programmer)},
            {"real_ms", milliseconds(share->real)}};
    json["total"] = {{"real_ms", milliseconds(profile.total)}};
    return nlohmann::ordered_json{{"profile", json}}.dump();
}

}  // namespace keld2::host
