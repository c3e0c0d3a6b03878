// Narrator: tells a trace in words, line by line as it comes.
//
// It follows what the lines themselves say: the parameter record names the wiring of the JTAG
// lines, the window the way in which a microcontroller is worked, frames and captions the
// operation. Between two qruns all queued lines are one step, the list.
#pragma once

#include <memory>
#include <span>
#include <string>

#include "host/tell/buscycles.h"
#include "host/tell/portcommands.h"
#include "host/tell/tapscans.h"

namespace keld2::host {

class Narration {
  public:
    virtual ~Narration() = default;
    // The lines from this one on belong to an operation.
    virtual void operation(const std::string& words, std::int64_t line) = 0;
    virtual void step(Step step) = 0;
};

class Narrator {
  public:
    // parts: levels of parts that a step keeps, 0 none; what lies deeper is not held in memory.
    Narrator(Narration& narration, int parts) : narration_(narration), parts_(parts) {}

    void take(const TraceLine& line);
    void finish();  // behind the last line

  private:
    void takepins(const TraceLine& line);
    void takerun(const TraceLine& line);
    void takewindow(const TraceLine& line);
    void takerecord(std::span<const std::uint8_t> bytes);
    void takeframe(const TraceLine& line);
    void takerepeated(const TraceLine& line);
    void single(const TraceLine& line);
    bool repeats(const TraceLine& line) const;
    void endrepeated();
    void endpins();
    void endlist(const char* how);
    Grouper& grouper();
    StepSink sink();
    void tell(Step step);

    Narration& narration_;
    int parts_;
    std::unique_ptr<TapScans> tap_;  // while the wiring is known
    PortCommands port_;
    BusCycles bus_;
    bool mcu_ = false;       // the window is that of the microcontroller families
    bool parallel_ = false;  // its parallel lines are in use
    bool fixedmode_ = false;

    bool queueing_ = false;  // the pin lines at hand go to the list
    Step list_;
    std::int64_t entries_ = 0;

    Step repeated_;  // equal calls in a row
    Call repeatedcall_ = Call::qrun;
    std::int64_t repeats_ = 0, wrong_ = 0;
    std::string firstwords_, lastplace_;
    std::string operation_;
};

}  // namespace keld2::host
