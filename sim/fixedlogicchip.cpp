#include "sim/fixedlogicchip.h"

#include <algorithm>

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

// A pulse takes cells to 0 where data is 0, and leaves the others.
void burn(RegisterCells& cells, std::size_t first, const RegisterCells& data) {
    for (std::size_t i = 0; i < data.size(); ++i)
        if (!data[i]) cells[first + i] = false;
}

}  // namespace

FixedLogicChip::FixedLogicChip(const FixedLogicDevice& device)
    : device_(device),
      fuses_(std::size_t{device.rows} * device.width, true),
      usercode_(usercodebits, true) {
    poweroff();
}

void FixedLogicChip::setusercode(std::uint32_t code) {
    for (std::size_t i = 0; i < usercodebits; ++i) usercode_[i] = (code >> i & 1) != 0;
}

std::uint32_t FixedLogicChip::resetinstruction() const { return instruction::devicecode; }

RegisterCells FixedLogicChip::codecells() const {
    RegisterCells cells;
    for (const std::uint8_t byte : device_.code)
        for (int k = 0; k < 8; ++k) cells.push_back((byte >> k & 1) != 0);
    return cells;
}

RegisterCells FixedLogicChip::capture(std::uint32_t instruction) {
    switch (instruction) {
        case instruction::devicecode:
            return codecells();
        case instruction::usercode:
        case instruction::programusercode:
            return usercode_;
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
            return pulse(device_.securetime, [this] { secured_ = true; });
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
            fetched_[i] = fetched_[i] && fuses_[row * device_.width + i];
    }
}

void FixedLogicChip::programrow() {
    if (row_ < device_.rows && readable()) burn(fuses_, std::size_t{row_} * device_.width, data_);
    ++row_;
}

void FixedLogicChip::programusercode() {
    if (readable()) burn(usercode_, 0, data_);
}

void FixedLogicChip::erase() {
    fuses_.assign(fuses_.size(), true);
    usercode_.assign(usercode_.size(), true);
    secured_ = false;
    charged_ = true;
}

}  // namespace keld2::sim
