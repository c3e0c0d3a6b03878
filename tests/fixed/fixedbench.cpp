#include "fixed/fixedbench.h"

#include <algorithm>
#include <sstream>

#include "platform/numbers.h"

namespace keld2::testing {

namespace {

using enum sim::TapState;

}  // namespace

void Chip::take(const std::vector<std::string>& calls) {
    for (const std::string& call : calls) {
        std::istringstream in(call);
        std::string name;
        int first = 0;
        int second = 0;
        in >> name >> first >> second;
        if (name == "qwaitlong" && state_ == runtestidle && instruction_ != 0)
            pauses.emplace_back(instruction_, first);
        if (name != "qregwrite") continue;
        if (second >= shiftcode::clock8)
            shift(second, first);
        else
            write(first, second);
    }
}

void Chip::write(int value, int reg) {
    const bool tckbefore = tck_;
    const auto level = [&](bool& line, RegisterBits bits) {
        if (bits.reg == reg) line = (value & bits.bits) != 0;
    };
    level(tms_, wiring_.tms);
    level(tdi_, wiring_.tdi);
    level(tck_, wiring_.tck);
    if (tck_ && !tckbefore) clock();
}

// shiftout8b drives bit 7 first, in this family's list mode.
void Chip::shift(int code, int value) {
    for (int k = 0; k < 8; ++k) {
        if (code == shiftcode::shiftout8) tdi_ = (value >> k & 1) != 0;
        if (code == shiftcode::shiftout8b) tdi_ = (value >> (7 - k) & 1) != 0;
        clock();
    }
}

void Chip::clock() {
    if (state_ == shiftdr || state_ == shiftir) bits_ += tdi_ ? '1' : '0';
    state_ = sim::next(state_, tms_);
    if (state_ == capturedr || state_ == captureir) bits_.clear();
    if (state_ == updatedr) scans.push_back({instruction_, bits_});
    if (state_ != updateir) return;
    instruction_ = 0;
    for (std::size_t i = 0; i < bits_.size(); ++i) instruction_ |= (bits_[i] - '0') << i;
    instructions.push_back(instruction_);
}

FixedBench::FixedBench(std::uint8_t family, std::int32_t fuses, sim::SimProgrammer* programmer)
    : Script(255),
      PlatformDecorator(machine_),
      family_(findjtagfamily(family)),
      geometry_(findgeometry(fuses)),
      module_(*this, programmer != nullptr ? simulated(*programmer) : external()) {
    ClsKELD2(module_).bufcomkeld2(0);
    s().buflength[0] = fuses;
    ClsKELD2(module_).freesharebufferkeld2();
    s().mapbuffers([] {});
    s().prgmode[0] = family;
    s().tlength[0] = fuses;
    s().bvccpin[0] = 40;
    s().pwte[0] = 1500;
    for (int i = 0; i < 20; ++i) s().MainmnuPrg[i] = u"op";
    s().prgnote[2] = u" OK";
    s().prgnote[3] = u" failed";
    s().prgnote[4] = u"stopped";
    s().prgnote[12] = u"late";
    setcells(0, std::string(static_cast<std::size_t>(fuses) + usercodebits, '1'));
    bulk.emplace_back(id(acceptedcodes[0]));
}

External FixedBench::simulated(sim::SimProgrammer& programmer) {
    return {.devcore = [&programmer](SharedVariables& s) { return programmer.devcore(s); },
            .transport = [&programmer](SharedVariables&) { return programmer.transport(); },
            .helper = {}};
}

void FixedBench::run(std::int16_t op) {
    s().prgresult[1] = static_cast<std::uint8_t>(op);
    bulkreads = 0;
    ClsKELD2(module_).runKeld2Prg(false);
}

std::uint8_t FixedBench::raw(char bit) const {
    const std::uint8_t mask = family_ != nullptr ? family_->wiring.tdo.bits : std::uint8_t{0};
    return bit == '1' ? std::uint8_t{0xFF} : static_cast<std::uint8_t>(~mask);
}

Bytes FixedBench::rows(const std::string& map) const {
    Bytes bytes;
    const auto width = static_cast<std::size_t>(geometry_.width);
    for (std::size_t row = 0; row < map.size(); row += width) {
        const std::size_t whole = width / 8 * 8;
        for (std::size_t bit = 0; bit < whole; bit += 8)
            bytes.push_back(
                static_cast<std::uint8_t>(std::stoi(map.substr(row + bit, 8), nullptr, 2)));
        for (std::size_t bit = whole; bit < width; ++bit) bytes.push_back(raw(map[row + bit]));
    }
    return bytes;
}

Bytes FixedBench::id(DeviceCode code) const {
    Bytes bytes;
    for (const std::uint8_t byte : code)
        for (int k = 0; k < 8; ++k) bytes.push_back(raw((byte >> k & 1) != 0 ? '1' : '0'));
    return bytes;
}

std::deque<std::uint8_t> FixedBench::usercode(const std::string& cells) const {
    std::deque<std::uint8_t> list;
    for (const char cell : cells) list.push_front(raw(cell));
    return list;
}

std::string FixedBench::cells(std::int64_t first, std::int64_t count) const {
    std::string text;
    for (std::int64_t i = 0; i < count; ++i)
        text += static_cast<char>(module_.variables().ibuffer[first + i]);
    return text;
}

void FixedBench::setcells(std::int64_t first, const std::string& text) {
    for (const char cell : text) s().ibuffer[first++] = static_cast<std::uint8_t>(cell);
}

std::size_t FixedBench::count(const std::string& call) const {
    return static_cast<std::size_t>(std::count(devcore->calls.begin(), devcore->calls.end(), call));
}

BoxAnswer FixedBench::messagebox(const Box& box) {
    boxes.push_back(utf8(box.text));
    return boxesshown_ < answers.size() ? answers[boxesshown_++] : BoxAnswer::abort;
}

std::string FixedBench::utf8text(int index) const {
    return utf8(module_.variables().MainRtstr[index].text());
}

}  // namespace keld2::testing
