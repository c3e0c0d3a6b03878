// The message and status with which a file is refused.
#pragma once

#include <functional>
#include <string>

#include "host/hosterror.h"

namespace keld2::host {

inline std::string refusalof(const std::function<void()>& work, int status = exitstatus::data) {
    try {
        work();
    } catch (const HostError& error) {
        return error.status() == status
                   ? error.what()
                   : "exit " + std::to_string(error.status()) + ", " + error.what();
    }
    return "accepted";
}

// A file that must be refused, and with what message.
struct RefusedCase {
    std::string what;
    std::string text;
    std::string message;
};

}  // namespace keld2::host
