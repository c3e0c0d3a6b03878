// The calls that a job makes on ClsKELD2.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "plugin/clskeld2.h"

namespace keld2::host {

struct JobCall {
    enum class Method {
        runKeld2Prg,
        editfigkeld2,
        usercode,
        bufcomkeld2,
        freesharebufferkeld2,
        keld2warn,
        sinitkeld2
    };
    Method method = Method::runKeld2Prg;
    // Number of keld2warn and bufcomkeld2; none: the job's own host instance number.
    std::optional<std::int64_t> argument = {};
};

// What stands in a job file: the method's name, then its argument where it has one. Throws
// std::invalid_argument that says what is wrong and what was expected.
JobCall parsecall(std::string_view text);
// The calls of a job that names none.
std::vector<JobCall> defaultcalls();

// num: the job's host instance number.
void carryout(const JobCall& call, ClsKELD2& plugin, std::int16_t num);

}  // namespace keld2::host
