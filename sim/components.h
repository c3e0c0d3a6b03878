// The components beside the plug-in, as the simulated programmer gives them.
#pragma once

#include "sim/programmer.h"

namespace keld2::sim {

class SimDevCore final : public DevCore {
  public:
    SimDevCore(SimProgrammer& programmer, SharedVariables& s) : p_(programmer), s_(s) {}

    void setvcc(std::int32_t mv) override { p_.board_.setvcc(mv); }
    void setvpp(std::int32_t mv, std::uint8_t channel) override { p_.board_.setvpp(mv, channel); }
    void setgndpin(std::uint8_t pin, std::uint8_t on) override {
        p_.board_.setpin(Board::Supply::gnd, pin, on != 0);
    }
    void setvccpin(std::uint8_t pin, std::uint8_t on) override {
        p_.board_.setpin(Board::Supply::vcc, pin, on != 0);
    }
    void setvpppin(std::uint8_t pin, std::uint8_t on) override {
        p_.board_.setpin(Board::Supply::vpp, pin, on != 0);
    }
    void drivercommit() override;
    void powerdown() override { p_.powerdown(); }

    void signalpass(std::uint8_t) override { ++p_.signals_.pass; }
    void signalfail(std::uint8_t) override { ++p_.signals_.fail; }
    int readycheck() override { return p_.faults_.refuse.strikes() ? 1 : 0; }
    void readyfail() override {}
    int modeselect(std::uint8_t) override { return mode(); }
    int modeselect2(std::uint8_t, int) override { return mode(ArmMode::modeselect2); }
    int modeselect3(std::uint8_t, int) override { return mode(ArmMode::modeselect3); }
    int armready() override {
        if (p_.faults_.refuse.strikes()) return 1;
        p_.selectarm(ArmMode::armready);
        return 0;
    }

    void regwrite(std::int32_t value, std::uint8_t reg) override {
        p_.board_.pass(immediatetime);
        p_.writeregister(value, reg);
    }
    void qregwrite(std::int32_t value, std::uint8_t reg) override {
        p_.queue({.value = value, .kind = ListEntry::Kind::write, .reg = reg});
    }
    std::uint8_t regread(std::uint8_t reg) override {
        p_.board_.pass(immediatetime);
        return p_.board_.readregister(reg);
    }
    void qregread(std::uint8_t reg) override {
        p_.queue({.kind = ListEntry::Kind::read, .reg = reg});
    }

    void waitshort(std::int32_t n) override { p_.board_.pass(n, microsecond); }
    void qwaitshort(std::int32_t n) override {
        p_.queue({.value = n, .kind = ListEntry::Kind::pauseshort});
    }
    void waitlong(std::int32_t n) override { p_.board_.pass(n, millisecond); }
    void qwaitlong(std::int32_t n) override {
        p_.queue({.value = n, .kind = ListEntry::Kind::pauselong});
    }
    void qrun() override { p_.runlist(); }

    void buswrite(std::int32_t address, std::uint8_t data, std::uint8_t control) override {
        p_.board_.pass(immediatetime);
        p_.board_.movebus(address, data, control);
    }
    void qbuswrite(std::int32_t address, std::uint8_t data, std::uint8_t control) override {
        p_.queue({.value = address, .kind = ListEntry::Kind::bus, .reg = data, .control = control});
    }
    void busconfig(std::int32_t, std::uint8_t direction, std::uint8_t mode) override {
        p_.board_.turnbus(direction, mode);
    }
    void qbusconfig(std::int32_t, std::uint8_t direction, std::uint8_t mode) override {
        p_.queue({.kind = ListEntry::Kind::busturn, .reg = direction, .control = mode});
    }

    int checkbyte(std::int16_t value, std::int32_t address, int mode) override;
    int checkword(std::uint8_t low, std::uint8_t high, std::int32_t address, int mode,
                  int blank) override;
    bool transferwait(std::uint8_t count) override;
    void loadalgobuf(std::int32_t& length) override;

  private:
    static constexpr std::uint64_t immediatetime = microsecond;

    int mode() { return p_.faults_.modefail.strikes() ? 2 : 0; }
    int mode(ArmMode arm) {
        const int answer = mode();
        if (answer == 0) p_.selectarm(arm);
        return answer;
    }

    SimProgrammer& p_;
    SharedVariables& s_;
};

class SimTransport final : public UsbTransport {
  public:
    explicit SimTransport(SimProgrammer& programmer) : p_(programmer) {}
    ~SimTransport() override { p_.bulk_.drain(); }  // no delivery outlives the shared blocks
    SimTransport(const SimTransport&) = delete;
    SimTransport& operator=(const SimTransport&) = delete;

    int usbcomwrite(std::span<const std::uint8_t> frame) override { return p_.frame(frame); }
    void usbbulkread(std::span<std::uint8_t> target, std::uint8_t* result) override {
        p_.bulkread(target, result);
    }
    int usbbulkwrite(std::span<const std::uint8_t> source) override { return p_.bulkwrite(source); }

  private:
    SimProgrammer& p_;
};

}  // namespace keld2::sim
