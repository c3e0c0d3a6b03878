// The Windows machine, whose forms are worked by the test. Its memory is everybody's: one test at a
// time.
#pragma once

#include <functional>
#include <utility>

#include "platform/win32/win32platform.h"

namespace keld2::test {

class TestMachine final : public Win32Platform {
  public:
    // user: works on a form that opens.
    explicit TestMachine(std::function<void(Form&)> user = {}) : user_(std::move(user)) {}

    void showform(Form& form) override { user_(form); }

  private:
    std::function<void(Form&)> user_;
};

}  // namespace keld2::test
