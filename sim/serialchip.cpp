#include "sim/serialchip.h"

#include <algorithm>
#include <utility>

namespace keld2::sim {

namespace {

constexpr std::uint8_t datareg = 4;
constexpr std::uint8_t directionreg = 5;
constexpr std::uint8_t controlreg = 6;
constexpr std::uint8_t deselectbit = 0x40;
constexpr std::uint8_t strobebit = 0x20;
constexpr std::uint8_t openbits = 0x0A;

constexpr std::uint8_t framestart = 170;
constexpr std::uint8_t erasekey = 250;  // in configuration byte 0
constexpr std::size_t configurationbytes = 2;

bool selected(std::uint8_t control) { return (control & deselectbit) == 0; }

}  // namespace

enum class SerialChip::Action : std::uint8_t {
    enable,
    readid,
    readprogram,
    readidarea,
    readconfig0,
    readconfig1,
    loadpage,
    writeprogram,
    writeidarea,
    writeconfig0,
    writeconfig1,
    erase
};

struct SerialChip::Command {
    std::uint8_t code = 0;
    std::size_t header = 0;  // bytes, with the frame start and the code
    Action action = Action::enable;
};

const std::array<SerialChip::Command, 12> SerialChip::commands{{
    {.code = 172, .header = 3, .action = Action::enable},
    {.code = 56, .header = 4, .action = Action::readid},
    {.code = 48, .header = 4, .action = Action::readprogram},
    {.code = 50, .header = 4, .action = Action::readidarea},
    {.code = 97, .header = 4, .action = Action::readconfig0},
    {.code = 100, .header = 4, .action = Action::readconfig1},
    {.code = 81, .header = 4, .action = Action::loadpage},
    {.code = 80, .header = 4, .action = Action::writeprogram},
    {.code = 82, .header = 4, .action = Action::writeidarea},
    {.code = 225, .header = 4, .action = Action::writeconfig0},
    {.code = 228, .header = 4, .action = Action::writeconfig1},
    {.code = 138, .header = 2, .action = Action::erase},
}};

SerialChip::SerialChip(SerialParameters parameters, const Faults& faults)
    : p_(std::move(parameters)),
      program_(p_.programbytes, faults.stuck),
      idarea_(p_.idbytes),
      configuration_(configurationbytes) {
    if (faults.wrongid) p_.id[1] ^= 0xFF;
}

std::vector<StateSection> SerialChip::state() {
    return {{"program", program_.bytes()},
            {"idarea", idarea_.bytes()},
            {"configuration", configuration_.bytes()},
            {"erasekey", erasekey_}};
}

void SerialChip::supplieschanged(const Socket& socket) {
    settle(socket);
    const bool powered = p_.supplies.powered(socket);
    const bool vpp = p_.supplies.hasvpp(socket);
    if (powered && !powered_) keyatpowerup_ = erasekey_[0] != 0;
    if (!powered || !vpp) {
        job_.reset();
        enabled_ = false;
        beginframe();
    }
    if (!powered) loaded_.clear();
    powered_ = powered;
    vpp_ = vpp;
}

void SerialChip::registerwritten(const Socket& socket, std::uint8_t reg) {
    if (reg != controlreg) return;
    const std::uint8_t before = std::exchange(control_, socket.registers[controlreg]);
    if (!powered_ || !vpp_) return;
    const bool was = selected(before);
    const bool is = selected(control_);
    if (is && !was) beginframe();
    if (was && !is) endframe(socket);
    const bool fell = (before & strobebit) != 0 && (control_ & strobebit) == 0;
    if (is && was && fell && (control_ & openbits) == openbits) strobe(socket);
}

std::uint8_t SerialChip::registerread(const Socket& socket, std::uint8_t reg, std::uint8_t idle) {
    if (reg != datareg) return idle;
    const std::uint8_t chips = socket.registers[directionreg];  // lines that the chip may drive
    const bool drives = powered_ && enabled_ && !job_ && selected(control_) && headercomplete();
    const std::uint8_t level = drives ? shown() : idle;
    return static_cast<std::uint8_t>((socket.registers[datareg] & ~chips) | (level & chips));
}

void SerialChip::beginframe() {
    frame_.clear();
    data_.clear();
    position_ = 0;
    command_ = nullptr;
}

bool SerialChip::headercomplete() const {
    return command_ != nullptr && frame_.size() == command_->header;
}

void SerialChip::strobe(const Socket& socket) {
    settle(socket);
    if (job_) return;
    takebyte(socket.registers[datareg]);
}

void SerialChip::takebyte(std::uint8_t b) {
    if (headercomplete()) {
        if (data_.size() < p_.pagebytes) data_.resize(p_.pagebytes, erased);
        data_[position_++ % p_.pagebytes] = b;
        return;
    }
    if (frame_.size() >= 4) return;  // a frame that nobody understands
    frame_.push_back(b);
    if (frame_.size() == 2 && frame_[0] == framestart) command_ = find(b);
}

const SerialChip::Command* SerialChip::find(std::uint8_t code) {
    const auto row = std::ranges::find(commands, code, &Command::code);
    return row == commands.end() ? nullptr : &*row;
}

std::uint32_t SerialChip::operand() const {
    return static_cast<std::uint32_t>(frame_[2] << 8 | frame_[3]);
}

// The byte that the chip drives: the one at the position that the strobes have reached.
std::uint8_t SerialChip::shown() const {
    switch (command_->action) {
        case Action::readid:
            return position_ < p_.id.size() ? p_.id[position_] : erased;
        case Action::readprogram:
            return program_.read(operand() + position_);
        case Action::readidarea:  // always from its first byte
            return idarea_.read(position_);
        case Action::readconfig0:
            return configuration_.read(0);
        case Action::readconfig1:
            return configuration_.read(1);
        default:
            return erased;
    }
}

void SerialChip::endframe(const Socket& socket) {
    settle(socket);
    if (!job_ && headercomplete()) carryout(socket, *command_);
    beginframe();
}

void SerialChip::carryout(const Socket& socket, const Command& command) {
    constexpr std::uint8_t enableoperand = 83;
    if (command.action == Action::enable) {
        enabled_ = enabled_ || frame_[2] == enableoperand;
        return;
    }
    if (!enabled_) return;
    switch (command.action) {
        case Action::loadpage:
            loaded_ = data_;
            break;
        case Action::writeprogram:
        case Action::writeidarea:
            if (pagerepeated()) start(socket, command.action, p_.writetime);
            loaded_.clear();
            break;
        case Action::writeconfig0:
        case Action::writeconfig1:
            if (position_ > 0) start(socket, command.action, p_.configtime);
            break;
        case Action::erase:
            if (keyatpowerup_) start(socket, command.action, p_.erasetime);
            break;
        default:
            break;
    }
}

bool SerialChip::pagerepeated() const { return !loaded_.empty() && loaded_ == data_; }

void SerialChip::start(const Socket& socket, Action action, std::uint64_t time) {
    job_ = Job{.action = action,
               .address = frame_.size() == 4 ? operand() : 0,
               .bytes = data_,
               .done = socket.now + time};
}

void SerialChip::settle(const Socket& socket) {
    if (!job_ || socket.now < job_->done) return;
    finishjob();
    job_.reset();
}

void SerialChip::finishjob() {
    switch (job_->action) {
        case Action::writeprogram:
            return writepage(program_);
        case Action::writeidarea:
            return writepage(idarea_);
        case Action::writeconfig0:
            erasekey_[0] = job_->bytes[0] == erasekey ? 1 : 0;
            return configuration_.program(0, job_->bytes[0]);
        case Action::writeconfig1:
            return configuration_.program(1, job_->bytes[0]);
        case Action::erase:
            program_.erase();
            idarea_.erase();
            configuration_.erase();
            erasekey_[0] = 0;
            keyatpowerup_ = false;
            return;
        default:
            return;
    }
}

// The bytes of a page run on to its end and then from its beginning.
void SerialChip::writepage(Cells& cells) {
    const auto page = static_cast<std::uint32_t>(p_.pagebytes);
    const std::uint32_t base = job_->address / page * page;
    for (std::uint32_t i = 0; i < page; ++i)
        cells.program(base + (job_->address + i) % page, job_->bytes[i]);
}

std::unique_ptr<Chip> makeserialchip(SpecReader& spec, const Faults& faults) {
    constexpr std::int64_t addressable = 65536;
    SerialParameters p;
    p.programbytes = static_cast<std::size_t>(spec.integer("program", 1, addressable));
    p.idbytes = static_cast<std::size_t>(spec.integer("idarea", 0, addressable));
    p.pagebytes = static_cast<std::size_t>(spec.integer("page", 1, addressable));
    const std::vector<std::int64_t> id = spec.integers("id", 0, 255);
    if (id.size() != p.id.size()) spec.refuse("id", "has not three bytes");
    std::ranges::transform(id, p.id.begin(), [](auto b) { return static_cast<std::uint8_t>(b); });
    p.supplies = spec.supplies();
    p.writetime = spec.microseconds("writetime");
    p.configtime = spec.microseconds("configtime");
    p.erasetime = spec.microseconds("erasetime");
    return std::make_unique<SerialChip>(std::move(p), faults);
}

}  // namespace keld2::sim
