#include "host/tell/buscycles.h"

#include <utility>

#include "host/files/hexbytes.h"
#include "host/tell/words.h"

namespace keld2::host {

namespace {

// Strobes of the control byte, low-active.
constexpr int writestrobe = 1, chipenable = 2, outputenable = 4;
constexpr int datareg = 0;
constexpr int notread = -1;

namespace command {
constexpr std::uint8_t read = 0, erase = 0x20, program = 0x40, check = 0xC0, reset = 0xFF;
}  // namespace command

bool low(int control, int strobe) { return (control & strobe) == 0; }

std::string addresswords(std::int64_t address) {
    return hexwords(static_cast<std::uint32_t>(address), 6);
}

}  // namespace

void BusCycles::take(const TraceLine& line, const StepSink& done) {
    switch (line.call) {
        case Call::buswrite:
        case Call::qbuswrite:
            return bus(line, done);
        case Call::regread:
        case Call::qregread:
            if (line.numbers[0] == datareg && kind_ == Kind::read) return sample(line);
            [[fallthrough]];
        default:
            break;
    }
    const bool pauses = pauseof(line) > 0;
    if (pauses && !cycle_.parts.empty()) return cycle_.add(leafof(line));
    if (pauses && !command_.parts.empty()) return command_.add(leafof(line));
    close(done);
    done(leafof(line));
}

void BusCycles::sample(const TraceLine& line) {
    if (line.call == Call::regread) read_ = line.answernumber();
    cycle_.add(leafof(line));
}

void BusCycles::bus(const TraceLine& line, const StepSink& done) {
    const int control = line.numbers[2];
    const bool writes = low(control, chipenable) && low(control, writestrobe);
    const bool reads = low(control, chipenable) && low(control, outputenable) && !writes;
    if (writes || reads) {
        endcycle(done);
        kind_ = writes ? Kind::write : Kind::read;
        address_ = line.numbers[0];
        data_ = static_cast<std::uint8_t>(line.numbers[1]);
        return cycle_.add(leafof(line));
    }
    if (kind_ == Kind::none && low(control, chipenable))  // what comes is a cycle
        return cycle_.add(leafof(line));
    if (kind_ == Kind::none) {
        close(done);
        return done(leafof(line));
    }
    cycle_.add(leafof(line));
    endcycle(done);
}

void BusCycles::endcycle(const StepSink& done) {
    const Kind kind = std::exchange(kind_, Kind::none);
    if (kind == Kind::write) addwrite(std::exchange(cycle_, {}), done);
    if (kind == Kind::read) addread(std::exchange(cycle_, {}), done);
}

// Whether a write goes on with the command at hand: data behind a program command, at addresses in
// a row, and the check behind them; the second half of an erase.
bool BusCycles::continuescommand() const {
    if (commandkind_ != Kind::write || bytes_.empty()) return false;
    const std::size_t count = bytes_.size();
    if (bytes_[0] == command::erase) return count == 1 && data_ == command::erase;
    if (bytes_[0] != command::program) return false;
    return count == 1 || address_ == lastaddress_ + 1 || data_ == command::check;
}

void BusCycles::addwrite(Step cycle, const StepSink& done) {
    cycle.words = "write " + hexwords(data_, 2) + " at " + addresswords(address_);
    const bool more = continuescommand();
    if (!more) endcommand(done);
    const bool check =
        more && bytes_.size() > 1 && data_ == command::check && address_ != lastaddress_ + 1;
    command_.add(std::move(cycle));
    if (!more) firstaddress_ = address_;
    commandkind_ = Kind::write;
    lastaddress_ = address_;
    bytes_.push_back(data_);
    if (check) {
        bytes_.pop_back();
        endcommand(done);
    }
}

void BusCycles::addread(Step cycle, const StepSink& done) {
    cycle.words = "read at " + addresswords(address_);
    if (read_ != notread) cycle.words += ": " + hexwords(static_cast<std::uint8_t>(read_), 2);
    const bool more = commandkind_ == Kind::read && address_ == lastaddress_ + 1;
    if (!more) endcommand(done);
    if (!more) firstaddress_ = address_;
    commandkind_ = Kind::read;
    lastaddress_ = address_;
    if (read_ != notread) bytes_.push_back(static_cast<std::uint8_t>(read_));
    read_ = notread;
    command_.add(std::move(cycle));
}

std::string BusCycles::wordsofreads() const {
    std::string words = "bus: read at " + addresswords(firstaddress_);
    if (lastaddress_ != firstaddress_)
        words += " to " + addresswords(lastaddress_) + ", " +
                 counted(lastaddress_ - firstaddress_ + 1, "byte");
    return words + (bytes_.empty() ? "" : ": " + hexfrombytes(bytes_));
}

std::string BusCycles::wordsofcommand() const {
    const std::string at = " at " + addresswords(firstaddress_);
    const std::vector<std::uint8_t> behind(bytes_.begin() + 1, bytes_.end());
    switch (bytes_[0]) {
        case command::program:
            return "bus: program " + hexfrombytes(behind) + at;
        case command::erase:
            return behind.empty() ? "bus: half an erase" + at : "bus: erase" + at;
        case command::check:
            return "bus: program check" + at;
        case command::reset:
            return "bus: reset command" + at;
        case command::read:
            return "bus: read command" + at;
        default:
            return "bus: write " + hexfrombytes(bytes_) + at;
    }
}

void BusCycles::endcommand(const StepSink& done) {
    if (!command_.parts.empty()) {
        Step command = std::exchange(command_, {});
        command.words = commandkind_ == Kind::read ? wordsofreads() : wordsofcommand();
        done(std::move(command));
    }
    commandkind_ = Kind::none;
    bytes_.clear();
}

void BusCycles::close(const StepSink& done) {
    endcycle(done);
    endcommand(done);
    for (Step& part : std::exchange(cycle_, {}).parts) done(std::move(part));
}

}  // namespace keld2::host
