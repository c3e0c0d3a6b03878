#include "host/replay/virtualplatform.h"

#include <algorithm>
#include <cmath>

#include "host/text/boxtext.h"

namespace keld2::host {

namespace {

constexpr std::int64_t millisecond = 1000;  // microseconds
constexpr double noon = 43200;              // seconds
constexpr double day = 86400;
constexpr std::uint8_t stopped = 2;

}  // namespace

void VirtualPlatform::service() {
    setting_.guard.service();
    setting_.time.waitlong(1);
    givestops();
    runtimers();
}

void VirtualPlatform::givestops() {
    const std::vector<std::int64_t>& stops = setting_.replay.stops;
    for (; stopsgiven_ < stops.size() && stops[stopsgiven_] <= setting_.trace.lines();
         ++stopsgiven_)
        setting_.s.prgresult.release(0, stopped);
}

void VirtualPlatform::runtimers() {
    std::vector<TimerId> due;
    for (const Timer& timer : timers_)
        if (timer.due <= setting_.time.now()) due.push_back(timer.id);
    for (const TimerId id : due) {
        Timer* timer = find(id);  // a handler before it may have killed it
        if (timer == nullptr) continue;
        timer->due = std::max(timer->due + timer->period, setting_.time.now() + 1);
        const auto handler = timer->handler;
        handler();
    }
}

VirtualPlatform::Timer* VirtualPlatform::find(TimerId id) {
    const auto at =
        std::find_if(timers_.begin(), timers_.end(), [id](const Timer& t) { return t.id == id; });
    return at == timers_.end() ? nullptr : &*at;
}

TimerId VirtualPlatform::settimer(std::int32_t milliseconds, std::function<void()> handler) {
    const std::int64_t period = std::max(milliseconds, 1) * millisecond;
    timers_.push_back({++lasttimer_, period, setting_.time.now() + period, std::move(handler)});
    return lasttimer_;
}

void VirtualPlatform::killtimer(TimerId id) {
    std::erase_if(timers_, [id](const Timer& timer) { return timer.id == id; });
}

BoxAnswer VirtualPlatform::messagebox(const Box& box) {
    setting_.guard.question();
    const BoxAnswer* answer = setting_.replay.messagebox.next();
    return answer == nullptr ? defaultanswer(box.buttons) : *answer;
}

double VirtualPlatform::secondssincemidnight() {
    return std::fmod(noon + static_cast<double>(setting_.time.now()) / 1e6, day);
}

}  // namespace keld2::host
