// Which module or run window serves a job.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "arm/profile.h"
#include "run/runwindow.h"

namespace keld2 {

enum class Runner {
    none,        // the call returns at once
    armfamilyb,  // arm_prg_32f
    armfamilya,  // arm_prg
    mpuwindow,   // usbkel2mpuprg
    pldwindow,   // usbkeld2pldprg
    svfwindow    // usbsvfprg
};

// By modeltype[0], selmode[0] and the family byte prgmode[0]; the first rule that matches wins.
Runner runnerfor(std::int16_t modeltype, std::uint8_t selmode, std::uint8_t prgmode);

// The profile of a runner that is a family of ARM devices, else nullptr.
const ArmProfile* armprofile(Runner runner);

// The files, below the run's folder, in which the algorithm image of the chosen ARM device may lie,
// the preferred one first; none for other devices.
std::vector<std::vector<std::u16string>> algorithmfiles(SharedVariables& s);

// A fresh window of runner, which is one of the three windows; a RunFault for any other.
std::unique_ptr<RunWindow> makewindow(Runner runner, const RunContext& run);

}  // namespace keld2
