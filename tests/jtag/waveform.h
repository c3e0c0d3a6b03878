// A queued list as a chip would see it: "10*5" is five clocks with TMS 1 and TDI 0, "s" a sample,
// "142:0*12" a shift code with its value, other calls stand as they are.
#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "jtag/wiring.h"

namespace keld2::testing {

class Waveform {
  public:
    explicit Waveform(std::uint8_t family) : wiring_(findjtagfamily(family)->wiring) {}

    std::string operator()(const std::vector<std::string>& calls) {
        for (const std::string& call : calls) take(call);
        flush();
        return std::exchange(text_, {});
    }

  private:
    void take(const std::string& call) {
        std::istringstream in(call);
        std::string name;
        int value = 0;
        int reg = 0;
        in >> name >> value >> reg;
        if (name == "qregread")
            put("s");
        else if (name != "qregwrite")
            put(call);
        else if (reg >= shiftcode::clock8)
            put(std::to_string(reg) + ":" + std::to_string(value));
        else
            write(value, reg);
    }
    void write(int value, int reg) {
        const bool tckbefore = tck_;
        const auto level = [&](bool& line, RegisterBits bits) {
            if (bits.reg == reg) line = (value & bits.bits) != 0;
        };
        level(tms_, wiring_.tms);
        level(tdi_, wiring_.tdi);
        level(tck_, wiring_.tck);
        if (tck_ && !tckbefore) put(std::string(tms_ ? "1" : "0") + (tdi_ ? "1" : "0"));
    }
    void put(const std::string& token) {
        if (token != token_) flush();
        token_ = token;
        ++count_;
    }
    void flush() {
        if (count_ > 0) {
            if (!text_.empty()) text_ += ", ";
            text_ += count_ > 1 ? token_ + "*" + std::to_string(count_) : token_;
        }
        token_.clear();
        count_ = 0;
    }

    const Wiring wiring_;
    bool tms_ = false, tck_ = false, tdi_ = false;
    std::string text_, token_;
    int count_ = 0;
};

}  // namespace keld2::testing
