#include "sim/parallelchip.h"

#include <algorithm>
#include <utility>

namespace keld2::sim {

namespace {

constexpr std::uint8_t datareg = 0;
constexpr std::uint8_t controlreg = 6;
constexpr std::uint8_t resetbit = 0x10;  // of the control register

// Bits of the control byte of a bus cycle.
constexpr std::uint8_t writeenable = 1;
constexpr std::uint8_t chipenable = 2;
constexpr std::uint8_t outputenable = 4;

namespace commandcode {
constexpr std::uint8_t read = 0x00;
constexpr std::uint8_t erase = 0x20;
constexpr std::uint8_t program = 0x40;
constexpr std::uint8_t check = 0xC0;
constexpr std::uint8_t reset = 0xFF;
}  // namespace commandcode

constexpr std::uint8_t readybit = 0x80;
constexpr std::uint8_t errorbit = 0x20;

}  // namespace

ParallelChip::ParallelChip(ParallelParameters parameters, const Faults& faults)
    : p_(std::move(parameters)), cells_(p_.size, faults.stuck) {}

std::vector<StateSection> ParallelChip::state() { return {{"cells", cells_.bytes()}}; }

void ParallelChip::supplieschanged(const Socket& socket) {
    settle(socket);
    powered_ = p_.supplies.powered(socket);
    vpp_ = p_.supplies.hasvpp(socket);
    if (!powered_) reset();
    if (!vpp_ && job_) {
        job_.reset();
        error_ = true;
    }
}

void ParallelChip::registerwritten(const Socket& socket, std::uint8_t reg) {
    if (reg != controlreg) return;
    settle(socket);
    inreset_ = (socket.registers[controlreg] & resetbit) == 0;
    if (inreset_) reset();
}

void ParallelChip::reset() {
    mode_ = Mode::array;
    error_ = false;
    job_.reset();
    strobed_.reset();
    forget();
}

bool ParallelChip::selected(const Socket& socket) const {
    return !socket.bus.high(chipenable) &&
           (static_cast<std::uint32_t>(socket.bus.address) & p_.select) == p_.select;
}

std::uint32_t ParallelChip::chipaddress(std::int32_t bus) const {
    return static_cast<std::uint32_t>(bus) & ((1U << p_.pins) - 1);
}

// --- the lines -----------------------------------------------------------------------------------

void ParallelChip::busmoved(const Socket& socket) {
    const bool strobe = works(socket) && !socket.bus.high(writeenable);
    if (strobed_ && !strobe) written(socket, *std::exchange(strobed_, std::nullopt));
    if (strobe)
        strobed_ = Datum{.address = chipaddress(socket.bus.address), .data = socket.bus.driven()};
}

std::uint8_t ParallelChip::registerread(const Socket& socket, std::uint8_t reg, std::uint8_t idle) {
    if (reg != datareg) return idle;
    settle(socket);
    const bool drives = works(socket) && !socket.bus.high(outputenable);
    const std::uint8_t chips = socket.bus.direction;  // lines that the chip may drive
    const std::uint8_t level = drives ? shown(socket) : idle;
    return static_cast<std::uint8_t>((socket.bus.data & ~chips) | (level & chips));
}

std::uint8_t ParallelChip::shown(const Socket& socket) const {
    if (error_) return errorbit;
    if (job_) return 0;
    if (mode_ != Mode::array) return readybit;
    const std::uint32_t address = chipaddress(socket.bus.address);
    return address >= p_.start ? cells_.read(address - p_.start) : pulledup;
}

// --- commands ------------------------------------------------------------------------------------

void ParallelChip::written(const Socket& socket, Datum datum) {
    settle(socket);
    if (programming()) disturbed();
    if (job_) return;
    if (mode_ == Mode::program && !error_) return takedata(socket, datum);
    command(socket, datum.data);
}

void ParallelChip::command(const Socket& socket, std::uint8_t code) {
    if (code == commandcode::reset) return reset();
    if (error_) return;
    const bool seconderase = mode_ == Mode::erasesetup && code == commandcode::erase;
    switch (code) {
        case commandcode::read:
            mode_ = Mode::array;
            break;
        case commandcode::check:
            mode_ = Mode::status;
            break;
        case commandcode::program:
            mode_ = Mode::program;
            break;
        case commandcode::erase:
            mode_ = seconderase ? Mode::status : Mode::erasesetup;
            if (seconderase) erase(socket);
            break;
        default:
            mode_ = Mode::array;
            break;
    }
}

void ParallelChip::erase(const Socket& socket) {
    error_ = !vpp_;
    if (!error_) job_ = Job{.erase = true, .done = socket.now + p_.erasetime};
}

void ParallelChip::program(std::uint64_t from, std::vector<Datum> data) {
    error_ = !vpp_;
    if (!error_) job_ = Job{.data = std::move(data), .done = from + p_.programtime};
}

void ParallelChip::settle(const Socket& socket) {
    timepasses(socket);
    if (!job_ || socket.now < job_->done) return;
    const Job job = *std::exchange(job_, std::nullopt);
    if (job.erase) cells_.erase();
    for (const Datum& datum : job.data)
        if (datum.address >= p_.start) cells_.program(datum.address - p_.start, datum.data);
}

void ByteChip::takedata(const Socket& socket, Datum datum) {
    endprogramming();
    program(socket.now, {datum});
}

void PageChip::takedata(const Socket& socket, Datum datum) {
    page_.push_back(datum);
    lastload_ = socket.now;
    if (page_.size() == pagebytes_) write(socket.now);
}

void PageChip::timepasses(const Socket& socket) {
    if (!page_.empty() && socket.now > lastload_ + loadtime_) write(lastload_ + loadtime_);
}

// All bytes go to the page of the first one.
void PageChip::write(std::uint64_t from) {
    const std::uint32_t page = page_.front().address / pagebytes_ * pagebytes_;
    for (Datum& datum : page_) datum.address = page + datum.address % pagebytes_;
    endprogramming();
    program(from, std::exchange(page_, {}));
}

// --- making --------------------------------------------------------------------------------------

namespace {

constexpr std::int64_t buslines = 25;

ParallelParameters readparameters(SpecReader& spec) {
    ParallelParameters p;
    p.pins = static_cast<std::uint32_t>(spec.integer("pins", 1, buslines));
    const std::int64_t cells = std::int64_t{1} << p.pins;
    p.start = static_cast<std::uint32_t>(spec.integer("start", 0, cells - 1, 0));
    p.size = static_cast<std::uint32_t>(spec.integer("size", 1, cells - p.start));
    p.select =
        static_cast<std::uint32_t>(spec.integer("select", 0, (std::int64_t{1} << buslines) - 1, 0));
    p.supplies = spec.supplies();
    p.programtime = spec.microseconds("programtime");
    p.erasetime = spec.microseconds("erasetime");
    return p;
}

}  // namespace

std::unique_ptr<Chip> makebytechip(SpecReader& spec, const Faults& faults) {
    return std::make_unique<ByteChip>(readparameters(spec), faults);
}

std::unique_ptr<Chip> makepagechip(SpecReader& spec, const Faults& faults) {
    const ParallelParameters p = readparameters(spec);
    const auto page = static_cast<std::uint32_t>(spec.integer("page", 1, p.size));
    return std::make_unique<PageChip>(p, faults, page, spec.microseconds("loadtime"));
}

}  // namespace keld2::sim
