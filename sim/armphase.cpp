#include "sim/armphase.h"

#include <array>

namespace keld2::sim {

namespace {

struct PhaseRow {
    std::string_view name;
    std::uint8_t byte;
};

// By ArmPhase.
constexpr std::array<PhaseRow, armphases> phases{{{"erase", 0x1E},
                                                  {"blank", 0x28},
                                                  {"program", 0x32},
                                                  {"verify", 0x3C},
                                                  {"config", 0x46},
                                                  {"secure", 0x50},
                                                  {"read", 0}}};

const PhaseRow& rowof(ArmPhase phase) { return phases[static_cast<std::size_t>(phase)]; }

}  // namespace

std::string_view phasename(ArmPhase phase) { return rowof(phase).name; }

std::optional<ArmPhase> phasenamed(std::string_view name) {
    for (std::size_t i = 0; i < phases.size(); ++i)
        if (phases[i].name == name) return static_cast<ArmPhase>(i);
    return {};
}

std::string allphases() {
    std::string list;
    for (const PhaseRow& row : phases) list += (list.empty() ? "" : ", ") + std::string(row.name);
    return list;
}

std::uint8_t phasebyte(ArmPhase phase) { return rowof(phase).byte; }

}  // namespace keld2::sim
