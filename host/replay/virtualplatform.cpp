#include "host/replay/virtualplatform.h"

#include <cmath>
#include <utility>

#include "host/text/boxtext.h"

namespace keld2::host {

namespace {

constexpr double noon = 43200;  // seconds
constexpr double day = 86400;
constexpr std::uint8_t stopped = 2;

}  // namespace

void VirtualPlatform::service() {
    setting_.guard.service();
    setting_.time.waitlong(1);
    givestops();
    timers_.run(setting_.time.milliseconds());
}

void VirtualPlatform::givestops() {
    const std::vector<std::int64_t>& stops = setting_.replay.stops;
    for (; stopsgiven_ < stops.size() && stops[stopsgiven_] <= setting_.trace.lines();
         ++stopsgiven_)
        setting_.s.prgresult.release(0, stopped);
}

TimerId VirtualPlatform::settimer(std::int32_t milliseconds, std::function<void()> handler) {
    return timers_.add(setting_.time.milliseconds(), milliseconds, std::move(handler));
}

BoxAnswer VirtualPlatform::messagebox(const Box& box) {
    setting_.guard.question();
    const BoxAnswer* answer = setting_.replay.messagebox.next();
    return answer == nullptr ? defaultanswer(box.buttons) : *answer;
}

double VirtualPlatform::secondssincemidnight() {
    return std::fmod(noon + static_cast<double>(setting_.time.microseconds()) / 1e6, day);
}

}  // namespace keld2::host
