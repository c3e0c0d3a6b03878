// The Linux machine with named memory that no other test sees.
#pragma once

#include <unistd.h>

#include <string>

#include "platform/posix/posixplatform.h"

namespace keld2::test {

inline PosixOptions privatemachine() {
    return {.scope = "keld2-test-" + std::to_string(getpid()) + "-"};
}

}  // namespace keld2::test
