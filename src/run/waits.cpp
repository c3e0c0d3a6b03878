#include "run/waits.h"

#include <utility>

namespace keld2 {

namespace {

constexpr std::int32_t shortwait = 5000;  // ms
constexpr std::int32_t longwait = 10000;  // ms
constexpr int tries = 2;

constexpr auto done = static_cast<std::uint8_t>(BulkState::done);

bool failed(std::uint8_t state) {
    return state > static_cast<std::uint8_t>(BulkState::stillrunning);
}

void writetimedout(SharedVariables& s) { s.prgresult.release(0, result::timedout); }

void startread(const RunContext& run, std::int64_t length) {
    SharedVariables& s = run.s;
    (void)s.ibuf2[length - 1];  // within the block
    run.usb.usbbulkread({s.ibuf2.data(), static_cast<std::size_t>(length)},
                        &s.usbpip2readresult[0]);
}

enum class Try { done, failed, givenup };

Try tryread(const RunContext& run, std::int32_t length) {
    SharedVariables& s = run.s;
    s.usbpip2readresult.release(0, 0);
    s.ibuf2[length - 1] = 0;
    startread(run, length);
    const Timeout timer2(run.platform, longwait, [&s] { writetimedout(s); });
    for (;;) {
        run.platform.service();
        const std::uint8_t state = s.usbpip2readresult.acquire(0);
        if (failed(state)) return Try::failed;
        const std::uint8_t ended = s.prgresult.acquire(0);
        if (ended == result::stopped || ended == result::timedout) return Try::givenup;
        if (state == done) return Try::done;
    }
}

}  // namespace

Timeout::Timeout(Platform& platform, std::int32_t milliseconds, std::function<void()> event)
    : platform_(platform) {
    id_ = platform_.settimer(milliseconds, [this, event = std::move(event)] {
        platform_.killtimer(std::exchange(id_, 0));
        event();
    });
}

Timeout::~Timeout() {
    if (id_ != 0) platform_.killtimer(id_);
}

int ubulkread0(const RunContext& run, std::int16_t length) {
    SharedVariables& s = run.s;
    s.usbpip2readresult.release(0, 0);
    startread(run, length);
    s.prgresult.release(0, result::well);
    const Timeout timer2(run.platform, shortwait, [&s] { writetimedout(s); });
    for (;;) {
        run.platform.service();
        const std::uint8_t state = s.usbpip2readresult.acquire(0);
        if (failed(state) || s.prgresult.acquire(0) == result::timedout) {
            if (s.prgresult.acquire(0) != result::stopped) writetimedout(s);
            return status::ended;
        }
        if (state == done) {
            s.ibuf2[length - 1] = 0;
            return status::goon;
        }
    }
}

int ubulkread2(const RunContext& run, std::int32_t length) {
    SharedVariables& s = run.s;
    for (int attempt = 0; attempt < tries; ++attempt) {
        const Try outcome = tryread(run, length);
        if (outcome == Try::done) return status::goon;
        if (outcome == Try::givenup) break;
    }
    if (s.prgresult.acquire(0) != result::stopped) s.prgresult.release(0, result::well);
    return status::ended;
}

}  // namespace keld2
