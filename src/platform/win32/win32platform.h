// The machine of the Windows host: its message loop, its boxes, its current folder.
#pragma once

#include "platform/platform.h"
#include "platform/timerlist.h"
#include "platform/win32/win32memory.h"
#include "platform/win32/win32strings.h"

namespace keld2 {

struct Win32Options {
    std::string scope = {};    // of the named memory
    std::wstring folder = {};  // the run's current folder; empty: the process's own
};

class Win32Platform : public Platform {
  public:
    explicit Win32Platform(Win32Options options = {});
    ~Win32Platform() override;
    Win32Platform(const Win32Platform&) = delete;
    Win32Platform& operator=(const Win32Platform&) = delete;

    NamedMemory& memory() override { return memory_; }
    SharedStrings& strings() override { return strings_; }
    void service() override;
    void wake() override;
    TimerId settimer(std::int32_t milliseconds, std::function<void()> handler) override;
    void killtimer(TimerId id) override { timers_.remove(id); }
    BoxAnswer messagebox(const Box& box) override;
    void showform(Form& form) override;
    void window(std::string_view, const WindowChange&) override {
    }  // the host shows log and progress
    FileContent readfile(std::span<const std::u16string> parts) override;
    double secondssincemidnight() override;

  private:
    bool servemessages();

    std::wstring folder_;
    Win32Memory memory_;
    Win32Strings strings_;
    TimerList timers_;
    void* wakeevent_;
};

}  // namespace keld2
