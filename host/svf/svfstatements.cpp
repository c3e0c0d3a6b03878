#include "host/svf/svfstatements.h"

#include <array>
#include <cstdio>

namespace keld2::host {

namespace {

constexpr std::array<std::string_view, 7> names{"A2", "B1", "B2", "C1", "C2", "C3", "C4"};

char capital(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

// A field over two lines; one of a single digit goes to the second.
std::string overlines(const std::string& field) {
    return field.substr(0, field.size() / 2) + "\n\t" + field.substr(field.size() / 2);
}

}  // namespace

std::optional<SvfLayout> layoutnamed(std::string_view name) {
    for (std::size_t i = 0; i < names.size(); ++i)
        if (name.size() == 2 && capital(name[0]) == names[i][0] && name[1] == names[i][1])
            return static_cast<SvfLayout>(i);
    return std::nullopt;
}

std::string_view nameof(SvfLayout layout) { return names[static_cast<std::size_t>(layout)]; }

std::string layoutnames() {
    std::string list;
    for (const std::string_view name : names)
        list += (list.empty() ? "" : ", ") + std::string(name);
    return list;
}

std::string hexfield(const SvfBits& bits) {
    std::string digits((bits.size() + 3) / 4, '0');
    for (std::size_t i = 0; i < digits.size(); ++i) {
        unsigned digit = 0;
        for (std::size_t k = 0; k < 4 && 4 * i + k < bits.size(); ++k)
            if (bits[4 * i + k]) digit |= 1U << k;
        digits[digits.size() - 1 - i] = "0123456789ABCDEF"[digit];
    }
    return digits;
}

std::string svfsir(std::size_t bits, std::uint32_t value) {
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "SIR %zu TDI (%02X);\n", bits, value);
    return text.data();
}

std::string svfdrive(const SvfBits& tdi) {
    return "SDR " + std::to_string(tdi.size()) + " TDI (" + hexfield(tdi) + ");\n";
}

std::string svfread(SvfLayout layout, const SvfBits& expected, const SvfBits& mask) {
    const std::string tdo = hexfield(expected);
    const std::string bits = hexfield(mask);
    const std::string zeros(tdo.size(), '0');
    const std::string head = "SDR " + std::to_string(expected.size()) + " TDI (";
    switch (layout) {
        case SvfLayout::a2:
            return head + zeros + ") TDO (" + tdo + ") MASK (" + bits + ");\n";
        case SvfLayout::b1:
            return head + zeros + ")\n\tTDO (" + tdo + ");\n";
        case SvfLayout::b2:
            return head + zeros + ")\n\tTDO (" + tdo + ")\n\tMASK (" + bits + ");\n";
        case SvfLayout::c1:
            return head + overlines(zeros) + ")\n\tTDO (" + overlines(tdo) + ")\n\tMASK (" +
                   overlines(bits) + ");\n";
        case SvfLayout::c2:
            // Both fields are read from what follows their brackets on the first line; TDO takes
            // "MASK (" with it, so MASK is as much longer.
            return head + zeros + ") TDO (MASK (\n\t" + tdo + ")\n\t000000" + bits + ");\n";
        case SvfLayout::c3:
            return head + zeros + ") TDO (" + tdo + "\n";
        case SvfLayout::c4:
            return head + zeros + ") SMASK (" + zeros + ") TDO (" + overlines(tdo) + ") MASK (" +
                   bits + ");\n";
    }
    return {};
}

std::string svfpulse(const JtagFamily& family, std::int64_t microseconds) {
    std::array<char, 80> text{};
    if (family.runtest == RuntestKind::runtest) {
        const std::int64_t milliseconds = (microseconds + 999) / 1000;
        std::snprintf(text.data(), text.size(), "RUNTEST IDLE 1 TCK %.2E",
                      0.001 * double(milliseconds));
        // The seconds fill eleven characters, with a blank on both sides.
        std::string line = text.data();
        return line.insert(line.size() - 2, "0") + " SEC;\n";
    }
    // A clock stands for a microsecond in the forms that pause.
    const bool plain = family.runtest == RuntestKind::runtest3;
    const std::int64_t clocks = (microseconds + 99) / 100 * 100;
    std::snprintf(text.data(), text.size(), "RUNTEST %s %lld TCK;\n", plain ? "DRPAUSE" : "IDLE",
                  static_cast<long long>(clocks));
    return text.data();
}

}  // namespace keld2::host
