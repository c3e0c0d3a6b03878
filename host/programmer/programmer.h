// The programmer that a run works on, as -p names it.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/catalogue/device.h"
#include "host/os/machine.h"
#include "host/programmer/sessionprogrammer.h"
#include "sim/chip.h"

namespace keld2::host {

// sim[:image=FILE][,fault=FAULT]... or hardware
struct ProgrammerChoice {
    bool simulated = true;
    std::optional<std::filesystem::path> image;  // keeps the state of the simulated chip
    std::vector<std::string> faults;
};

// Throws HostError (64) that says what is wrong and what was expected.
ProgrammerChoice parseprogrammer(const std::string& text);
// One line that tells the user what the run works on.
std::string described(const ProgrammerChoice& choice);

// How the blocks of a run on it are known.
os::Blocks blocksof(const ProgrammerChoice& choice);

// The programmer with the device's chip in its socket. Throws HostError as hardware() and
// simulated() do.
ProgrammerFactory chosen(const ProgrammerChoice& choice, const Device& device);

// Puts something between the socket and the chip that is in it.
using Socketing = std::function<std::unique_ptr<sim::Chip>(std::unique_ptr<sim::Chip>)>;

// The simulated programmer with the device's chip in its socket. Throws HostError: 65 when the
// device's [sim] table or the chip's image cannot be used, 64 for a fault that is not known.
ProgrammerFactory simulated(const ProgrammerChoice& choice, const Device& device,
                            Socketing socketing = {});

}  // namespace keld2::host
