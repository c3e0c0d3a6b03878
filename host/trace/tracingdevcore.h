// TracingDevCore: writes a line for every call and passes it on.
#pragma once

#include <memory>

#include "external/devcore.h"
#include "host/trace/tracelog.h"
#include "shared/sharedvariables.h"

namespace keld2::host {

class TracingDevCore final : public DevCore {
  public:
    // trace and s (the plug-in's views, for the record in ubuf1) must outlive the object.
    TracingDevCore(std::unique_ptr<DevCore> inner, TraceLog& trace, SharedVariables& s)
        : inner_(std::move(inner)), trace_(trace), s_(s) {}

    void setvcc(std::int32_t mv) override;
    void setvpp(std::int32_t mv, std::uint8_t channel) override;
    void setgndpin(std::uint8_t pin, std::uint8_t on) override;
    void setvccpin(std::uint8_t pin, std::uint8_t on) override;
    void setvpppin(std::uint8_t pin, std::uint8_t on) override;
    void drivercommit() override;
    void powerdown() override;
    void signalpass(std::uint8_t zero) override;
    void signalfail(std::uint8_t zero) override;
    int readycheck() override;
    void readyfail() override;
    int modeselect(std::uint8_t mode) override;
    int modeselect2(std::uint8_t mode, int second) override;
    int modeselect3(std::uint8_t mode, int second) override;
    int armready() override;
    void regwrite(std::int32_t value, std::uint8_t reg) override;
    void qregwrite(std::int32_t value, std::uint8_t reg) override;
    std::uint8_t regread(std::uint8_t reg) override;
    void qregread(std::uint8_t reg) override;
    void waitshort(std::int32_t n) override;
    void qwaitshort(std::int32_t n) override;
    void waitlong(std::int32_t n) override;
    void qwaitlong(std::int32_t n) override;
    void qrun() override;
    void buswrite(std::int32_t address, std::uint8_t data, std::uint8_t control) override;
    void qbuswrite(std::int32_t address, std::uint8_t data, std::uint8_t control) override;
    void busconfig(std::int32_t zero, std::uint8_t direction, std::uint8_t mode) override;
    void qbusconfig(std::int32_t zero, std::uint8_t direction, std::uint8_t mode) override;
    int checkbyte(std::int16_t value, std::int32_t address, int mode) override;
    int checkword(std::uint8_t low, std::uint8_t high, std::int32_t address, int mode,
                  int blank) override;
    bool transferwait(std::uint8_t count) override;
    void loadalgobuf(std::int32_t& length) override;

  private:
    std::unique_ptr<DevCore> inner_;
    TraceLog& trace_;
    SharedVariables& s_;
};

}  // namespace keld2::host
