// CheckWatch: what a run's checks of the bytes that it has read came to.
#pragma once

#include <cstdint>
#include <optional>

#include "host/run/difference.h"
#include "shared/sharedvariables.h"

namespace keld2::host {

// A byte or word from the chip, as DevCore is asked to check it.
struct CheckedCell {
    CellUnit unit = CellUnit::byte;
    std::int64_t address = 0;  // in units
    std::uint32_t value = 0;
};

class CheckWatch {
  public:
    // s: the host's views, which must outlive it.
    explicit CheckWatch(SharedVariables& s) : s_(s) {}

    // An operation or a stage of one begins: what went before was no end of the run, unless it was
    // a compare, which goes on behind every difference.
    void begin_operation();
    // Comes before the check itself, which may change the buffer. mode: as DevCore takes it.
    void see(const CheckedCell& cell, int mode);
    // The answer that the plug-in gets: where a compare's report is full it goes on all the same,
    // so that the differences are counted to the end.
    int answer(const CheckedCell& cell, int mode, int given) const;

    const Differences& differences() const { return differences_; }
    // The value that every byte seen since the operation began has had; none: they differed, or no
    // byte was seen.
    std::optional<std::uint8_t> uniform() const;

  private:
    void see_byte(std::uint8_t byte);
    std::optional<std::uint32_t> expected(const CheckedCell& cell, int mode) const;

    SharedVariables& s_;
    Differences differences_;
    std::optional<std::uint8_t> value_;
    bool varied_ = false;
};

}  // namespace keld2::host
