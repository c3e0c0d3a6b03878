#include "host/tell/narrator.h"

#include <utility>

#include "host/files/hexbytes.h"
#include "host/tell/words.h"

namespace keld2::host {

namespace {

constexpr std::string_view mcuwindow = "usbkel2mpuprg";
constexpr std::uint8_t fixedmode = 10;
constexpr std::size_t recordplace = 4;  // of the parameter record in a frame

bool ispins(Call call) {
    switch (call) {
        case Call::regwrite:
        case Call::regread:
        case Call::waitshort:
        case Call::waitlong:
        case Call::buswrite:
        case Call::busconfig:
            return true;
        default:
            return isqueued(call);
    }
}

// Leaves no more than that many levels of parts.
void prune(Step& step, int levels) {
    if (levels <= 0) return step.parts.clear();
    for (Step& part : step.parts) prune(part, levels - 1);
}

}  // namespace

void Narrator::take(const TraceLine& line) {
    if (repeatedcall_ != Call::qrun && !repeats(line)) endrepeated();
    if (ispins(line.call)) return takepins(line);
    // A byte that is checked as soon as it is read does not end the command that reads it.
    if (line.call == Call::checkbyte && mcu_ && !parallel_ && !queueing_ && port_.begun())
        return port_.take(line, sink());
    switch (line.call) {
        case Call::qrun:
            return takerun(line);
        case Call::window:
            return takewindow(line);
        case Call::checkbyte:
        case Call::checkword:
        case Call::transferwait:
        case Call::progress:
            return takerepeated(line);
        case Call::usbcomwrite:
            takeframe(line);
            break;
        case Call::drivercommit:
            takerecord(bytesfromhex(line.word).value_or(std::vector<std::uint8_t>{}));
            break;
        case Call::powerdown:
            endlist(", never run");
            if (tap_) tap_->reset();
            break;
        default:
            break;
    }
    single(line);
}

void Narrator::finish() {
    endrepeated();
    endlist(", never run");
}

void Narrator::single(const TraceLine& line) {
    if (!queueing_) endpins();
    narration_.step(leafof(line));
}

// --- pins ----------------------------------------------------------------------------------------

Grouper& Narrator::grouper() {
    if (!mcu_ && tap_) return *tap_;
    if (parallel_ || !mcu_) return bus_;
    return port_;
}

StepSink Narrator::sink() {
    return [this](Step step) { tell(std::move(step)); };
}

void Narrator::tell(Step step) {
    prune(step, queueing_ ? parts_ - 1 : parts_);
    if (!queueing_) return narration_.step(std::move(step));
    list_.add(std::move(step));
    if (parts_ == 0) list_.parts.clear();
}

void Narrator::takepins(const TraceLine& line) {
    const bool queued = isqueued(line.call);
    if (queued != queueing_) {
        endpins();
        queueing_ = queued;
    }
    if (queued) ++entries_;
    if (queued && list_.first == 0) list_.first = line.number;
    if (queued) list_.last = line.number;
    const bool ofbus = line.call == Call::buswrite || line.call == Call::qbuswrite ||
                       line.call == Call::busconfig || line.call == Call::qbusconfig;
    if (ofbus && !parallel_) {
        endpins();
        parallel_ = true;
    }
    grouper().take(line, sink());
}

void Narrator::endpins() { grouper().close(sink()); }

void Narrator::takerun(const TraceLine& line) {
    endpins();
    if (entries_ == 0) return narration_.step(leafof(line));
    list_.last = line.number;
    endlist(" runs");
}

void Narrator::endlist(const char* how) {
    endpins();
    queueing_ = false;
    if (std::exchange(entries_, 0) == 0) return;
    const std::int64_t count = list_.last - list_.first + (*how == ',' ? 1 : 0);
    Step list = std::exchange(list_, {});
    list.words = "list of " + counted(count, "line") + how;
    narration_.step(std::move(list));
}

// --- what tells how to read the pins -------------------------------------------------------------

void Narrator::takewindow(const TraceLine& line) {
    constexpr std::string_view caption = "caption ";
    if (line.rest == "load") {
        endlist(", never run");
        mcu_ = line.word == mcuwindow;
        parallel_ = false;
        tap_.reset();
    }
    if (!line.rest.starts_with(caption)) return single(line);
    if (!queueing_) endpins();
    operation_ = line.rest.substr(caption.size());
    narration_.operation(operation_, line.number);
}

void Narrator::takerecord(std::span<const std::uint8_t> bytes) {
    if (mcu_ || bytes.size() < sim::recordlength) return;
    const sim::JtagLines* lines = sim::jtaglines(bytes.first<sim::recordlength>());
    if (lines == nullptr || tap_) return;
    endpins();
    tap_ = std::make_unique<TapScans>(*lines, fixedmode_);
}

void Narrator::takeframe(const TraceLine& line) {
    constexpr std::uint8_t listframe = 13, stepframe = 0x34, firstother = 0x1A;
    const auto bytes = bytesfromhex(line.word).value_or(std::vector<std::uint8_t>{});
    if (bytes.size() < 2) return;
    if (bytes[0] == listframe) {
        fixedmode_ = bytes[1] == fixedmode;
        if (tap_) tap_->setfixedmode(fixedmode_);
        if (bytes.size() >= recordplace + sim::recordlength)
            takerecord(std::span(bytes).subspan(recordplace));
    }
    if (bytes[0] != stepframe || bytes[1] >= firstother) return;
    const std::string words = framewords(bytes);
    const std::string name = words.substr(0, words.find(','));
    if (std::exchange(operation_, name) != name) narration_.operation(name, line.number);
}

// --- equal calls in a row ------------------------------------------------------------------------

bool Narrator::repeats(const TraceLine& line) const {
    return line.call == repeatedcall_ ||
           (line.call == Call::progress && repeatedcall_ == Call::transferwait);
}

void Narrator::takerepeated(const TraceLine& line) {
    Step leaf = leafof(line);
    if (line.call == Call::progress && repeatedcall_ != Call::transferwait) {
        if (!queueing_) endpins();
        return narration_.step(std::move(leaf));
    }
    if (repeatedcall_ == Call::qrun) {
        endpins();
        repeatedcall_ = line.call;
        firstwords_ = leaf.words;
    }
    if (line.call == repeatedcall_) {
        ++repeats_;
        const bool waits = line.call == Call::transferwait;
        if (waits ? line.answer != "true" : line.answernumber() != 0) ++wrong_;
    }
    const std::size_t place = leaf.words.find(" at ");
    if (place != leaf.words.npos) lastplace_ = leaf.words.substr(place + 4, 8);
    repeated_.add(std::move(leaf));
    if (parts_ < 2) repeated_.parts.clear();
}

void Narrator::endrepeated() {
    const Call call = std::exchange(repeatedcall_, Call::qrun);
    if (call == Call::qrun) return;
    Step step = std::exchange(repeated_, {});
    const std::int64_t count = std::exchange(repeats_, 0);
    const std::int64_t wrong = std::exchange(wrong_, 0);
    step.words = firstwords_;
    if (count > 1 && call == Call::transferwait)
        step.words = "status asked " + std::to_string(count) + " times" +
                     (wrong > 0 ? ", then the transfer failed" : "");
    if (count > 1 && call != Call::transferwait)
        step.words = std::to_string(count) + " checks, " + firstwords_ + " to " + lastplace_ +
                     (wrong > 0 ? "; " + std::to_string(wrong) + " ended with 1" : "; all well");
    if (step.parts.size() == 1) step.parts.clear();
    narration_.step(std::move(step));
}

}  // namespace keld2::host
