#include "host/tell/tapscans.h"

#include <algorithm>
#include <array>
#include <utility>

#include "host/tell/words.h"

namespace keld2::host {

namespace {

using sim::TapState;

constexpr int notread = -1;
constexpr int unknown = -2;

constexpr std::array statenames{"Test-Logic-Reset", "Run-Test/Idle", "Select-DR",  "Capture-DR",
                                "Shift-DR",         "Exit1-DR",      "Pause-DR",   "Exit2-DR",
                                "Update-DR",        "Select-IR",     "Capture-IR", "Shift-IR",
                                "Exit1-IR",         "Pause-IR",      "Exit2-IR",   "Update-IR"};

const char* nameof(TapState state) { return statenames.at(static_cast<std::size_t>(state)); }

bool drives(int code) { return code == sim::shift::out8 || code == sim::shift::out8b; }
bool reads(int code) { return code == sim::shift::in8 || code == sim::shift::in8b; }

}  // namespace

std::string bitswords(const std::vector<bool>& bits) {
    std::string digits;
    for (std::size_t i = 0; i < bits.size(); i += 4) {
        unsigned digit = 0;
        for (std::size_t k = i; k < std::min(i + 4, bits.size()); ++k)
            digit |= bits[k] ? 1U << (k - i) : 0;
        digits += "0123456789ABCDEF"[digit];
    }
    std::ranges::reverse(digits);
    return "0x" + digits;
}

void TapScans::take(const TraceLine& line, const StepSink& done) {
    switch (line.call) {
        case Call::regwrite:
        case Call::qregwrite:
            return write(line, done);
        case Call::regread:
        case Call::qregread:
            return sample(line);
        default:
            return pause(line, done);
    }
}

void TapScans::write(const TraceLine& line, const StepSink& done) {
    const int reg = line.numbers[1];
    if (reg >= sim::shift::first && reg <= sim::shift::last) return shiftcode(line, done);
    const bool was = level(lines_.tck);
    registers_[static_cast<std::uint8_t>(reg)] = static_cast<std::uint8_t>(line.numbers[0]);
    const bool is = level(lines_.tck);
    if (was && !is && open_ && pending_.empty()) return stretch_.step.add(leafof(line));
    pending_.push_back(leafof(line));
    if (is && !was) clock(level(lines_.tdi), done);
}

void TapScans::shiftcode(const TraceLine& line, const StepSink& done) {
    const int code = line.numbers[1];
    codeline_ = line.number;
    pending_.push_back(leafof(line));
    pending_.back().words =
        drives(code)
            ? "eight clocks that drive " + hexwords(static_cast<std::uint8_t>(line.numbers[0]), 2)
        : reads(code) ? "eight clocks that read"
                      : "eight clocks";
    const auto value = static_cast<unsigned>(line.numbers[0]);
    const bool lastfirst = fixed_ && code == sim::shift::out8b;
    bool tdi = level(lines_.tdi);
    for (unsigned i = 0; i < 8; ++i) {
        if (drives(code)) tdi = (value >> (lastfirst ? 7 - i : i) & 1) != 0;
        if (reads(code)) sampled_ = unknown;
        clock(tdi, done);
    }
    std::uint8_t& tdireg = registers_[lines_.tdi.reg];
    tdireg = static_cast<std::uint8_t>(tdi ? tdireg | lines_.tdi.bit : tdireg & ~lines_.tdi.bit);
}

void TapScans::sample(const TraceLine& line) {
    pending_.push_back(leafof(line));
    if (line.numbers[0] != lines_.tdo.reg) return;
    const bool known = line.call == Call::regread;
    sampled_ = known ? (line.answernumber() & lines_.tdo.bit) != 0 : unknown;
}

TapScans::Kind TapScans::kindof(TapState before, TapState after) {
    if (before == TapState::shiftir) return Kind::shiftir;
    if (before == TapState::shiftdr) return Kind::shiftdr;
    if (before == after && before == TapState::runtestidle) return Kind::idle;
    return after == TapState::testlogicreset ? Kind::reset : Kind::walk;
}

void TapScans::clock(bool tdi, const StepSink& done) {
    const TapState before = std::exchange(state_, next(state_, level(lines_.tms)));
    const Kind kind = kindof(before, state_);
    const bool leaves = state_ == TapState::selectdr;
    if (!open_ || stretch_.kind != kind || leaves) {
        if (leaves || kind == Kind::idle || kind == Kind::reset)
            begin(kind, done);
        else
            endstretch();
        open_ = true;
        stretch_.kind = kind;
        stretch_.path = {before};
    }
    for (Step& one : pending_) stretch_.step.add(std::move(one));
    pending_.clear();
    ++stretch_.clocks;
    if (kind == Kind::walk) stretch_.path.push_back(state_);
    const int sampled = std::exchange(sampled_, notread);
    if (sampled != notread) ++stretch_.samples;
    if (kind != Kind::shiftir && kind != Kind::shiftdr) return;
    stretch_.driven.push_back(tdi);
    if (sampled >= 0) stretch_.read.push_back(sampled != 0);
}

// A new scan, unless the one at hand is only a pause or a stay that this continues.
void TapScans::begin(Kind kind, const StepSink& done) {
    endstretch();
    const bool stays = kind == Kind::idle || kind == Kind::reset;
    const bool shifted = std::ranges::any_of(
        essence_, [](const std::string& words) { return words.starts_with("shift"); });
    if (stays && !shifted) return;
    auto pending = std::exchange(pending_, {});
    close(done);
    pending_ = std::move(pending);
}

void TapScans::pause(const TraceLine& line, const StepSink& done) {
    const std::int64_t time = pauseof(line);
    if (!open_ && scan_.parts.empty()) {  // nothing has begun that it could belong to
        for (Step& one : pending_) done(std::move(one));
        pending_.clear();
        return done(leafof(line));
    }
    if (!open_ || stretch_.kind != Kind::pause) {
        endstretch();
        open_ = true;
        stretch_.kind = Kind::pause;
    }
    for (Step& one : pending_) stretch_.step.add(std::move(one));
    pending_.clear();
    stretch_.step.add(leafof(line));
    stretch_.pause += time;
}

std::string TapScans::wordsof(const Stretch& s) {
    const std::string clocks = counted(s.clocks, "clock");
    switch (s.kind) {
        case Kind::idle:
            return clocks + " in Run-Test/Idle";
        case Kind::reset:
            return clocks + " to Test-Logic-Reset";
        case Kind::pause:
            return "pause " + timewords(s.pause);
        case Kind::walk: {
            std::string words = "walk " + std::string(nameof(s.path.front()));
            for (std::size_t i = 1; i < s.path.size(); ++i)
                words += std::string(" > ") + nameof(s.path[i]);
            return words;
        }
        default:
            break;
    }
    std::string words = s.kind == Kind::shiftir ? "shift IR " : "shift DR ";
    words += counted(s.clocks, "bit");
    const bool still =
        std::ranges::adjacent_find(s.driven, std::not_equal_to<>{}) == s.driven.end();
    words += still && s.samples > 0 ? std::string(", TDI stays ") + (s.driven[0] ? "1" : "0")
                                    : ", TDI " + bitswords(s.driven);
    if (s.samples == 0) return words;
    const bool all = std::cmp_equal(s.read.size(), s.samples);
    return words +
           (all ? ", TDO " + bitswords(s.read) : ", " + counted(s.samples, "bit") + " read");
}

void TapScans::endstretch() {
    if (!std::exchange(open_, false)) return;
    Stretch stretch = std::exchange(stretch_, {});
    if (stretch.step.parts.empty()) stretch.step.first = stretch.step.last = codeline_;
    stretch.step.words = wordsof(stretch);
    if (stretch.kind != Kind::walk) essence_.push_back(stretch.step.words);
    scan_.add(std::move(stretch.step));
}

void TapScans::close(const StepSink& done) {
    endstretch();
    if (!scan_.parts.empty()) {
        Step scan = std::exchange(scan_, {});
        for (const std::string& words : essence_)
            scan.words += (scan.words.empty() ? "" : "; ") + words;
        if (scan.words.empty()) scan.words = scan.parts.front().words;
        if (scan.parts.size() == 1) scan = Step(std::move(scan.parts.front()));
        done(std::move(scan));
    }
    essence_.clear();
    for (Step& one : pending_) done(std::move(one));
    pending_.clear();
    sampled_ = notread;
}

}  // namespace keld2::host
