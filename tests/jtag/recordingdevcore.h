// A DevCore that writes every call down as a line of text and answers like an absent programmer.
#pragma once

#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "external/devcore.h"

namespace keld2::testing {

class RecordingDevCore : public DevCore {
  public:
    std::vector<std::string> calls;
    std::deque<std::uint8_t> samples;  // answers of regread; 255 when there are none left

    // The calls so far, which are then forgotten.
    std::vector<std::string> take() { return std::exchange(calls, {}); }

    void setvcc(std::int32_t mv) override { put("setvcc", mv); }
    void setvpp(std::int32_t mv, std::uint8_t channel) override { put("setvpp", mv, channel); }
    void setgndpin(std::uint8_t pin, std::uint8_t on) override { put("setgndpin", pin, on); }
    void setvccpin(std::uint8_t pin, std::uint8_t on) override { put("setvccpin", pin, on); }
    void setvpppin(std::uint8_t pin, std::uint8_t on) override { put("setvpppin", pin, on); }
    void drivercommit() override { put("drivercommit"); }
    void powerdown() override { put("powerdown"); }
    void signalpass(std::uint8_t zero) override { put("signalpass", zero); }
    void signalfail(std::uint8_t zero) override { put("signalfail", zero); }
    int readycheck() override { return (put("readycheck"), 0); }
    void readyfail() override { put("readyfail"); }
    int modeselect(std::uint8_t mode) override { return (put("modeselect", mode), 0); }
    int modeselect2(std::uint8_t mode, int second) override {
        return (put("modeselect2", mode, second), 0);
    }
    int modeselect3(std::uint8_t mode, int second) override {
        return (put("modeselect3", mode, second), 0);
    }
    int armready() override { return (put("armready"), 0); }
    void regwrite(std::int32_t value, std::uint8_t reg) override { put("regwrite", value, reg); }
    void qregwrite(std::int32_t value, std::uint8_t reg) override { put("qregwrite", value, reg); }
    std::uint8_t regread(std::uint8_t reg) override {
        put("regread", reg);
        if (samples.empty()) return 255;
        const std::uint8_t sample = samples.front();
        samples.pop_front();
        return sample;
    }
    void qregread(std::uint8_t reg) override { put("qregread", reg); }
    void waitshort(std::int32_t n) override { put("waitshort", n); }
    void qwaitshort(std::int32_t n) override { put("qwaitshort", n); }
    void waitlong(std::int32_t n) override { put("waitlong", n); }
    void qwaitlong(std::int32_t n) override { put("qwaitlong", n); }
    void qrun() override { put("qrun"); }
    void buswrite(std::int32_t address, std::uint8_t data, std::uint8_t control) override {
        put("buswrite", address, data, control);
    }
    void qbuswrite(std::int32_t address, std::uint8_t data, std::uint8_t control) override {
        put("qbuswrite", address, data, control);
    }
    void busconfig(std::int32_t zero, std::uint8_t direction, std::uint8_t mode) override {
        put("busconfig", zero, direction, mode);
    }
    void qbusconfig(std::int32_t zero, std::uint8_t direction, std::uint8_t mode) override {
        put("qbusconfig", zero, direction, mode);
    }
    int checkbyte(std::int16_t, std::int32_t, int) override { return 0; }
    int checkword(std::uint8_t, std::uint8_t, std::int32_t, int, int) override { return 0; }
    bool transferwait(std::uint8_t) override { return true; }
    void loadalgobuf(std::int32_t&) override {}

  private:
    template <typename... Arguments>
    void put(std::string name, Arguments... arguments) {
        ((name += " " + std::to_string(arguments)), ...);
        calls.push_back(std::move(name));
    }
};

// The calls with "qregwrite " shortened to "": "214 0" is a queued write of 214 to register 0.
inline std::vector<std::string> shortened(std::vector<std::string> calls) {
    for (std::string& call : calls)
        if (call.starts_with("qregwrite ")) call.erase(0, 10);
    return calls;
}

}  // namespace keld2::testing
