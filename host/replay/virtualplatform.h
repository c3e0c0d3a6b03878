// VirtualPlatform: the machine of a replay, with virtual time.
//
// A service of the message loop takes one millisecond; within it stops come before timers. Boxes
// answer from the replay. Everything else is the inner platform's.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "host/replay/replayfile.h"
#include "host/replay/virtualtime.h"
#include "host/replay/waitguard.h"
#include "host/trace/tracelog.h"
#include "platform/platformdecorator.h"
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
    void killtimer(TimerId id) override;
    BoxAnswer messagebox(const Box& box) override;
    double secondssincemidnight() override;  // noon at the session's begin

  private:
    struct Timer {
        TimerId id;
        std::int64_t period;  // microseconds
        std::int64_t due;
        std::function<void()> handler;
    };

    void givestops();
    void runtimers();
    Timer* find(TimerId id);

    Setting setting_;
    std::size_t stopsgiven_ = 0;
    TimerId lasttimer_ = 0;
    std::vector<Timer> timers_;
};

}  // namespace keld2::host
