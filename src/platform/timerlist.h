// TimerList: repeating timers on any clock, for the platforms that run their own.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <utility>

#include "platform/platform.h"

namespace keld2 {

class TimerList {
  public:
    // now: milliseconds of the platform's clock. An interval below 1 counts as 1.
    TimerId add(std::int64_t now, std::int32_t interval, std::function<void()> handler) {
        const std::int32_t every = std::max(interval, 1);
        timers_[++last_] = {.due = now + every, .interval = every, .handler = std::move(handler)};
        return last_;
    }
    void remove(TimerId id) { timers_.erase(id); }

    // Runs each timer that is due once. A handler may add and remove timers, its own too.
    bool run(std::int64_t now) {
        bool any = false;
        for (auto t = timers_.begin(); t != timers_.end();) {
            const TimerId id = t->first;
            if (t->second.due <= now) {
                t->second.due = now + t->second.interval;
                const std::function<void()> handler = t->second.handler;
                handler();
                any = true;
            }
            t = timers_.upper_bound(id);
        }
        return any;
    }

    // When the next timer is due, on the platform's clock; far away when there is none.
    std::int64_t nextdue() const {
        std::int64_t next = std::numeric_limits<std::int64_t>::max();
        for (const auto& [id, timer] : timers_) next = std::min(next, timer.due);
        return next;
    }

  private:
    struct Timer {
        std::int64_t due;       // ms
        std::int32_t interval;  // ms
        std::function<void()> handler;
    };

    std::map<TimerId, Timer> timers_;
    TimerId last_ = 0;
};

}  // namespace keld2
