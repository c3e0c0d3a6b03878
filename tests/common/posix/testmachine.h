// The Linux machine with named memory that nobody else sees, in this process or another.
#pragma once

#include <unistd.h>

#include <atomic>
#include <functional>
#include <string>

#include "platform/posix/posixplatform.h"

namespace keld2::test {

class TestMachine final : public PosixPlatform {
  public:
    // user: works on a form that opens.
    explicit TestMachine(std::function<void(Form&)> user = {})
        : PosixPlatform({.scope = ownscope(), .showform = std::move(user)}) {}

  private:
    static std::string ownscope() {
        static std::atomic<int> count{0};
        const std::string prefix = "keld2-machine-";
        if (count == 0) removeleftovers(prefix);  // of killed tests
        return prefix + std::to_string(getpid()) + "-" + std::to_string(count++) + "-";
    }
};

}  // namespace keld2::test
