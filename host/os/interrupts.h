// Interrupts: Ctrl-C and what else asks a program to end.
#pragma once

#include <memory>

namespace keld2::host::os {

// While it lives, handler is called at each interrupt instead of the end of the program, and nobody
// who ceases to read what the program writes ends it; the former handling is back afterwards.
// handler runs in the middle of anything or on another thread: it may use lock-free atomics and
// leave(). Only one object may live at a time.
class Interrupts {
  public:
    using Handler = void (*)();

    explicit Interrupts(Handler handler);
    ~Interrupts();
    Interrupts(const Interrupts&) = delete;
    Interrupts& operator=(const Interrupts&) = delete;

  private:
    struct Former;
    std::unique_ptr<Former> former_;
};

// Ends the process at once.
[[noreturn]] void leave(int status);

}  // namespace keld2::host::os
