// Programmers whose runs are written as a waveform.
#pragma once

#include <filesystem>

#include "host/programmer/programmer.h"
#include "host/wave/wave.h"

namespace keld2::host {

// The simulated programmer; what the chip answers is in the waveform too. prgmode: element 0 of the
// variable. Throws HostError as simulated, and 66 when the file cannot be written.
ProgrammerFactory wavedsimulated(const ProgrammerChoice& choice, const Device& device,
                                 const std::filesystem::path& vcd, std::uint8_t prgmode);

// Any other programmer: its calls are carried out on an empty simulated socket beside it, whose
// time is that of the waits and cycles. What the chip answers is not known.
ProgrammerFactory waved(ProgrammerFactory programmer, const std::filesystem::path& vcd,
                        std::uint8_t prgmode);

}  // namespace keld2::host
