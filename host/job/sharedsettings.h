// Values for shared variables, as job and device files give them in [shared].
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "shared/sharedvariables.h"

namespace keld2::host {

class TomlFile;

// A value that fits its shared variable: i64 for byte, i16, i32 and flag (0 or -1), double for
// f64, text for string.
using SharedValue = std::variant<std::int64_t, double, std::u16string>;

// Values of one shared variable, element 0 first.
struct SharedSetting {
    std::size_t row = 0;  // index into blocktable
    std::vector<SharedValue> values;
};

// The [shared] table of a file. Throws HostError (65) for a name that is no shared variable, a
// value of the wrong kind or out of its element's range, and more elements than the variable has.
std::vector<SharedSetting> sharedsettings(const TomlFile& source);

// The integer that the settings give to element 0 of a variable; otherwise when they give none.
std::int64_t settingof(const std::vector<SharedSetting>& settings, std::string_view name,
                       std::int64_t otherwise = 0);

// Writes the values; those beyond the variable's elements are left out.
void apply(const SharedSetting& setting, SharedVariables& s);

}  // namespace keld2::host
