// VirtualTime: the clock of a replay. It moves only when the run waits.
#pragma once

#include <cstdint>

namespace keld2::host {

class VirtualTime {
  public:
    // Pauses: n short ticks of a microsecond, n long ticks of a millisecond; negative is none.
    void waitshort(std::int64_t n) { advance(n); }
    void waitlong(std::int64_t n) { advance(n * 1000); }
    // The same in a command list: they pass when the list runs.
    void qwaitshort(std::int64_t n) { queued_ += n > 0 ? n : 0; }
    void qwaitlong(std::int64_t n) { queued_ += n > 0 ? n * 1000 : 0; }
    void qrun() {
        now_ += queued_;
        queued_ = 0;
    }
    // Since the session began.
    std::int64_t microseconds() const { return now_; }
    std::int64_t milliseconds() const { return now_ / 1000; }

  private:
    void advance(std::int64_t microseconds) { now_ += microseconds > 0 ? microseconds : 0; }

    std::int64_t now_ = 0;
    std::int64_t queued_ = 0;
};

}  // namespace keld2::host
