// WaitGuard: finds the wait that can never end.
//
// A wait is what happens between two effects: services of the message loop, and status records
// that are asked for again and again. One that goes on for 600 virtual seconds is abandoned: from
// then on every service throws RunFault, so that the run unwinds by its own failure paths.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace keld2::host {

class WaitGuard {
  public:
    // An effect of the run, as a line of the trace.
    void effect(std::string_view name, std::string_view rest);
    // One service of the message loop, one millisecond. Throws RunFault once the run is abandoned.
    void service();
    // A question was asked. One that is answered over and over without end is given up too.
    void question();

    bool abandoned() const { return !wait_.empty(); }
    // What the run waits for, in words; empty while it is not abandoned.
    const std::string& wait() const { return wait_; }

  private:
    [[noreturn]] void abandon(std::string wait);
    void throwabandoned() const;

    std::int64_t services_ = 0;   // since the last effect
    std::int64_t effects_ = 0;    // since the last service
    std::int64_t questions_ = 0;  // in the whole session
    bool status_ = false;         // status records were asked for since the last effect
    std::string last_;            // the last effect that is no part of a wait
    std::string wait_;
};

}  // namespace keld2::host
