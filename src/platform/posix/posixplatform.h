// The machine of a Linux host: its own message loop, files below a folder, boxes and forms by
// hooks.
#pragma once

#include <condition_variable>
#include <deque>
#include <filesystem>
#include <mutex>

#include "platform/platform.h"
#include "platform/posix/posixmemory.h"
#include "platform/posix/posixstrings.h"
#include "platform/timerlist.h"

namespace keld2 {

struct PosixOptions {
    std::string scope = {};              // of the named memory
    std::filesystem::path folder = ".";  // the run's current folder
    // How the host answers; an empty hook gives the safe answer: Abort, Cancel, OK where there is
    // nothing else, a cancelled form, a window that nobody sees.
    std::function<BoxAnswer(const Box&)> messagebox = {};
    std::function<void(Form&)> showform = {};
    std::function<void(std::string_view, const WindowChange&)> window = {};
};

// service() waits a millisecond at the most while something goes on, and up to 8 when it has found
// nothing to do for a while and no timer is due before. wake() and post() may be called from any
// thread and end the wait; all else belongs to one thread.
class PosixPlatform : public Platform {
  public:
    explicit PosixPlatform(PosixOptions options = {});

    NamedMemory& memory() override { return memory_; }
    SharedStrings& strings() override { return strings_; }
    void service() override;
    void wake() override;
    TimerId settimer(std::int32_t milliseconds, std::function<void()> handler) override;
    void killtimer(TimerId id) override { timers_.remove(id); }
    BoxAnswer messagebox(const Box& box) override;
    void showform(Form& form) override;
    void window(std::string_view name, const WindowChange& change) override;
    FileContent readfile(std::span<const std::u16string> parts) override;
    double secondssincemidnight() override;

    // event runs in the next service; may be called from any thread.
    void post(std::function<void()> event);

  private:
    bool runevents();
    void waitforevent();

    PosixOptions options_;
    PosixMemory memory_;
    PosixStrings strings_;
    TimerList timers_;
    int idle_ = 0;      // services in a row that had nothing to do
    std::mutex mutex_;  // guards what follows
    std::condition_variable woken_;
    std::deque<std::function<void()>> events_;
    bool awake_ = false;
};

}  // namespace keld2
