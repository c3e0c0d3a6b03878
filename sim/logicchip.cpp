#include "sim/logicchip.h"

#include <utility>

#include "sim/jtagchip.h"

namespace keld2::sim {

namespace {

constexpr std::size_t codebits = 32;
constexpr std::size_t marks = 2;

RegisterCells registerof(std::uint64_t value, std::size_t bits) {
    RegisterCells cells(bits);
    for (std::size_t i = 0; i < bits; ++i) cells[i] = (value >> i & 1) != 0;
    return cells;
}

std::size_t valueof(const RegisterCells& cells) {
    std::size_t value = 0;
    for (std::size_t i = 0; i < cells.size(); ++i)
        if (cells[i]) value |= std::size_t{1} << i;
    return value;
}

}  // namespace

LogicChip::LogicChip(const LogicDevice& device, const Faults& faults)
    : device_(device), cells_(device.rows * device.width, faults.stuck), marks_(marks) {
    if (faults.wrongid) device_.code ^= 0xFF00;
    poweroff();
}

std::vector<StateSection> LogicChip::state() {
    return {{"cells", cells_.bytes()}, {"marks", marks_.bytes()}};
}

RegisterCells LogicChip::capture(std::uint32_t instruction) {
    switch (instruction) {
        case logicinstruction::devicecode:
            return registerof(device_.code, codebits);
        case logicinstruction::status:
            return statuscells();
        case logicinstruction::address:
            return registerof(address_, logicaddressbits);
        case logicinstruction::read:
            return rowcells();
        case logicinstruction::program:
            return emptyrow();
        default:
            return RegisterCells(1);  // bypass
    }
}

RegisterCells LogicChip::statuscells() const {
    RegisterCells cells(logicstatusbits);
    cells[logicstatus::programming] = programming_;
    cells[logicstatus::done] = done();
    cells[logicstatus::secured] = secured();
    cells[logicstatus::shortpulse] = shortpulse_;
    return cells;
}

RegisterCells LogicChip::rowcells() const {
    RegisterCells cells(device_.width + device_.padding);
    if (programming_ && !secured() && address_ < device_.rows)
        for (std::size_t i = 0; i < device_.width; ++i)
            cells[i] = cell(address_ * device_.width + i);
    return cells;
}

// Row after row: the address moves on as the next row comes.
RegisterCells LogicChip::emptyrow() {
    if (std::exchange(loaded_, false)) ++address_;
    return RegisterCells(device_.width + device_.padding);
}

void LogicChip::update(std::uint32_t instruction, const RegisterCells& cells) {
    startpulse(instruction == logicinstruction::program);
    if (instruction == logicinstruction::address) {
        address_ = valueof(cells);
        loaded_ = false;
    } else if (instruction == logicinstruction::read) {
        ++address_;
    } else if (instruction == logicinstruction::program) {
        data_ = cells;
        loaded_ = true;
    }
}

void LogicChip::enter(std::uint32_t instruction) {
    startpulse(instruction == logicinstruction::erase || instruction == logicinstruction::done ||
               instruction == logicinstruction::secure);
    if (instruction == logicinstruction::enable) {
        programming_ = true;
        shortpulse_ = false;
    }
    if (instruction == logicinstruction::disable) programming_ = false;
}

void LogicChip::startpulse(bool wanted) {
    shortpulse_ = shortpulse_ || pending_;
    pending_ = wanted;
    stay_ = 0;
}

void LogicChip::reset() {
    programming_ = false;
    pending_ = false;
    shortpulse_ = false;
    loaded_ = false;
    stay_ = 0;
    address_ = 0;
    data_.clear();
}

void LogicChip::idle(std::uint32_t instruction, std::int64_t microseconds) {
    stay_ += microseconds;
    if (!pending_ || !programming_ || stay_ < pulsetime(instruction)) return;
    pending_ = false;
    givepulse(instruction);
}

std::int64_t LogicChip::pulsetime(std::uint32_t instruction) const {
    if (instruction == logicinstruction::erase) return device_.erasetime;
    return instruction == logicinstruction::secure ? device_.securetime : device_.programtime;
}

void LogicChip::givepulse(std::uint32_t instruction) {
    switch (instruction) {
        case logicinstruction::program:
            return programrow();
        case logicinstruction::done:
            return marks_.program(donemark, 0);
        case logicinstruction::secure:
            return marks_.program(securemark, 0);
        default:
            cells_.erase();
            marks_.erase();
    }
}

void LogicChip::programrow() {
    if (secured() || address_ >= device_.rows) return;
    for (std::size_t i = 0; i < device_.width; ++i)
        if (!data_[i]) cells_.program(address_ * device_.width + i, 0xFE);
}

std::unique_ptr<Chip> makelogicchip(SpecReader& spec, const Faults& faults) {
    constexpr std::int64_t most = 10'000;  // rows, cells of a row
    constexpr std::int64_t longest = 60'000'000;
    LogicDevice device;
    device.rows = static_cast<std::size_t>(spec.integer("rows", 1, most));
    device.width = static_cast<std::size_t>(spec.integer("width", 1, most));
    device.padding = static_cast<std::size_t>(spec.integer("padding", 0, most, 0));
    device.instructionbits = static_cast<std::size_t>(spec.integer("instructionbits", 6, 15));
    device.code = static_cast<std::uint32_t>(spec.integer("code", 0, 0xFFFFFFFF));
    device.programtime = spec.integer("programtime", 0, longest);
    device.erasetime = spec.integer("erasetime", 0, longest);
    device.securetime = spec.integer("securetime", 0, longest);
    return std::make_unique<JtagChip>(readsocketing(spec),
                                      std::make_unique<LogicChip>(device, faults));
}

}  // namespace keld2::sim
