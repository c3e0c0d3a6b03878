// DevCoreDecorator: forwards everything to another DevCore; derive to watch or change a part.
#pragma once

#include <memory>
#include <utility>

#include "external/devcore.h"

namespace keld2::host {

class DevCoreDecorator : public DevCore {
  public:
    explicit DevCoreDecorator(std::unique_ptr<DevCore> inner) : inner_(std::move(inner)) {}

    void setvcc(std::int32_t mv) override { inner_->setvcc(mv); }
    void setvpp(std::int32_t mv, std::uint8_t channel) override { inner_->setvpp(mv, channel); }
    void setgndpin(std::uint8_t pin, std::uint8_t on) override { inner_->setgndpin(pin, on); }
    void setvccpin(std::uint8_t pin, std::uint8_t on) override { inner_->setvccpin(pin, on); }
    void setvpppin(std::uint8_t pin, std::uint8_t on) override { inner_->setvpppin(pin, on); }
    void drivercommit() override { inner_->drivercommit(); }
    void powerdown() override { inner_->powerdown(); }
    void signalpass(std::uint8_t zero) override { inner_->signalpass(zero); }
    void signalfail(std::uint8_t zero) override { inner_->signalfail(zero); }
    int readycheck() override { return inner_->readycheck(); }
    void readyfail() override { inner_->readyfail(); }
    int modeselect(std::uint8_t mode) override { return inner_->modeselect(mode); }
    int modeselect2(std::uint8_t mode, int second) override {
        return inner_->modeselect2(mode, second);
    }
    int modeselect3(std::uint8_t mode, int second) override {
        return inner_->modeselect3(mode, second);
    }
    int armready() override { return inner_->armready(); }
    void regwrite(std::int32_t value, std::uint8_t reg) override { inner_->regwrite(value, reg); }
    void qregwrite(std::int32_t value, std::uint8_t reg) override { inner_->qregwrite(value, reg); }
    std::uint8_t regread(std::uint8_t reg) override { return inner_->regread(reg); }
    void qregread(std::uint8_t reg) override { inner_->qregread(reg); }
    void waitshort(std::int32_t n) override { inner_->waitshort(n); }
    void qwaitshort(std::int32_t n) override { inner_->qwaitshort(n); }
    void waitlong(std::int32_t n) override { inner_->waitlong(n); }
    void qwaitlong(std::int32_t n) override { inner_->qwaitlong(n); }
    void qrun() override { inner_->qrun(); }
    void buswrite(std::int32_t address, std::uint8_t data, std::uint8_t control) override {
        inner_->buswrite(address, data, control);
    }
    void qbuswrite(std::int32_t address, std::uint8_t data, std::uint8_t control) override {
        inner_->qbuswrite(address, data, control);
    }
    void busconfig(std::int32_t zero, std::uint8_t direction, std::uint8_t mode) override {
        inner_->busconfig(zero, direction, mode);
    }
    void qbusconfig(std::int32_t zero, std::uint8_t direction, std::uint8_t mode) override {
        inner_->qbusconfig(zero, direction, mode);
    }
    int checkbyte(std::int16_t value, std::int32_t address, int mode) override {
        return inner_->checkbyte(value, address, mode);
    }
    int checkword(std::uint8_t low, std::uint8_t high, std::int32_t address, int mode,
                  int blank) override {
        return inner_->checkword(low, high, address, mode, blank);
    }
    bool transferwait(std::uint8_t count) override { return inner_->transferwait(count); }
    void loadalgobuf(std::int32_t& length) override { inner_->loadalgobuf(length); }

  protected:
    DevCore& inner() { return *inner_; }

  private:
    std::unique_ptr<DevCore> inner_;
};

}  // namespace keld2::host
