// What one command on a device does: check everything, run, tell.
#pragma once

#include <string>
#include <vector>

#include "host/commands/deviceoptions.h"

namespace keld2::host {

struct DeviceJob {
    std::vector<const Operation*> steps;  // empty in a sequence: those of the device
    bool sequence = false;
    std::string file;      // to be written by read, else to be read; empty where none is needed
    std::string svf = {};  // the path of an SVF text that is played in place of the device's own
};

// Answers the exit status of keld2. Throws HostError when something cannot be used; then the
// programmer has not been touched.
int rundevicejob(const DeviceJob& job, const DeviceOptions& options);

}  // namespace keld2::host
