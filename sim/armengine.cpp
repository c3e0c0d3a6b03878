#include "sim/armengine.h"

#include <algorithm>

namespace keld2::sim {

namespace {

// Byte 0 of frames.
constexpr std::uint8_t selectkind = 0x0A;
constexpr std::uint8_t imagekind = 0x33;
constexpr std::uint8_t commandkind = 0x34;
// Byte 1 of command frames that are no operations.
constexpr std::uint8_t firmwarequery = 0x1A;
constexpr std::uint8_t devicecodequery = 0x1D;
constexpr std::uint8_t stoprequest = 0x1E;
// Byte 2 of image and select frames.
constexpr std::uint8_t towrite = 0x80;
constexpr std::uint8_t toread = 0x40;

constexpr std::uint8_t done = 100;
constexpr std::uint8_t nearlydone = 99;
constexpr std::uint8_t failed = 0xFA;
constexpr std::uint8_t stopped = 0x1E;
constexpr std::uint8_t blank = 255;
constexpr std::size_t selectedbulk = 0x8000;  // bytes of a bulk that is selected by its index

bool ofblock(ArmPhase phase) {
    return phase == ArmPhase::program || phase == ArmPhase::verify || phase == ArmPhase::read;
}

bool ofcells(ArmPhase phase) { return phase == ArmPhase::config || phase == ArmPhase::secure; }

std::uint8_t byteof(std::int64_t value, int index) {
    return static_cast<std::uint8_t>(value >> (8 * index));
}

}  // namespace

ArmEngine::ArmEngine(DebugPort* chip, std::uint8_t firmware, ArmFaults faults)
    : chip_(chip), firmware_(firmware), faults_(faults) {}

void ArmEngine::start(ArmFamily family) {
    powerdown();
    family_ = family;
}

void ArmEngine::powerdown() {
    family_.reset();
    image_.clear();
    algorithm_.reset();
    steps_.clear();
    bulk_ = Bulk::none;
    record_ = {};
}

void ArmEngine::frame(std::span<const std::uint8_t> bytes) {
    if (bytes.size() < 4 || !family_) return;
    if (bytes[0] == imagekind) imageframe(bytes);
    if (bytes[0] == selectkind) selectframe(bytes);
    if (bytes[0] == commandkind) commandframe(bytes);
}

void ArmEngine::imageframe(std::span<const std::uint8_t> bytes) {
    bulk_ = bytes[2] == towrite ? Bulk::imagein : bytes[2] == toread ? Bulk::imageout : Bulk::none;
}

void ArmEngine::selectframe(std::span<const std::uint8_t> bytes) {
    bulk_ = bytes[2] == towrite ? Bulk::ramin : bytes[2] == toread ? Bulk::ramout : Bulk::none;
    ramat_ = bulk_ == Bulk::ramout ? bytes[1] * selectedbulk : 0;
}

void ArmEngine::commandframe(std::span<const std::uint8_t> bytes) {
    if (bytes[1] == stoprequest) {
        stopasked_ = true;
    } else if (bytes[1] == firmwarequery) {
        report({done, 0, firmware_});
    } else if (bytes[1] == devicecodequery) {
        devicecode();
    } else {
        operation(bytes);
    }
}

void ArmEngine::report(std::initializer_list<std::uint8_t> bytes) {
    steps_.clear();
    record_.fill(0);
    std::copy(bytes.begin(), bytes.end(), record_.begin());
}

void ArmEngine::refuse() { report({0, failed}); }

void ArmEngine::devicecode() {
    if (!algorithm_ || chip_ == nullptr) return refuse();
    const auto code = chip_->code();
    const std::size_t count = std::min(code.size(), record_.size() - 4);
    report({done, 0, static_cast<std::uint8_t>(count - 1), chip_->maker()});
    std::copy_n(code.begin(), count, record_.begin() + 4);
}

bool ArmEngine::bulkwrite(std::span<const std::uint8_t> source) {
    if (bulk_ == Bulk::imagein) {
        image_.assign(source.begin(), source.end());
        try {
            algorithm_ = parsealgorithm(image_);
            ram_.assign(static_cast<std::size_t>(algorithm_->ram), blank);
        } catch (const AlgorithmError&) {
            algorithm_.reset();  // it is kept and read back, but runs nothing
        }
        return true;
    }
    if (bulk_ != Bulk::ramin || !algorithm_) return false;
    const std::size_t room = ram_.size() - std::min(ramat_, ram_.size());
    std::copy_n(source.begin(), std::min(source.size(), room),
                ram_.begin() + static_cast<std::ptrdiff_t>(std::min(ramat_, ram_.size())));
    ramat_ += source.size();
    return true;
}

bool ArmEngine::bulkread(std::span<std::uint8_t> target) {
    const bool image = bulk_ == Bulk::imageout;
    if (!image && (bulk_ != Bulk::ramout || !algorithm_)) return false;
    const std::vector<std::uint8_t>& from = image ? image_ : ram_;
    const std::size_t at = image ? 0 : std::min(ramat_, from.size());
    std::fill(target.begin(), target.end(), blank);
    std::copy_n(from.begin() + static_cast<std::ptrdiff_t>(at),
                std::min(target.size(), from.size() - at), target.begin());
    ramat_ += target.size();
    return true;
}

bool ArmEngine::record(std::span<std::uint8_t> target) {
    if (!family_) return false;
    if (!steps_.empty()) advance();
    std::copy_n(record_.begin(), std::min(record_.size(), target.size()), target.begin());
    return true;
}

void ArmEngine::operation(std::span<const std::uint8_t> bytes) {
    constexpr std::uint8_t readbyte = 2;
    constexpr std::uint8_t mark = 0x80;
    if (bytes.size() < 16 || !algorithm_ || algorithm_->family != family_ || chip_ == nullptr)
        return refuse();
    const auto number = static_cast<std::uint8_t>(bytes[1] == readbyte ? readbyte : bytes[1] - 1);
    const auto found = algorithm_->operations.find(number);
    if (found == algorithm_->operations.end() || (bytes[2] & ~mark) != algorithm_->bank)
        return refuse();
    std::copy_n(bytes.begin() + 5, configuration_.size(), configuration_.begin());
    report({});
    stopasked_ = false;
    plan(found->second, bytes[3] | bytes[4] << 8, (bytes[2] & mark) != 0);
    if (steps_.empty()) finish();
}

// Erase and blank check come before the first block and take the whole chip; configuration and
// protection come behind the last one.
void ArmEngine::plan(const std::vector<ArmPhase>& phases, std::int32_t block, bool marked) {
    const ArmAlgorithm& a = *algorithm_;
    const std::int64_t size = std::int64_t{a.blockwords()} * a.wordsize;
    const std::int64_t all = a.bytes();
    const Step stretch{.from = std::min(block * size, all),
                       .to = std::min((block + 1) * size, all)};
    const bool blockwise = std::any_of(phases.begin(), phases.end(), ofblock);
    const bool atend = marked || (stretch.from < all && stretch.to == all);
    if (block == 0) closed_ = false;
    const bool closing = !blockwise || (atend && !closed_);
    closed_ = closed_ || closing;
    blockfrom_ = stretch.from;
    reading_ = std::find(phases.begin(), phases.end(), ArmPhase::read) != phases.end();
    step_ = 0;
    for (const ArmPhase phase : phases)
        if (ofblock(phase) || (ofcells(phase) ? closing : block == 0)) planphase(phase, stretch);
    if (!steps_.empty()) cursor_ = steps_[0].from;
}

void ArmEngine::planphase(ArmPhase phase, const Step& block) {
    const ArmAlgorithm& a = *algorithm_;
    Step step{.phase = phase, .from = 0, .to = a.bytes()};
    if (ofcells(phase)) step.to = phase == ArmPhase::config ? a.configuration : 1;
    if (ofblock(phase)) step.from = block.from, step.to = block.to;
    if (step.from == step.to) return;
    if (phase != ArmPhase::verify || a.margin == 0) {
        steps_.push_back(step);
        return;
    }
    for (const int pass : {1, 2}) {
        step.pass = static_cast<std::uint8_t>(pass);
        step.vcc = nominalvcc + (pass == 1 ? a.margin : -a.margin);
        steps_.push_back(step);
    }
}

// What a record's time is good for, within one step: so each phase is seen.
void ArmEngine::advance() {
    if (stopasked_ && !faults_.nostop) return report({record_[0], stopped, record_[2]});
    const Step step = steps_[step_];
    const std::int64_t pace = algorithm_->time[static_cast<std::size_t>(step.phase)];
    const std::int64_t word = ofcells(step.phase) ? 1 : algorithm_->wordsize;
    const std::int64_t left = step.to - cursor_;
    const std::int64_t able = pace == 0 ? left : recordtime * 1024 / pace / word * word;
    const std::int64_t end = cursor_ + std::clamp(able, std::min(word, left), left);
    if (!work(step, end)) return;
    cursor_ = end;
    const std::int64_t percent = (cursor_ - step.from) * done / (step.to - step.from);
    record_[0] = static_cast<std::uint8_t>(std::min<std::int64_t>(percent, nearlydone));
    record_[2] = phasebyte(step.phase);
    record_[3] = step.pass;
    if (cursor_ < step.to) return;
    if (step.phase == ArmPhase::erase) chip_->erasecells();
    if (step_ + 1 < steps_.size()) {
        cursor_ = steps_[++step_].from;
    } else if (!faults_.neverdone) {
        finish();
    }
}

bool ArmEngine::work(const Step& step, std::int64_t end) {
    const bool cells = ofcells(step.phase);
    const std::int64_t word = cells ? 1 : algorithm_->wordsize;
    const bool aimed = faults_.failphase == step.phase;
    const bool closed = chip_->secured() && step.phase != ArmPhase::erase && !cells;
    for (std::int64_t at = cursor_; at < end; at += word) {
        const bool hit = aimed && (cells || at / word == faults_.failaddress);
        if (closed || hit || !workword(step, at)) {
            fail(step, at);
            return false;
        }
    }
    return true;
}

std::uint8_t ArmEngine::buffered(std::int64_t address) const {
    const auto at = static_cast<std::size_t>(address - blockfrom_);
    return at < ram_.size() ? ram_[at] : blank;
}

bool ArmEngine::workword(const Step& step, std::int64_t address) {
    if (ofcells(step.phase)) {
        workcell(step, address);
        return true;
    }
    if (step.phase == ArmPhase::erase) {
        if (address % chip_->sector() == 0) chip_->erasesector(address);
        return true;
    }
    for (std::int64_t at = address; at < address + algorithm_->wordsize; ++at) {
        const std::uint8_t value = chip_->read(at, step.vcc);
        if (step.phase == ArmPhase::blank && value != blank) return false;
        if (step.phase == ArmPhase::verify && value != buffered(at)) return false;
        if (step.phase == ArmPhase::program) chip_->program(at, buffered(at));
        const auto inram = static_cast<std::size_t>(at - blockfrom_);
        if (step.phase == ArmPhase::read && inram < ram_.size()) ram_[inram] = value;
    }
    return true;
}

void ArmEngine::workcell(const Step& step, std::int64_t cell) {
    const auto index = static_cast<std::size_t>(cell);
    if (step.phase == ArmPhase::config)
        chip_->programcell(index, configuration_[index]);
    else
        chip_->secure();
}

void ArmEngine::fail(const Step& step, std::int64_t address) {
    const std::int64_t word = address / algorithm_->wordsize;
    const std::uint8_t percent = record_[0];
    const auto device = [&](int i) { return chip_->read(address + i, step.vcc); };
    report({percent, failed, phasebyte(step.phase), byteof(word, 0), byteof(word, 1),
            byteof(word, 2), byteof(word, 3), device(0), device(1), buffered(address),
            buffered(address + 1)});
}

void ArmEngine::finish() {
    const std::uint8_t phase = record_[2];
    const std::uint8_t pass = record_[3];
    report({done, 0, phase, pass});
    if (!reading_) return;
    const auto serial = chip_->serial();
    const auto cells = chip_->configuration();
    std::copy(cells.begin(), cells.end(), record_.begin() + 2);
    std::copy_n(serial.begin(), std::min<std::size_t>(serial.size(), 9), record_.begin() + 2);
}

}  // namespace keld2::sim
