// The texts that the plug-in plays for an operation on a logic device.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "host/run/devicerun.h"
#include "host/svf/logicdevice.h"
#include "host/svf/svfstatements.h"

namespace keld2::host {

enum class SvfTask { id, blank, erase, program, verify, secure };

std::optional<SvfTask> tasknamed(std::string_view name);
std::string tasknames();  // "id, blank, ..."
bool needsdata(SvfTask task);

// The cells of a fuse map; none without parts.
std::vector<std::uint8_t> cellsfrom(const std::vector<BufferPart>& parts);

// The text of a task: the device code is checked, the work done, and the rows are read back. cells:
// the characters '0' and '1' of the fuse map, row by row; those that it lacks count as '1'. Throws
// HostError: 64 when the host does not know the device's instructions, or when the plug-in stores
// no row of this device that is written in the layout.
std::string makesvf(const LogicDevice& device, SvfTask task, std::span<const std::uint8_t> cells,
                    SvfLayout layout = SvfLayout::a2);

// The cell of the fuse map whose level bit bit of stored row row has in such a text; nullopt: none.
std::optional<std::int64_t> cellof(const LogicDevice& device, std::int32_t row, std::int32_t bit);

}  // namespace keld2::host
