#include "plugin/dispatch.h"

#include <array>

#include "arm/image.h"
#include "families/usbkeld2pldprg.h"
#include "families/usbsvfprg.h"
#include "mpu/usbkel2mpuprg.h"
#include "platform/fault.h"

namespace keld2 {

namespace {

// A family of ARM devices: which models and which selection bits mark it.
struct ArmRule {
    std::int16_t firstmodel;
    std::int16_t lastmodel;
    std::uint8_t mask;  // of selmode[0]
    Runner runner;
};

constexpr std::uint8_t armbit = 0x40;
constexpr std::array armrules{
    ArmRule{.firstmodel = 74, .lastmodel = 32767, .mask = 0x42, .runner = Runner::armfamilyb},
    ArmRule{.firstmodel = 40, .lastmodel = 73, .mask = 0x41, .runner = Runner::armfamilya},
};

struct ModeRange {
    std::uint8_t first;
    std::uint8_t last;  // of prgmode[0]
    Runner runner;
};

constexpr std::array moderanges{
    ModeRange{.first = 21, .last = 40, .runner = Runner::mpuwindow},
    ModeRange{.first = 41, .last = 60, .runner = Runner::pldwindow},
    ModeRange{.first = 80, .last = 255, .runner = Runner::svfwindow},
};

}  // namespace

Runner runnerfor(std::int16_t modeltype, std::uint8_t selmode, std::uint8_t prgmode) {
    for (const ArmRule& rule : armrules)
        if (modeltype >= rule.firstmodel && modeltype <= rule.lastmodel &&
            (selmode & rule.mask) == armbit)
            return rule.runner;
    for (const ModeRange& range : moderanges)
        if (prgmode >= range.first && prgmode <= range.last) return range.runner;
    return Runner::none;
}

const ArmProfile* armprofile(Runner runner) {
    switch (runner) {
        case Runner::armfamilya:
            return &arm_prg;
        case Runner::armfamilyb:
            return &arm_prg_32f;
        default:
            return nullptr;
    }
}

std::vector<std::vector<std::u16string>> algorithmfiles(SharedVariables& s) {
    const ArmProfile* profile = armprofile(runnerfor(s.modeltype[0], s.selmode[0], s.prgmode[0]));
    if (profile == nullptr) return {};
    const ArmImageNames names =
        imagenames(s, startuprow(*profile, s.modeltype[0], isset(s.usbable[3])));
    return {names.first, names.second};
}

std::unique_ptr<RunWindow> makewindow(Runner runner, const RunContext& run) {
    switch (runner) {
        case Runner::mpuwindow:
            return makempuwindow(run);
        case Runner::pldwindow:
            return std::make_unique<usbkeld2pldprg>(run);
        case Runner::svfwindow:
            return std::make_unique<usbsvfprg>(run);
        default:
            throw RunFault("this runner has no window");
    }
}

}  // namespace keld2
