// PortCommands: tells what goes over the strobed byte port of the serial microcontroller family.
//
// A step is a command: all bytes up to the deselection of the chip.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/tell/grouper.h"

namespace keld2::host {

class PortCommands final : public Grouper {
  public:
    void take(const TraceLine& line, const StepSink& done) override;
    void close(const StepSink& done) override;
    // Whether a command has begun that has not ended.
    bool begun() const { return !command_.parts.empty() || !byte_.parts.empty(); }

  private:
    void control(const TraceLine& line, const StepSink& done);
    void other(const TraceLine& line, const StepSink& done);
    void strobe();
    void endbyte();
    std::string wordsofcommand() const;

    std::uint8_t data_ = 0, direction_ = 0, control_ = 0;  // the port's registers
    Step command_, byte_;                                  // that are begun
    std::vector<std::uint8_t> sent_;
    std::vector<std::uint8_t> read_;  // where the answers are known
    std::int64_t readcount_ = 0;
    int sampled_ = -1;       // what the byte at hand has read; -1 nothing that is known
    bool strobed_ = false;   // the byte at hand
    bool released_ = false;  // the command has ended, but for a pause behind it
};

}  // namespace keld2::host
