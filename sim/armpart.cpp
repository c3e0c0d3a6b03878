#include "sim/armpart.h"

namespace keld2::sim {

namespace {

class ArmPart final : public FirmwarePart {
  public:
    ArmPart(DebugPort& chip, const Faults& faults) : engine_(&chip, armfirmware, faults.arm) {}

    void selected(ArmMode mode) override {
        engine_.start(mode == ArmMode::modeselect3 ? ArmFamily::a : ArmFamily::b);
    }
    void powerdown() override { engine_.powerdown(); }

    bool frame(std::span<const std::uint8_t> frame) override {
        if (engine_.running()) engine_.frame(frame);
        return engine_.running();
    }
    bool bulkread(std::span<std::uint8_t> data) override {
        return engine_.running() && engine_.bulkread(data);
    }
    bool bulkwrite(std::span<const std::uint8_t> data) override {
        return engine_.running() && engine_.bulkwrite(data);
    }
    std::optional<bool> transferwait(std::uint8_t, std::span<std::uint8_t> ibuf1) override {
        if (!engine_.running()) return {};
        return engine_.record(ibuf1);
    }

  private:
    ArmEngine engine_;
};

}  // namespace

std::unique_ptr<FirmwarePart> makearmpart(DebugPort& chip, const Faults& faults) {
    return std::make_unique<ArmPart>(chip, faults);
}

}  // namespace keld2::sim
