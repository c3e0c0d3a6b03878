// BusCycles: tells the cycles on the parallel lines.
//
// A step is a read cycle, a write cycle, or the cycles of one command; reads of addresses in a row
// are one step.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/tell/grouper.h"

namespace keld2::host {

class BusCycles final : public Grouper {
  public:
    void take(const TraceLine& line, const StepSink& done) override;
    void close(const StepSink& done) override;

  private:
    enum class Kind { none, write, read };
    void bus(const TraceLine& line, const StepSink& done);
    void sample(const TraceLine& line);
    void endcycle(const StepSink& done);
    void addwrite(Step cycle, const StepSink& done);
    void addread(Step cycle, const StepSink& done);
    bool continuescommand() const;
    std::string wordsofreads() const;
    std::string wordsofcommand() const;
    void endcommand(const StepSink& done);

    Kind kind_ = Kind::none;  // of the cycle at hand
    Step cycle_;
    std::int64_t address_ = 0;
    std::uint8_t data_ = 0;
    int read_ = -1;  // what the cycle has read; -1 nothing that is known

    Step command_;  // cycles that belong together
    Kind commandkind_ = Kind::none;
    std::int64_t firstaddress_ = 0, lastaddress_ = 0;
    std::vector<std::uint8_t> bytes_;  // sent, or read where known
};

}  // namespace keld2::host
