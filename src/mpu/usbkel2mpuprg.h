// usbkel2mpuprg: the run window of the microcontroller families.
//
// What all of them share: the order of start-up, id check and operation. A family derives and gives
// its body of the start-up, its id read and its operations.
#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "run/runwindow.h"

namespace keld2 {

class usbkel2mpuprg : public RunWindow {
  public:
    explicit usbkel2mpuprg(const RunContext& run) : RunWindow(run, "usbkel2mpuprg") {}

  protected:
    // The maker's code and the two bytes of the device's.
    using Id = std::array<std::uint8_t, 3>;

    static bool reads(std::int16_t op) { return op >= operation::read && op <= operation::compare; }
    // 0 read into the buffer, 1 verify, 2 blank check, 3 compare.
    static int readmode(std::int16_t op) { return op - operation::read; }

  private:
    virtual void familystartup() {}
    virtual void readid(Id&) {}  // a family without an id read leaves what is there: 0
    // Whether the job's numbers allow the operation: where they do not, it fails untouched.
    virtual bool possible(std::int16_t) const { return true; }
    // An operation that the family does not have passes and touches nothing.
    virtual void carryout(std::int16_t) {}

    int dohwstart() override;
    int dochipidcheck() override;
    bool checksid() const override { return true; }
    StopButton stopbutton(std::int16_t) const override { return StopButton::shown; }
    void dooperation(std::int16_t op) override;

    Id id_{};
};

// The window of the family of prgmode[0]; of one that touches nothing for a byte that is none.
std::unique_ptr<RunWindow> makempuwindow(const RunContext& run);

}  // namespace keld2
