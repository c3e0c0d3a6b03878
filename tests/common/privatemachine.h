// The Linux machine with named memory that nobody else sees, in this process or another.
#pragma once

#include <unistd.h>

#include <atomic>
#include <string>

#include "platform/posix/posixplatform.h"

namespace keld2::test {

inline PosixOptions privatemachine() {
    static std::atomic<int> count{0};
    return {.scope =
                "keld2-test-" + std::to_string(getpid()) + "-" + std::to_string(count++) + "-"};
}

}  // namespace keld2::test
