#include <memory>

#include "host/hosterror.h"
#include "host/programmer/programmer.h"
#include "sim/chipspec.h"
#include "sim/programmer.h"

namespace keld2::host {

namespace {

[[noreturn]] void refusedevice(const Device& device, const std::string& what) {
    throw HostError(exitstatus::data, device.path.string() + ": [sim]: " + what);
}

sim::SpecValue specvalue(const Device& device, const std::string& key, const toml::node& node) {
    constexpr auto expected = ", expected an integer, a text or an array of integers";
    if (const auto* number = node.as_integer()) return number->get();
    if (const auto* text = node.as_string()) return text->get();
    const toml::array* array = node.as_array();
    if (array == nullptr || !array->is_homogeneous<std::int64_t>())
        refusedevice(device, key + ": is of another kind" + expected);
    std::vector<std::int64_t> numbers;
    for (const toml::node& item : *array) numbers.push_back(item.as_integer()->get());
    return numbers;
}

sim::ChipSpec specof(const Device& device) {
    sim::ChipSpec spec{.device = device.name, .kind = {}, .values = {}};
    for (const auto& [key, node] : device.sim) {
        const std::string name(key.str());
        if (name == "kind")
            spec.kind = node.value_or(std::string());
        else
            spec.values.emplace(name, specvalue(device, name, node));
    }
    if (spec.kind.empty()) refusedevice(device, "kind: is missing, expected the kind of a chip");
    return spec;
}

sim::Faults faultsof(const ProgrammerChoice& choice) {
    sim::Faults faults;
    try {
        for (const std::string& fault : choice.faults) sim::addfault(faults, fault);
    } catch (const RunFault& fault) {
        throw HostError(exitstatus::usage, std::string("-p: ") + fault.what());
    }
    return faults;
}

std::unique_ptr<sim::Chip> chipof(const Device& device, const sim::Faults& faults) {
    try {
        return sim::makechip(specof(device), faults);
    } catch (const RunFault& fault) {
        refusedevice(device, fault.what());
    }
}

class SimulatedProgrammer final : public SessionProgrammer {
  public:
    SimulatedProgrammer(const ProgrammerChoice& choice, const Device& device, Platform& machine,
                        const Socketing& socketing)
        : machine_(machine) {
        const sim::Faults faults = faultsof(choice);
        sim::SimSetting setting{
            .chip = chipof(device, faults), .faults = faults, .image = {}, .wake = [&machine] {
                machine.wake();
            }};
        if (socketing) setting.chip = socketing(std::move(setting.chip));
        if (choice.image) setting.image = sim::ImageFile{*choice.image, device.name};
        try {
            sim_ = std::make_unique<sim::SimProgrammer>(std::move(setting));
        } catch (const RunFault& fault) {
            throw HostError(exitstatus::data, fault.what());
        }
    }

    Platform& platform() override { return machine_; }
    std::unique_ptr<DevCore> devcore(SharedVariables& s) override { return sim_->devcore(s); }
    std::unique_ptr<UsbTransport> transport(SharedVariables&) override { return sim_->transport(); }
    void finish() const override {
        try {
            sim_->save();
        } catch (const RunFault& fault) {
            throw HostError(exitstatus::nofile, fault.what());
        }
    }

  private:
    Platform& machine_;
    std::unique_ptr<sim::SimProgrammer> sim_;
};

}  // namespace

ProgrammerFactory simulated(const ProgrammerChoice& choice, const Device& device,
                            Socketing socketing) {
    chipof(device, faultsof(choice));  // what is wrong is found before anything is begun
    return [choice, device, socketing = std::move(socketing)](const ProgrammerSetting& setting) {
        return std::make_unique<SimulatedProgrammer>(choice, device, setting.machine, socketing);
    };
}

}  // namespace keld2::host
