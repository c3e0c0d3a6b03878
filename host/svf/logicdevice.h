// What the host knows of a logic device that the plug-in works by an SVF text.
#pragma once

#include <cstdint>
#include <string>

#include "families/svffamily.h"
#include "host/catalogue/device.h"
#include "jtag/wiring.h"

namespace keld2::host {

struct LogicDevice {
    std::string name;
    std::uint8_t family = 0;  // prgmode[0]
    std::int32_t fuses = 0;   // tlength[0]
    const SvfProcedure* procedure = nullptr;
    const JtagFamily* wiring = nullptr;
    // The chip, as its simulation has it. No rows: a chip whose instructions the host does not
    // know.
    std::size_t rows = 0;
    std::size_t width = 0;    // cells of a row
    std::size_t padding = 0;  // bits of the data register behind them
    std::size_t instructionbits = 0;
    std::uint32_t code = 0;
    std::int64_t programtime = 0;  // µs
    std::int64_t erasetime = 0;
    std::int64_t securetime = 0;

    std::size_t registerbits() const { return width + padding; }
    std::int32_t totalrows() const { return rowtotal(*procedure, fuses); }
};

// Whether the plug-in works the device by an SVF text.
bool playssvf(const Device& device);
// Throws HostError: 64 when the device is worked in another way.
LogicDevice logicdevice(const Device& device);

}  // namespace keld2::host
