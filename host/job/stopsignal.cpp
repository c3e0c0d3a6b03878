#include "host/job/stopsignal.h"

#include <atomic>
#include <csignal>
#include <cstdlib>

#include "host/hosterror.h"

namespace keld2::host {

namespace {

enum class Asked { no, yes, given };
// A signal handler reaches nothing but what has static storage.
std::atomic<Asked> asked{Asked::no};
static_assert(std::atomic<Asked>::is_always_lock_free);

void onsignal(int) {
    if (asked.exchange(Asked::yes) != Asked::no) std::_Exit(exitstatus::stopped);
}

}  // namespace

StopSignal::StopSignal(Platform& inner, SharedVariables& s)
    : PlatformDecorator(inner), s_(s), before_(std::signal(SIGINT, onsignal)) {
    asked = Asked::no;
}

StopSignal::~StopSignal() { std::signal(SIGINT, before_); }

void StopSignal::service() {
    auto expected = Asked::yes;
    if (asked.compare_exchange_strong(expected, Asked::given))
        s_.prgresult.release(0, exitstatus::stopped);
    inner().service();
}

}  // namespace keld2::host
