// Recorder: what the programmer of a session answers, as a replay text.
//
// The text gives the same trace when it is replayed. Answers that repeat to the end are written
// once, the default ones not at all.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "external/usbtransport.h"
#include "platform/platform.h"

namespace keld2::host {

class Recorder {
  public:
    void number(std::string_view operation, int answer);
    // before, after: ibuf1 around the call.
    void transferwait(bool well, std::span<const std::uint8_t> before,
                      std::span<const std::uint8_t> after);
    void box(BoxButtons buttons, BoxAnswer answer);
    void stop(std::int64_t lines);  // of the trace when it came

    // Passes a bulk read on to inner and hands over its bytes and its result cell whenever
    // deliver is called, so that what is recorded is what the reader sees.
    void bulkread(UsbTransport& inner, std::span<std::uint8_t> target, std::uint8_t* result);
    void deliver();

    std::string text() const;

  private:
    struct Answer {
        std::string text;     // behind the operation's name
        bool usual = false;   // what is answered by default
        std::int64_t at = 0;  // place among all answers
    };
    // A read that is under way. The inner transport writes here, even when nobody waits any more.
    struct Bulk {
        std::vector<std::uint8_t> bytes;
        std::uint8_t cell = 0;
        std::span<std::uint8_t> target;
        std::uint8_t* result;
        std::size_t answer;  // index into the operation's answers
    };

    void add(std::string_view operation, std::string text, bool usual);
    void finish(Bulk& bulk, std::uint8_t state);

    std::map<std::string, std::vector<Answer>, std::less<>> answers_;
    std::vector<std::int64_t> stops_;
    std::int64_t count_ = 0;
    std::deque<Bulk> bulks_;
    Bulk* open_ = nullptr;
};

}  // namespace keld2::host
