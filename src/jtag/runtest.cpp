#include "jtag/runtest.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>

#include "jtag/svftext.h"
#include "platform/fault.h"
#include "platform/numbers.h"

namespace keld2 {

namespace {

using State = RuntestStatement::State;

constexpr std::size_t keywordlength = 7;

// How the clocks of one form are given. n clocks give k = n / divisor, rounded.
struct Form {
    enum class Way {
        clocks,       // all lines low; k byte clocks, n - 8k pulses
        pulseclocks,  // TMS low, a pulse; k byte clocks, n - 8k pulses
        pause,        // TMS low, a pulse; k pauses
        longpause     // the same, but k >= 100 gives k / 100 pauses of 10 long ticks
    };
    RuntestKind kind;
    State state;
    Way way;
    std::int32_t divisor;
    std::int32_t pauseticks = 0;  // short ticks of one pause
    std::uint8_t byteclock = 0;   // 0: the family's
    bool givesseconds = false;    // the seconds follow as a pause
    bool leavespause = false;     // ends with the walk from Pause to Run-Test/Idle
};

using enum RuntestKind;
using Way = Form::Way;

constexpr std::array forms{
    Form{.kind = runtest, .state = State::none, .way = Way::clocks, .divisor = 8},
    Form{.kind = runtest,
         .state = State::idle,
         .way = Way::clocks,
         .divisor = 8,
         .byteclock = shiftcode::clock8,
         .givesseconds = true},
    Form{.kind = runtest1,
         .state = State::none,
         .way = Way::longpause,
         .divisor = 10,
         .pauseticks = 10},
    Form{.kind = runtest1,
         .state = State::idle,
         .way = Way::pause,
         .divisor = 100,
         .pauseticks = 100},
    Form{.kind = runtest2, .state = State::none, .way = Way::clocks, .divisor = 8},
    Form{.kind = runtest2,
         .state = State::idle,
         .way = Way::pause,
         .divisor = 100,
         .pauseticks = 100},
    Form{.kind = runtest2,
         .state = State::drpause,
         .way = Way::pause,
         .divisor = 10,
         .pauseticks = 10},
    Form{.kind = runtest2,
         .state = State::irpause,
         .way = Way::pause,
         .divisor = 10,
         .pauseticks = 10,
         .leavespause = true},
    Form{.kind = runtest3, .state = State::none, .way = Way::clocks, .divisor = 8},
    Form{.kind = runtest3, .state = State::idle, .way = Way::pulseclocks, .divisor = 100},
    Form{.kind = runtest3,
         .state = State::drpause,
         .way = Way::pause,
         .divisor = 10,
         .pauseticks = 10},
    Form{.kind = runtest3,
         .state = State::irpause,
         .way = Way::pause,
         .divisor = 10,
         .pauseticks = 10,
         .leavespause = true},
};

constexpr std::int32_t longpauses = 100;  // pauses from which on they are long ones
constexpr std::int32_t longpauseticks = 10;

const Form& findform(RuntestKind kind, State state) {
    const auto form = std::find_if(forms.begin(), forms.end(), [&](const Form& f) {
        return f.kind == kind && f.state == state;
    });
    if (form == forms.end()) throw RunFault("this state word is not served", "RUNTEST");
    return *form;
}

std::int32_t divided(std::int32_t n, std::int32_t divisor) {
    return roundint32(static_cast<double>(n) / divisor);
}

// Takes the state word off the front of rest. Two kinds look for IDLE anywhere in it, with exact
// case, and know no other word.
State takestate(RuntestKind kind, std::string_view& rest) {
    if (kind == runtest || kind == runtest1) {
        const std::size_t idle = rest.find("IDLE");
        if (idle == std::string_view::npos) return State::none;
        rest.remove_prefix(idle + 4);
        return State::idle;
    }
    constexpr std::array<std::pair<std::string_view, State>, 3> words{
        {{"IDLE", State::idle}, {"DRPAUSE", State::drpause}, {"IRPAUSE", State::irpause}}};
    for (const auto& [word, state] : words)
        if (beginswith(rest, word)) {
            rest.remove_prefix(word.size());
            return state;
        }
    return State::none;
}

std::int32_t readclocks(std::string_view rest) {
    const std::int32_t clocks = readint32(rest.substr(0, requireword(rest, "TCK")));
    if (clocks > mostclocks)
        throw RunFault(std::to_string(clocks) + " clocks, expected 100000000 at the most",
                       "RUNTEST");
    return std::max(clocks, 0);
}

// Whether a number that no double can hold is too small for one: the power of ten of its first
// digit that is not 0 is negative.
bool toosmall(std::string_view digits) {
    const std::size_t e = std::min(digits.find_first_of("eE"), digits.size());
    const std::string_view exponent = digits.substr(std::min(e + 1, digits.size()));
    const std::string_view mantissa = digits.substr(0, e);
    const std::size_t first = mantissa.find_first_of("123456789");
    const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
    std::int64_t power = 0;
    const auto [end, error] = std::from_chars(exponent.data() + exponent.starts_with('+'),
                                              exponent.data() + exponent.size(), power);
    if (error == std::errc::result_out_of_range) return exponent.starts_with('-');
    return power + static_cast<std::int64_t>(point) - static_cast<std::int64_t>(first) < 0;
}

double readnumber(std::string_view word) {
    std::string_view digits = word;
    if (digits.starts_with('+')) digits.remove_prefix(1);
    double value = 0;
    const char* last = digits.data() + digits.size();
    const auto [end, error] = std::from_chars(digits.data(), last, value);
    const bool named = digits.find_first_not_of("0123456789+-.eE") != std::string_view::npos;
    const bool outofrange = error == std::errc::result_out_of_range;
    if ((error != std::errc{} && !outofrange) || end != last || named || word.starts_with("+-") ||
        (outofrange && !toosmall(digits)))
        throw RunFault("\"" + std::string(word) + "\" is no number of seconds", "RUNTEST");
    return outofrange ? 0 : value;
}

// The last word before SEC, in seconds, as ticks.
RuntestStatement::Pause readpause(std::string_view rest) {
    std::string_view text = ClearTAB(rest.substr(0, requireword(rest, "SEC")));
    const auto gap = std::find_if(text.rbegin(), text.rend(),
                                  [](char c) { return static_cast<unsigned char>(c) < 33; });
    text.remove_prefix(static_cast<std::size_t>(text.rend() - gap));
    const double milliseconds = std::max(readnumber(text), 0.0) * 1000;
    if (milliseconds <= 1) return {.longticks = false, .ticks = roundint32(milliseconds * 1000)};
    return {.longticks = true, .ticks = roundint32(milliseconds)};
}

void clockaway(QueuedLines& lines, DevCore& devcore, const Form& form, std::int32_t clocks) {
    const std::uint8_t code = form.byteclock != 0 ? form.byteclock : lines.family().byteclock;
    const std::int32_t bytes = divided(clocks, form.divisor);
    for (std::int32_t i = 0; i < bytes; ++i) devcore.qregwrite(shiftcode::clock8value, code);
    lines.tckpulses(clocks - 8 * bytes);
}

void pauseaway(DevCore& devcore, const Form& form, std::int32_t clocks) {
    const std::int32_t pauses = divided(clocks, form.divisor);
    if (form.way == Way::longpause && pauses >= longpauses) {
        const std::int32_t longones = divided(pauses, longpauses);
        for (std::int32_t i = 0; i < longones; ++i) devcore.qwaitlong(longpauseticks);
        return;
    }
    for (std::int32_t i = 0; i < pauses; ++i) devcore.qwaitshort(form.pauseticks);
}

void giveseconds(QueuedLines& lines, DevCore& devcore, const RuntestStatement::Pause& pause,
                 std::int32_t pwte) {
    if (pause.longticks)
        devcore.qwaitlong(pause.ticks);
    else
        devcore.qwaitshort(pause.ticks);
    if (lines.family().runtestaddspwte) devcore.qwaitlong(divided(pwte, 100));
}

}  // namespace

RuntestStatement readruntest(RuntestKind kind, std::string_view line) {
    line = Trim(line);
    std::string_view rest = LTrim(line.substr(std::min(keywordlength, line.size())));
    RuntestStatement statement;
    statement.state = takestate(kind, rest);
    statement.clocks = readclocks(rest);
    if (findform(kind, statement.state).givesseconds) statement.pause = readpause(rest);
    return statement;
}

void executeruntest(QueuedLines& lines, DevCore& devcore, const RuntestStatement& statement,
                    std::int32_t pwte) {
    const Form& form = findform(lines.family().runtest, statement.state);
    lines.tmslow();
    if (form.way == Way::clocks) {
        lines.tdilow();
        lines.tcklow();
    } else {
        lines.tckpulse();
    }
    if (form.way == Way::clocks || form.way == Way::pulseclocks)
        clockaway(lines, devcore, form, statement.clocks);
    else
        pauseaway(devcore, form, statement.clocks);
    if (statement.pause) giveseconds(lines, devcore, *statement.pause, pwte);
    if (!form.leavespause) return;
    lines.tmshigh();
    lines.tckpulses(2);
    lines.tmslow();
    lines.tckpulse();
}

}  // namespace keld2
