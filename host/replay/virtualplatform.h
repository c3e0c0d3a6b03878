// VirtualPlatform: the machine of a replay, with virtual time.
//
// A service of the message loop takes one millisecond; within it stops come before timers. Boxes
// answer from the replay. Everything else is the inner platform's.
#pragma once

#include <cstdint>
#include <functional>

#include "host/replay/replayfile.h"
#include "host/replay/virtualtime.h"
#include "host/replay/waitguard.h"
#include "host/trace/tracelog.h"
#include "platform/platformdecorator.h"
#include "platform/timerlist.h"
#include "shared/sharedvariables.h"

namespace keld2::host {

class VirtualPlatform final : public PlatformDecorator {
  public:
    // All references must outlive the platform. trace: counts the lines that stops wait for;
    // s: the host's views, whose prgresult[0] takes the stops.
    struct Setting {
        Replay& replay;
        VirtualTime& time;
        WaitGuard& guard;
        const TraceLog& trace;
        SharedVariables& s;
    };
    VirtualPlatform(Platform& inner, const Setting& setting)
        : PlatformDecorator(inner), setting_(setting) {}

    void service() override;
    void wake() override {}
    TimerId settimer(std::int32_t milliseconds, std::function<void()> handler) override;
    void killtimer(TimerId id) override { timers_.remove(id); }
    BoxAnswer messagebox(const Box& box) override;
    double secondssincemidnight() override;  // noon at the session's begin

  private:
    void givestops();

    Setting setting_;
    std::size_t stopsgiven_ = 0;
    TimerList timers_;
};

}  // namespace keld2::host
