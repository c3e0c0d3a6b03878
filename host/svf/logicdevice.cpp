#include "host/svf/logicdevice.h"

#include "host/hosterror.h"

namespace keld2::host {

namespace {

const SvfProcedure* procedureof(const Device& device) {
    const std::int64_t family = device.value("prgmode");
    return family < 0 || family > 255 ? nullptr
                                      : findsvfprocedure(static_cast<std::uint8_t>(family));
}

template <typename Integer>
void take(const Device& device, const char* key, Integer& value) {
    value = static_cast<Integer>(device.sim[key].value_or(std::int64_t{0}));
}

}  // namespace

bool playssvf(const Device& device) { return procedureof(device) != nullptr; }

LogicDevice logicdevice(const Device& device) {
    LogicDevice logic{.name = device.name, .procedure = procedureof(device)};
    if (logic.procedure == nullptr)
        throw HostError(exitstatus::usage,
                        device.name + " is not worked by SVF texts, expected a device that is");
    logic.family = static_cast<std::uint8_t>(device.value("prgmode"));
    logic.fuses = static_cast<std::int32_t>(device.value("tlength"));
    logic.wiring = findjtagfamily(logic.family);
    if (device.sim["kind"].value_or(std::string()) != "logic") return logic;
    take(device, "rows", logic.rows);
    take(device, "width", logic.width);
    take(device, "padding", logic.padding);
    take(device, "instructionbits", logic.instructionbits);
    take(device, "code", logic.code);
    take(device, "programtime", logic.programtime);
    take(device, "erasetime", logic.erasetime);
    take(device, "securetime", logic.securetime);
    return logic;
}

}  // namespace keld2::host
