#include "host/wave/wave.h"

#include <algorithm>
#include <utility>

#include "host/tell/buscycles.h"
#include "host/tell/portcommands.h"
#include "host/tell/tapscans.h"
#include "host/tell/words.h"
#include "sim/board.h"

namespace keld2::host {

namespace {

constexpr std::uint8_t serialmode = 21, bytemode = 22, pagemode = 23;  // of prgmode[0]
constexpr std::uint8_t portdata = 4, portdirection = 5, portcontrol = 6;
constexpr std::uint8_t deselectbit = 0x40, strobebit = 0x20;
constexpr std::uint8_t writeenable = 1, chipenable = 2, outputenable = 4;
constexpr int addresswidth = 25;

bool isparallel(std::uint8_t prgmode) { return prgmode == bytemode || prgmode == pagemode; }

std::unique_ptr<Grouper> grouperof(std::uint8_t prgmode, const sim::JtagLines* lines) {
    // Pulses are told one by one, so the list engine's mode does not matter.
    if (lines != nullptr) return std::make_unique<TapScans>(*lines, false);
    if (prgmode == serialmode) return std::make_unique<PortCommands>();
    if (isparallel(prgmode)) return std::make_unique<BusCycles>();
    return nullptr;
}

bool any(const std::array<bool, 256>& pins) { return std::ranges::find(pins, true) != pins.end(); }

}  // namespace

Wave::Wave(const std::filesystem::path& path, std::uint8_t prgmode)
    : file_(path),
      prgmode_(prgmode),
      jtag_(sim::jtaglines(prgmode)),
      grouper_(grouperof(prgmode, jtag_)) {
    addsignals();
}

Wave::~Wave() = default;

void Wave::addsignals() {
    operation_ = file_.addtext("run", "operation");
    if (grouper_) statement_ = file_.addtext("run", "statement");
    if (jtag_ != nullptr) row_ = file_.addtext("run", "row");
    vcc_ = file_.addreal("supplies", "VCC");
    vpp0_ = file_.addreal("supplies", "VPP0");
    vpp1_ = file_.addreal("supplies", "VPP1");
    gndon_ = file_.addwire("supplies", "ground_pins");
    vccon_ = file_.addwire("supplies", "VCC_pins");
    vppon_ = file_.addwire("supplies", "VPP_pins");
    addlines();
}

void Wave::addlines() {
    const std::string scope = "socket";
    if (jtag_ != nullptr) {
        tms_ = file_.addwire(scope, "TMS");
        tck_ = file_.addwire(scope, "TCK");
        tdi_ = file_.addwire(scope, "TDI");
        tdo_ = file_.addwire(scope, "TDO");
    } else if (prgmode_ == serialmode) {
        data_ = file_.addwire(scope, "data", 8);
        direction_ = file_.addwire(scope, "chip_drives");
        strobe_ = file_.addwire(scope, "strobe");
        deselect_ = file_.addwire(scope, "deselect");
        read_ = file_.addwire(scope, "read", 8);
    } else if (isparallel(prgmode_)) {
        address_ = file_.addwire(scope, "address", addresswidth);
        data_ = file_.addwire(scope, "data", 8);
        direction_ = file_.addwire(scope, "chip_drives");
        we_ = file_.addwire(scope, "write_enable_n");
        ce_ = file_.addwire(scope, "chip_enable_n");
        oe_ = file_.addwire(scope, "output_enable_n");
        read_ = file_.addwire(scope, "read", 8);
    }
}

// --- events --------------------------------------------------------------------------------------

void Wave::begin(const sim::Socket& socket) {
    ++number_;
    now_ = std::max(now_, socket.now);
}

void Wave::put(std::uint64_t time, VcdWriter::Id signal, double value, Change kind) {
    held_.push_back(
        {.number = number_, .time = time, .signal = signal, .kind = kind, .value = value});
}

void Wave::settext(std::uint64_t time, VcdWriter::Id signal, const std::string& text) {
    constexpr std::size_t longest = 160;
    const bool cut = text.size() > longest;
    write({.number = number_,
           .time = time,
           .signal = signal,
           .kind = Change::text,
           .value = 0,
           .text = cut ? text.substr(0, longest) + "..." : text});
}

void Wave::write(const Event& event) {
    switch (event.kind) {
        case Change::wire:
            return file_.wire(event.time, event.signal, static_cast<std::uint64_t>(event.value));
        case Change::unknown:
            return file_.unknown(event.time, event.signal);
        case Change::real:
            return file_.real(event.time, event.signal, event.value);
        case Change::text:
            return file_.text(event.time, event.signal, event.text);
    }
}

void Wave::flush(std::int64_t before) {
    for (; !held_.empty() && held_.front().number < before; held_.pop_front()) write(held_.front());
}

void Wave::group(Call call, std::int32_t a, std::int32_t b, std::int32_t c,
                 const std::string& answer) {
    if (!grouper_) return flush(number_ + 1);
    TraceLine line;
    line.number = number_;
    line.call = call;
    line.numbers = {a, b, c};
    line.answer = answer;
    grouper_->take(line, [this](const Step& step) { take(step); });
}

// A step whose lines are all held: its words come before them.
void Wave::take(const Step& step) {
    flush(step.first);
    if (!step.parts.empty()) {
        const std::uint64_t time = held_.empty() ? now_ : held_.front().time;
        if (step.words.find("shift DR") != step.words.npos && jtag_ != nullptr)
            settext(time, row_, std::to_string(++rows_));
        settext(time, statement_, step.words);
    }
    flush(step.last + 1);
}

// --- what the socket does ------------------------------------------------------------------------

void Wave::supplies(const sim::Socket& s) {
    begin(s);
    constexpr double mv = 1000;
    put(s.now, vcc_, s.vcc / mv, Change::real);
    put(s.now, vpp0_, s.vpp[0] / mv, Change::real);
    put(s.now, vpp1_, s.vpp[1] / mv, Change::real);
    put(s.now, gndon_, any(s.gndpins) ? 1 : 0);
    put(s.now, vccon_, any(s.vccpins) ? 1 : 0);
    put(s.now, vppon_, any(s.vpppins) ? 1 : 0);
    if (grouper_) grouper_->close([this](const Step& step) { take(step); });
    flush(number_ + 1);
}

void Wave::line(std::uint64_t time, VcdWriter::Id signal, const sim::Socket& s, sim::Line l) {
    put(time, signal, (s.registers[l.reg] & l.bit) != 0 ? 1 : 0);
}

void Wave::written(const sim::Socket& s, std::uint8_t reg) {
    begin(s);
    const std::uint8_t value = s.registers[reg];
    if (jtag_ != nullptr) {
        if (reg == jtag_->tms.reg) line(s.now, tms_, s, jtag_->tms);
        if (reg == jtag_->tdi.reg) line(s.now, tdi_, s, jtag_->tdi);
        if (reg == jtag_->tck.reg) line(s.now, tck_, s, jtag_->tck);
    } else if (prgmode_ == serialmode) {
        if (reg == portdata) put(s.now, data_, value);
        if (reg == portdirection) put(s.now, direction_, value != 0 ? 1 : 0);
        if (reg == portcontrol) put(s.now, strobe_, (value & strobebit) != 0 ? 1 : 0);
        if (reg == portcontrol) put(s.now, deselect_, (value & deselectbit) != 0 ? 1 : 0);
    }
    sampletdo(s, reg);
    group(Call::regwrite, value, reg);
}

// The level of TDO belongs to each rising edge of TCK, whether the run looks at it or not.
void Wave::sampletdo(const sim::Socket& s, std::uint8_t reg) {
    if (jtag_ == nullptr || reg != jtag_->tck.reg) return;
    const bool high = (s.registers[reg] & jtag_->tck.bit) != 0;
    if (high && !std::exchange(tckhigh_, high) && tdolevel_ >= 0)
        group(Call::regread, jtag_->tdo.reg, 0, 0, tdolevel_ != 0 ? "255" : "0");
    tckhigh_ = high;
}

void Wave::moved(const sim::Socket& s) {
    begin(s);
    if (!isparallel(prgmode_)) return flush(number_ + 1);
    put(s.now, address_, static_cast<double>(s.bus.address & ((1 << addresswidth) - 1)));
    put(s.now, data_, s.bus.data);
    put(s.now, direction_, s.bus.direction != 0 ? 1 : 0);
    put(s.now, we_, s.bus.high(writeenable) ? 1 : 0);
    put(s.now, ce_, s.bus.high(chipenable) ? 1 : 0);
    put(s.now, oe_, s.bus.high(outputenable) ? 1 : 0);
    group(Call::buswrite, s.bus.address, s.bus.data, s.bus.control);
}

void Wave::sampled(const sim::Socket& s, std::uint8_t reg, std::optional<std::uint8_t> value) {
    begin(s);
    const bool ofdata =
        (prgmode_ == serialmode && reg == portdata) || (isparallel(prgmode_) && reg == 0);
    if (ofdata) put(s.now, read_, value.value_or(0), value ? Change::wire : Change::unknown);
    if (jtag_ != nullptr && reg == jtag_->tdo.reg && !value) put(s.now, tdo_, 0, Change::unknown);
    if (jtag_ != nullptr && tdolevel_ >= 0) return;
    if (value)
        group(Call::regread, reg, 0, 0, std::to_string(*value));
    else
        group(Call::qregread, reg, 0);
}

void Wave::tdo(const sim::Socket& s, std::uint8_t value) {
    if (jtag_ == nullptr) return;
    tdolevel_ = (value & jtag_->tdo.bit) != 0 ? 1 : 0;
    put(s.now, tdo_, tdolevel_);
}

void Wave::pulses(const sim::Socket& socket, std::uint8_t tdi, std::uint8_t tdo) {
    if (jtag_ == nullptr) return;
    sim::Socket s = socket;
    const auto drive = [&](const sim::Line& l, bool high) {
        std::uint8_t& cell = s.registers[l.reg];
        cell = static_cast<std::uint8_t>(high ? cell | l.bit : cell & ~l.bit);
        written(s, l.reg);
    };
    for (int i = 0; i < 8; ++i) {
        const bool out = (tdo >> i & 1) != 0;
        drive(jtag_->tdi, (tdi >> i & 1) != 0);
        this->tdo(s, out ? jtag_->tdo.bit : 0);
        s.now += sim::steptime::registeraccess;
        drive(jtag_->tck, true);
        s.now += sim::steptime::registeraccess;
        drive(jtag_->tck, false);
    }
}

void Wave::operation(const std::string& caption) {
    ++number_;
    if (grouper_) grouper_->close([this](const Step& step) { take(step); });
    flush(number_ + 1);
    rows_ = 0;
    settext(now_, operation_, caption);
}

void Wave::finish() {
    if (grouper_) grouper_->close([this](const Step& step) { take(step); });
    flush(number_ + 1);
    file_.finish(now_ + sim::microsecond);
}

}  // namespace keld2::host
