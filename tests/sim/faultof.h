// The message of the RunFault that something has to end with.
#pragma once

#include <functional>
#include <string>

#include "platform/fault.h"

namespace keld2::test {

inline std::string faultof(const std::function<void()>& work) {
    try {
        work();
    } catch (const RunFault& fault) {
        return fault.what();
    }
    return "no fault";
}

}  // namespace keld2::test
