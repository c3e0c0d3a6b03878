#include "sim/fixedlogicchip.h"

#include <algorithm>

#include "sim/jtagchip.h"

namespace keld2::sim {

namespace {

namespace instruction {
constexpr std::uint32_t selectrow = 0x01;
constexpr std::uint32_t erase = 0x03;
constexpr std::uint32_t secure = 0x09;
constexpr std::uint32_t discharge = 0x14;
constexpr std::uint32_t programmingmode = 0x15;
constexpr std::uint32_t devicecode = 0x16;
constexpr std::uint32_t usercode = 0x17;
constexpr std::uint32_t programusercode = 0x1A;
constexpr std::uint32_t preload = 0x1C;
constexpr std::uint32_t firstrow = 0x21;
constexpr std::uint32_t programrow = 0x27;
constexpr std::uint32_t readrow = 0x2A;
}  // namespace instruction

constexpr std::size_t usercodebits = 32;

}  // namespace

FixedLogicChip::FixedLogicChip(const FixedLogicDevice& device, const Faults& faults)
    : device_(device),
      fuses_(device.rows * device.width, faults.stuck),
      usercode_(usercodebits),
      security_(1) {
    if (faults.wrongid) device_.code[0] ^= 0xFF;
    poweroff();
}

std::vector<StateSection> FixedLogicChip::state() {
    return {{"fuses", fuses_.bytes()},
            {"usercode", usercode_.bytes()},
            {"security", security_.bytes()}};
}

std::uint32_t FixedLogicChip::resetinstruction() const { return instruction::devicecode; }

RegisterCells FixedLogicChip::codecells() const {
    RegisterCells cells;
    for (const std::uint8_t byte : device_.code)
        for (int k = 0; k < 8; ++k) cells.push_back((byte >> k & 1) != 0);
    return cells;
}

RegisterCells FixedLogicChip::usercodecells() const {
    RegisterCells cells(usercodebits);
    for (std::size_t i = 0; i < usercodebits; ++i) cells[i] = isset(usercode_, i);
    return cells;
}

RegisterCells FixedLogicChip::capture(std::uint32_t instruction) {
    switch (instruction) {
        case instruction::devicecode:
            return codecells();
        case instruction::usercode:
        case instruction::programusercode:
            return usercodecells();
        case instruction::selectrow:
            return RegisterCells(device_.rows);
        case instruction::readrow:
            return fetched_;
        case instruction::programrow:
            return RegisterCells(device_.width);
        case instruction::preload:
            return RegisterCells(device_.preloadbits);
        default:
            return RegisterCells(1);  // bypass
    }
}

void FixedLogicChip::update(std::uint32_t instruction, const RegisterCells& cells) {
    stay_ = 0;
    if (instruction == instruction::selectrow) select_ = cells;
    const bool data =
        instruction == instruction::programrow || instruction == instruction::programusercode;
    if (data) data_ = cells;
    pending_ = data;
}

void FixedLogicChip::enter(std::uint32_t instruction) {
    stay_ = 0;
    pending_ = instruction == instruction::erase || instruction == instruction::discharge ||
               instruction == instruction::secure || instruction == instruction::readrow;
    if (instruction == instruction::programmingmode) programming_ = true;
    if (instruction == instruction::firstrow) row_ = 0;
    if (instruction == instruction::readrow) fetched_.assign(device_.width, false);
}

void FixedLogicChip::reset() {
    programming_ = false;
    charged_ = false;
    pending_ = false;
    stay_ = 0;
    row_ = 0;
    select_.assign(device_.rows, false);
    data_.clear();
    fetched_.assign(device_.width, false);
}

void FixedLogicChip::idle(std::uint32_t instruction, std::int64_t microseconds) {
    stay_ += microseconds;
    if (!pending_ || !programming_) return;
    const auto pulse = [this](std::int64_t time, auto effect) {
        if (stay_ < time) return;
        pending_ = false;
        effect();
    };
    switch (instruction) {
        case instruction::readrow:
            return pulse(device_.fetchtime, [this] { fetchrow(); });
        case instruction::programrow:
            return pulse(device_.programtime, [this] { programrow(); });
        case instruction::programusercode:
            return pulse(device_.programtime, [this] { programusercode(); });
        case instruction::erase:
            return pulse(device_.erasetime, [this] { erase(); });
        case instruction::discharge:
            return pulse(device_.dischargetime, [this] { charged_ = false; });
        case instruction::secure:
            return pulse(device_.securetime, [this] { security_.program(0, 0); });
        default:
            return;
    }
}

// Rows that are selected together pull each other down; none selected reads as ones.
void FixedLogicChip::fetchrow() {
    fetched_.assign(device_.width, readable());
    if (!readable()) return;
    for (std::size_t row = 0; row < device_.rows; ++row) {
        if (!select_[device_.rows - 1 - row]) continue;
        for (std::size_t i = 0; i < device_.width; ++i)
            fetched_[i] = fetched_[i] && fuse(row * device_.width + i);
    }
}

void FixedLogicChip::programrow() {
    if (row_ < device_.rows && readable()) burn(fuses_, row_ * device_.width, data_);
    ++row_;
}

void FixedLogicChip::programusercode() {
    if (readable()) burn(usercode_, 0, data_);
}

// A pulse takes cells to 0 where data is 0, and leaves the others.
void FixedLogicChip::burn(Cells& cells, std::size_t first, const RegisterCells& data) {
    for (std::size_t i = 0; i < data.size(); ++i)
        if (!data[i]) cells.program(first + i, 0xFE);
}

void FixedLogicChip::erase() {
    fuses_.erase();
    usercode_.erase();
    security_.erase();
    charged_ = true;
}

std::unique_ptr<Chip> makefixedlogicchip(SpecReader& spec, const Faults& faults) {
    constexpr std::int64_t most = 10'000;  // rows, fuses of a row, preload bits
    constexpr std::int64_t longest = 60'000'000;
    FixedLogicDevice device;
    device.rows = static_cast<std::size_t>(spec.integer("rows", 1, most));
    device.width = static_cast<std::size_t>(spec.integer("width", 1, most));
    const std::vector<std::int64_t> code = spec.integers("code", 0, 255);
    if (code.size() != device.code.size()) spec.refuse("code", "has not four bytes");
    std::ranges::transform(code, device.code.begin(),
                           [](auto byte) { return static_cast<std::uint8_t>(byte); });
    device.preloadbits = static_cast<std::size_t>(spec.integer("preload", 1, most));
    device.fetchtime = spec.integer("fetchtime", 0, longest);
    device.programtime = spec.integer("programtime", 0, longest);
    device.erasetime = spec.integer("erasetime", 0, longest);
    device.dischargetime = spec.integer("dischargetime", 0, longest);
    device.securetime = spec.integer("securetime", 0, longest);
    return std::make_unique<JtagChip>(readsocketing(spec),
                                      std::make_unique<FixedLogicChip>(device, faults));
}

}  // namespace keld2::sim
