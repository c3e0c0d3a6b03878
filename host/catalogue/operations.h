// What can be done with a device, by the names that users type.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "plugin/texts/texts.h"

namespace keld2::host {

struct Operation {
    std::string_view name;  // on the command line and in device files
    std::int16_t number;    // as prgresult[1] and autoprg[] take it
    TextId title;           // of its name in the plug-in's string table
    bool needsdata;         // works with the content of a file
    std::string_view does;  // one line of help
};

const std::vector<Operation>& alloperations();
// nullptr when there is none of that name.
const Operation* operationnamed(std::string_view name);
// "read, verify, ..."
std::string operationnames();

}  // namespace keld2::host
