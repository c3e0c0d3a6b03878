#include "host/commands/attendedprogrammer.h"

#include <utility>

#include "host/commands/boxes.h"
#include "host/commands/interruptwatch.h"
#include "host/hosterror.h"
#include "platform/platformdecorator.h"

namespace keld2::host {

namespace {

class AttendedPlatform final : public PlatformDecorator {
  public:
    AttendedPlatform(Platform& inner, SharedVariables& host, std::optional<BoxAnswer> onbox)
        : PlatformDecorator(inner), host_(host), boxes_(onbox, stderr) {}

    void service() override {
        if (InterruptWatch::asked() && !std::exchange(stopgiven_, true))
            host_.prgresult.release(0, exitstatus::stopped);
        inner().service();
    }
    BoxAnswer messagebox(const Box& box) override { return boxes_.answer(box); }

  private:
    SharedVariables& host_;
    TerminalBoxes boxes_;
    bool stopgiven_ = false;
};

class AttendedProgrammer final : public SessionProgrammer {
  public:
    AttendedProgrammer(std::unique_ptr<SessionProgrammer> inner, SharedVariables& host,
                       std::optional<BoxAnswer> onbox)
        : inner_(std::move(inner)), platform_(inner_->platform(), host, onbox) {}

    Platform& platform() override { return platform_; }
    std::unique_ptr<DevCore> devcore(SharedVariables& s) override { return inner_->devcore(s); }
    std::unique_ptr<UsbTransport> transport(SharedVariables& s) override {
        return inner_->transport(s);
    }
    std::function<std::unique_ptr<TextHelper>()> helper() override { return inner_->helper(); }
    bool usable() const override { return inner_->usable(); }
    void finish() const override { inner_->finish(); }

  private:
    std::unique_ptr<SessionProgrammer> inner_;
    AttendedPlatform platform_;
    InterruptWatch interrupts_;
};

}  // namespace

ProgrammerFactory attended(ProgrammerFactory programmer, std::optional<BoxAnswer> onbox) {
    return [programmer = std::move(programmer), onbox](const ProgrammerSetting& setting) {
        return std::make_unique<AttendedProgrammer>(programmer(setting), setting.host, onbox);
    };
}

}  // namespace keld2::host
