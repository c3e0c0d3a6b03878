// The plug-in's editors on a device's main buffer.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "host/catalogue/device.h"
#include "host/forms/formfrontend.h"

namespace keld2::host {

enum class Editor { config, usercode };

// Whether the device has what the editor edits.
bool canedit(const Device& device, Editor editor);

// A main buffer of the device in which nothing has been written yet.
std::vector<std::uint8_t> blankbuffer(const Device& device);

// Opens the editor on a copy of buffer. Answers the edited buffer, nothing when it was cancelled.
// language: offset of the language block.
std::optional<std::vector<std::uint8_t>> editbuffer(const Device& device, Editor editor,
                                                    std::vector<std::uint8_t> buffer,
                                                    std::int32_t language, FormFrontEnd& front);

}  // namespace keld2::host
