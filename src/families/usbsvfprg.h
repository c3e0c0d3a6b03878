// usbsvfprg: the run window of the families that play an SVF text.
#pragma once

#include "jtag/lines.h"
#include "jtag/sdr.h"
#include "run/runwindow.h"

namespace keld2 {

class usbsvfprg final : public RunWindow {
  public:
    explicit usbsvfprg(const RunContext& run);

  private:
    int dohwstart() override;
    StopButton stopbutton(std::int16_t op) const override;
    void dooperation(std::int16_t op) override;

    LineLevels levels_;
    SvfState state_;
};

}  // namespace keld2
