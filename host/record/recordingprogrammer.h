// Decorators that tell a Recorder what a programmer answers.
#pragma once

#include "external/usbtransport.h"
#include "host/programmer/devcoredecorator.h"
#include "host/record/recorder.h"
#include "host/trace/tracelog.h"
#include "platform/platformdecorator.h"
#include "shared/sharedvariables.h"

namespace keld2::host {

class RecordingDevCore final : public DevCoreDecorator {
  public:
    RecordingDevCore(std::unique_ptr<DevCore> inner, Recorder& recorder, SharedVariables& s)
        : DevCoreDecorator(std::move(inner)), recorder_(recorder), s_(s) {}

    int readycheck() override { return noted("readycheck", inner().readycheck()); }
    int modeselect(std::uint8_t mode) override {
        return noted("modeselect", inner().modeselect(mode));
    }
    int modeselect2(std::uint8_t mode, int second) override {
        return noted("modeselect2", inner().modeselect2(mode, second));
    }
    int modeselect3(std::uint8_t mode, int second) override {
        return noted("modeselect3", inner().modeselect3(mode, second));
    }
    int armready() override { return noted("armready", inner().armready()); }
    std::uint8_t regread(std::uint8_t reg) override {
        return static_cast<std::uint8_t>(noted("regread", inner().regread(reg)));
    }
    bool transferwait(std::uint8_t count) override;

  private:
    int noted(std::string_view operation, int answer) {
        recorder_.number(operation, answer);
        return answer;
    }

    Recorder& recorder_;
    SharedVariables& s_;
};

class RecordingTransport final : public UsbTransport {
  public:
    RecordingTransport(std::unique_ptr<UsbTransport> inner, Recorder& recorder)
        : inner_(std::move(inner)), recorder_(recorder) {}

    int usbcomwrite(std::span<const std::uint8_t> frame) override;
    void usbbulkread(std::span<std::uint8_t> target, std::uint8_t* result) override;
    int usbbulkwrite(std::span<const std::uint8_t> source) override;

  private:
    std::unique_ptr<UsbTransport> inner_;
    Recorder& recorder_;
};

// Notes box answers and stops, and delivers finished bulk reads.
class RecordingPlatform final : public PlatformDecorator {
  public:
    RecordingPlatform(Platform& inner, Recorder& recorder, const TraceLog& trace,
                      SharedVariables& s)
        : PlatformDecorator(inner), recorder_(recorder), trace_(trace), s_(s) {}

    void service() override;
    BoxAnswer messagebox(const Box& box) override;

  private:
    Recorder& recorder_;
    const TraceLog& trace_;
    SharedVariables& s_;
};

}  // namespace keld2::host
