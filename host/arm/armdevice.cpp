#include "host/arm/armdevice.h"

#include <algorithm>

#include "host/hosterror.h"
#include "host/os/machine.h"
#include "plugin/dispatch.h"

namespace keld2::host {

namespace {

using sim::ArmPhase;

struct PhaseRow {
    std::string_view operation;
    std::vector<ArmPhase> phases;
};

const std::vector<PhaseRow>& phaserows() {
    static const std::vector<PhaseRow> rows{
        {"read", {ArmPhase::read}},
        {"compare", {ArmPhase::read}},
        {"verify", {ArmPhase::verify}},
        {"blank", {ArmPhase::blank}},
        {"program", {ArmPhase::program, ArmPhase::verify}},
        {"erase", {ArmPhase::erase}},
        {"config", {ArmPhase::config}},
        {"secure", {ArmPhase::secure}},
    };
    return rows;
}

std::vector<ArmPhase> phasesof(const Operation& operation) {
    for (const PhaseRow& row : phaserows())
        if (row.operation == operation.name) return row.phases;
    return {};
}

// Each phase once, at its last place: a verify that stands behind everything stays there.
std::vector<ArmPhase> phasesof(const std::vector<const Operation*>& steps) {
    std::vector<ArmPhase> phases;
    for (const Operation* step : steps)
        for (const ArmPhase phase : phasesof(*step)) {
            std::erase(phases, phase);
            phases.push_back(phase);
        }
    return phases;
}

constexpr std::int32_t marginstep = 5;   // percent
constexpr std::int32_t erasetime = 400;  // microseconds a KiB
constexpr std::int32_t programtime = 2000;
constexpr std::int32_t readtime = 400;  // of everything that reads the chip

Runner runnerof(const Device& device) {
    return runnerfor(static_cast<std::int16_t>(device.value("modeltype")),
                     static_cast<std::uint8_t>(device.value("selmode")),
                     static_cast<std::uint8_t>(device.value("prgmode")));
}

void settime(sim::ArmAlgorithm& algorithm, ArmPhase phase, std::int32_t time) {
    algorithm.time[static_cast<std::size_t>(phase)] = time;
}

}  // namespace

bool isarm(const Device& device) { return armprofile(runnerof(device)) != nullptr; }

sim::ArmAlgorithm algorithmof(const Device& device,
                              const std::vector<const Operation*>& autosteps) {
    const auto value = [&](std::string_view name) {
        return static_cast<std::int32_t>(device.value(name));
    };
    sim::ArmAlgorithm algorithm{
        .family = runnerof(device) == Runner::armfamilya ? sim::ArmFamily::a : sim::ArmFamily::b,
        .words = value("tlength"),
        .wordsize = value("wordmode"),
        .ram = value("ramlg"),
        .bank = static_cast<std::uint8_t>(value("rambknum")),
        .margin = std::max(0, value("wlverifyvcc")) * marginstep};
    algorithm.operations[0] = phasesof(autosteps);
    for (const Operation* operation : device.operations)
        algorithm.operations[static_cast<std::uint8_t>(operation->number)] = phasesof(*operation);
    settime(algorithm, ArmPhase::erase, erasetime);
    settime(algorithm, ArmPhase::program, programtime);
    for (const ArmPhase phase : {ArmPhase::blank, ArmPhase::verify, ArmPhase::read})
        settime(algorithm, phase, readtime);
    return algorithm;
}

RunFile algorithmfile(const Device& device, const std::vector<const Operation*>& autosteps,
                      SharedVariables& s) {
    const auto names = algorithmfiles(s);
    if (names.empty())
        throw HostError(exitstatus::data,
                        device.path.string() + ": " + device.name +
                            " works without an algorithm image, expected an ARM device");
    const std::string text = sim::algorithmtext(algorithmof(device, autosteps));
    return {.parts = names.back(), .bytes = {text.begin(), text.end()}};
}

RunFile algorithmfile(const Device& device, const std::vector<const Operation*>& autosteps) {
    const auto machine = os::makemachine();
    SharedVariables variables(machine->memory(), machine->strings());
    variables.maprows(0, {});
    for (const SharedSetting& setting : device.shared) apply(setting, variables);
    return algorithmfile(device, autosteps, variables);
}

bool takesfile(SharedVariables& s) {
    constexpr std::uint8_t infile = 128;
    return !algorithmfiles(s).empty() && s.buftype[0] == infile;
}

RunFile datafile(SharedVariables& s) {
    const std::int64_t length =
        std::clamp<std::int64_t>(std::int64_t{s.tlength[0]} * s.wordmode[0], 0, s.ibuffer.size());
    return {.parts = {u"pldtmp.svf"},
            .bytes = {s.ibuffer.data(), s.ibuffer.data() + length},
            .overriding = true};
}

}  // namespace keld2::host
