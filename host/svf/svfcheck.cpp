#include "host/svf/svfcheck.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "host/files/textrecords.h"
#include "host/svf/meterdevcore.h"
#include "host/text/jsontext.h"
#include "jtag/svftext.h"

namespace keld2::host {

namespace {

// The first word of a line and what stands behind it, up to the semicolon.
struct Words {
    std::string first, rest;
};

Words wordsof(std::string_view line) {
    const auto blank = [](char c) { return static_cast<unsigned char>(c) <= ' '; };
    Words words;
    std::size_t at = 0;
    while (at < line.size() && blank(line[at])) ++at;
    for (; at < line.size() && !blank(line[at]) && line[at] != ';'; ++at)
        words.first += static_cast<char>(std::toupper(static_cast<unsigned char>(line[at])));
    for (; at < line.size() && line[at] != ';'; ++at)
        if (!blank(line[at]))
            words.rest += static_cast<char>(std::toupper(static_cast<unsigned char>(line[at])));
    return words;
}

struct Harmless {
    std::string_view word;
    std::string_view rest;  // empty: whatever follows
    std::string_view why;
    bool atstart = false;  // only ahead of the first statement that counts
};

constexpr std::array harmless{
    Harmless{"HIR", "0", "no header bits"},
    Harmless{"HDR", "0", "no header bits"},
    Harmless{"TIR", "0", "no trailer bits"},
    Harmless{"TDR", "0", "no trailer bits"},
    Harmless{"ENDIR", "IDLE", "end states are fixed"},
    Harmless{"ENDDR", "IDLE", "end states are fixed"},
    Harmless{"STATE", "RESET", "the run begins with a reset", true},
    Harmless{"TRST", "ON", "there is no TRST line, the run begins with a reset", true},
    Harmless{"STATE", "IDLE", "statements find their way from any stable state"},
    Harmless{"TRST", "OFF", "there is no TRST line"},
    Harmless{"TRST", "ABSENT", "there is no TRST line"},
    Harmless{"TRST", "Z", "there is no TRST line"},
    Harmless{"FREQUENCY", "", "the programmer has its own clock rate"},
};

constexpr std::array known{"SIR", "SDR", "RUNTEST"};
constexpr std::array unsupported{"HIR",   "HDR",   "TIR",  "TDR", "ENDIR",
                                 "ENDDR", "STATE", "TRST", "PIO", "PIOMAP"};

bool iscomment(std::string_view line) {
    return line.find_first_not_of(" \t") == std::string_view::npos || line.starts_with("//") ||
           line.substr(0, 2).find('!') != std::string_view::npos;
}

class Checker final : public SvfListener {
  public:
    Checker(const LogicDevice& device, SvfCheck& check)
        : check_(check),
          width_(rowwidth(*device.procedure->comparison, device.fuses)),
          meter_(*device.wiring),
          levels_(device.family),
          lines_(levels_, meter_) {
        check_.firstrow = device.procedure->firstrow;
        check_.lastrow = device.totalrows();
    }

    void skipped(std::int32_t line, std::string_view text) override {
        if (iscomment(text)) return;
        const Words words = wordsof(text);
        for (const Harmless& row : harmless)
            if (words.first == row.word && (row.rest.empty() || words.rest == row.rest) &&
                (!row.atstart || atstart())) {
                check_.skipped.push_back({line, words.first + ": " + std::string(row.why)});
                return;
            }
        check_.lost.push_back({line, whylost(words)});
    }
    void sir(std::int32_t line, const SirStatement& s) override {
        ++check_.instructions;
        check_.shiftbits += std::max<std::int16_t>(s.bits, 0);
        check_.run.push_back({line, "SIR: " + counted(s.bits)});
    }
    void sdr(std::int32_t line, const SdrStatement& s, std::int32_t row) override {
        using Kind = SdrStatement::Kind;
        if (s.kind == Kind::givenup) {
            check_.lost.push_back({line,
                                   "SDR: its TDI has more than four lines between the first "
                                   "and the closing one, the statement is given up"});
            return;
        }
        ++(s.kind == Kind::drive    ? check_.drives
           : s.kind == Kind::replay ? check_.replays
                                    : check_.reads);
        check_.shiftbits += s.nbits;
        if (s.kind != Kind::drive && !s.counted) unstored_.push_back(line);
        check_.run.push_back({line, "SDR: " + counted(s.nbits) +
                                        (s.kind == Kind::drive    ? " out"
                                         : s.kind == Kind::replay ? " out and back"
                                                                  : " back") +
                                        (s.counted ? ", row " + std::to_string(row) : "")});
    }
    void runtest(std::int32_t line, const RuntestStatement& s) override {
        ++check_.waits;
        executeruntest(lines_, meter_, s, 0);
        const std::int64_t clocks = meter_.clocks() - check_.clocks;
        const std::int64_t waiting = meter_.microseconds() - check_.waiting;
        check_.clocks += clocks;
        check_.waiting += waiting;
        check_.run.push_back({line, "RUNTEST: " + std::to_string(clocks) + " clocks, " +
                                        std::to_string(waiting) + " us of waiting"});
    }
    void fetch(const SvfFetch& fetch, const SvfStored& stored, const SdrStatement&) override {
        if (fetch.code) {
            coderows_ = stored.rowcount;
            return;
        }
        if (width_ == 0) return;
        for (std::int32_t row = fetch.first; row <= fetch.last; ++row)
            if (row < stored.rowcount) mark(row);
    }
    void finish(const SvfEnd& end) {
        check_.rows = end.stored.rowcount;
        for (std::int32_t row = 0; row < coderows_; ++row) mark(row);
        for (std::int32_t row = 0; row < check_.rows; ++row)
            judge(row, end.stored.sources[static_cast<std::size_t>(row)]);
        tellmisfits();
        if (atstart() && check_.lost.empty() && !end.fault && !end.beyondlimit)
            check_.lost.push_back({1, "the text has no statement, expected SIR, SDR or RUNTEST"});
        for (const std::int32_t line : unstored_)
            check_.skipped.push_back({line,
                                      "SDR: TDO without MASK on an unfinished line, read "
                                      "but not compared"});
        std::ranges::stable_sort(check_.skipped, {}, &SvfLine::line);
        std::ranges::stable_sort(check_.lost, {}, &SvfLine::line);
    }

  private:
    bool atstart() const {
        return check_.instructions + check_.drives + check_.reads + check_.replays + check_.waits ==
               0;
    }
    static std::string counted(std::int32_t bits) {
        return host::counted(static_cast<std::uint64_t>(std::max(bits, 0)), "bit");
    }
    static std::string whylost(const Words& words) {
        if (std::ranges::find(known, words.first) != known.end())
            return words.first + ": stands behind blanks, expected at the start of the line";
        if (std::ranges::find(unsupported, words.first) != unsupported.end())
            return words.first + " " + words.rest + ": is not supported";
        return "no statement begins with \"" + words.first.substr(0, 20) + "\"";
    }
    // Whether a stored row is compared, and by its whole width.
    void judge(std::int32_t row, const SvfStored::Source& source) {
        if (!ismarked(row)) {
            check_.lost.push_back({source.line, "SDR: its row is number " + std::to_string(row) +
                                                    ", which the device's comparison leaves out"});
            return;
        }
        ++check_.compared;
        if (row >= coderows_ && source.bits != width_ && misfits_++ == 0) misfit_ = {row, source};
    }
    // Tells one row of a width that the comparison does not take for all.
    void tellmisfits() {
        if (misfits_ == 0) return;
        std::string what = "SDR: its row is number " + std::to_string(misfit_.row) + " and has " +
                           std::to_string(misfit_.source.bits) + " bits" +
                           ", the device's comparison takes " + std::to_string(width_);
        if (misfits_ > 1)
            what += "; " + host::counted(misfits_ - 1, "more row") + " of other widths";
        check_.lost.push_back({misfit_.source.line, what});
    }
    void mark(std::int32_t row) {
        const auto at = static_cast<std::size_t>(row);
        if (at >= marked_.size()) marked_.resize(at + 1);
        marked_[at] = true;
    }
    bool ismarked(std::int32_t row) const {
        return static_cast<std::size_t>(row) < marked_.size() &&
               marked_[static_cast<std::size_t>(row)];
    }

    SvfCheck& check_;
    std::int32_t width_;  // of the rows that the device's comparison takes; 0: of none
    MeterDevCore meter_;
    LineLevels levels_;
    QueuedLines lines_;
    std::int32_t coderows_ = 0;
    struct Misfit {
        std::int32_t row = 0;
        SvfStored::Source source;
    };
    std::vector<bool> marked_;
    Misfit misfit_;  // the first one
    std::uint64_t misfits_ = 0;
    std::vector<std::int32_t> unstored_;
};

void append(std::string& text, const std::string& name, const SvfLine& line) {
    text += name + ":" + std::to_string(line.line) + ": " + line.what + "\n";
}

}  // namespace

SvfCheck checksvf(const LogicDevice& device, std::string_view text) {
    SvfCheck check;
    Checker checker(device, check);
    SvfEnd end = walksvf(device, text, checker);
    checker.finish(end);
    check.lines = end.lines;
    check.fault = end.fault;
    check.reason = end.reason;
    if (end.beyondlimit)
        check.lost.push_back({end.lines + 1, "the run reads " + std::to_string(end.lines) +
                                                 " lines and statements, the rest is lost"});
    return check;
}

std::string told(const SvfCheck& check, const std::string& name, bool all) {
    std::vector<SvfLine> lines;
    if (all) lines = check.run;
    for (const SvfLine& line : check.skipped) lines.push_back({line.line, "skipped: " + line.what});
    for (const SvfLine& line : check.lost) lines.push_back({line.line, "lost: " + line.what});
    std::ranges::stable_sort(lines, {}, &SvfLine::line);
    std::string text;
    for (const SvfLine& line : lines) append(text, name, line);
    if (check.fault)
        text += name + ":" + std::to_string(check.fault->line) + ":" +
                std::to_string(check.fault->column) + ": the run fails here: " + check.reason +
                "\n";
    std::array<char, 400> sums{};
    std::snprintf(sums.data(), sums.size(),
                  "%s: %d lines: %lld SIR, %lld SDR that drive, %lld that read, %lld that replay, "
                  "%lld RUNTEST\n%s: %lld bits shifted, %lld clocks, %.3f s of waiting; %d rows "
                  "stored, %d compared\n",
                  name.c_str(), check.lines, static_cast<long long>(check.instructions),
                  static_cast<long long>(check.drives), static_cast<long long>(check.reads),
                  static_cast<long long>(check.replays), static_cast<long long>(check.waits),
                  name.c_str(), static_cast<long long>(check.shiftbits),
                  static_cast<long long>(check.clocks), 1e-6 * static_cast<double>(check.waiting),
                  check.rows, check.compared);
    text += sums.data();
    if (check.lastrow != 0)
        text += name + ": the device's comparison takes rows " + std::to_string(check.firstrow) +
                " to " + std::to_string(check.lastrow) + "\n";
    return text;
}

std::string jsonof(const SvfCheck& check, const std::string& name) {
    using nlohmann::ordered_json;
    const auto list = [](const std::vector<SvfLine>& lines) {
        ordered_json array = ordered_json::array();
        for (const SvfLine& one : lines) array.push_back({{"line", one.line}, {"what", one.what}});
        return array;
    };
    ordered_json json{{"file", name},
                      {"usesall", check.usesall()},
                      {"lines", check.lines},
                      {"sir", check.instructions},
                      {"drives", check.drives},
                      {"reads", check.reads},
                      {"replays", check.replays},
                      {"runtests", check.waits},
                      {"bits", check.shiftbits},
                      {"clocks", check.clocks},
                      {"seconds", 1e-6 * static_cast<double>(check.waiting)},
                      {"rows", check.rows},
                      {"compared", check.compared},
                      {"firstrow", check.firstrow},
                      {"lastrow", check.lastrow},
                      {"run", list(check.run)},
                      {"skipped", list(check.skipped)},
                      {"lost", list(check.lost)}};
    if (check.fault)
        json["fault"] = {
            {"line", check.fault->line}, {"column", check.fault->column}, {"reason", check.reason}};
    return jsontext(json);
}

}  // namespace keld2::host
