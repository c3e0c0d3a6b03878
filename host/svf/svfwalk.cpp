#include "host/svf/svfwalk.h"

#include <algorithm>

#include "families/comparisonplan.h"
#include "jtag/svftext.h"
#include "platform/fault.h"
#include "platform/numbers.h"

namespace keld2::host {

namespace {

constexpr std::int32_t codewidth = 32;

class Walk {
  public:
    Walk(const LogicDevice& device, std::string_view text, SvfListener& listener)
        : device_(device),
          procedure_(*device.procedure),
          text_(text),
          reader_({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}),
          listener_(listener),
          plan_(*device.procedure, device.fuses) {
        end_.stored.rows = SvfRows(procedure_.sdrrules->limits);
    }

    SvfEnd walk() {
        try {
            walklines();
        } catch (const RunFault& fault) {
            end_.fault = faultplace();
            end_.reason = fault.what();
        }
        return std::move(end_);
    }

  private:
    SvfStored& stored() { return end_.stored; }

    void walklines() {
        while (!reader_.atend()) {
            reader_.readcounted();
            start_ = offset(reader_.svfline());
            if (end_.lines == procedure_.linelimit) {
                end_.beyondlimit = true;
                break;
            }
            ++end_.lines;
            walkline();
            checkprogress();
            if (compare(plan_.behindline(stored().rowmark, readcount_), linenumber(start_)))
                readcount_ = 0;
        }
        compare(plan_.atend(stored().rowcount, stored().rowmark, end_.beyondlimit));
    }

    void walkline() {
        const std::string_view line = reader_.svfline();
        const std::int32_t number = linenumber(start_);
        if (beginswith(line, "SIR")) {
            listener_.sir(number, readsir(line));
        } else if (beginswith(line, "RUNTEST")) {
            listener_.runtest(number, readruntest(device_.wiring->runtest, line));
        } else if (beginswith(line, "SDR")) {
            readsdr(reader_, *procedure_.sdrrules, device_.fuses, stored().rowcount, statement_);
            listener_.sdr(number, statement_, stored().rowcount);
            carryout(number);
        } else {
            listener_.skipped(number, line);
        }
    }

    void carryout(std::int32_t number) {
        using Kind = SdrStatement::Kind;
        if (statement_.kind != Kind::givenup && statement_.kind != Kind::drive) readback(number);
        compare(plan_.behindsdr(stored().rowcount), number);
    }

    void readback(std::int32_t number) {
        using Kind = SdrStatement::Kind;
        const SdrStatement& s = statement_;
        if (s.counted) store(number);
        const bool iscode = procedure_.sdr95 && s.kind == Kind::read && s.nbits == codewidth;
        if (iscode) {
            stored().rowcount = 1;
            stored().sources.resize(1);  // even if the statement stores no row
        }
        if (s.kind == Kind::replay) {
            ++stored().rowmark;
            readcount_ += s.nbits / 8 * 8;
        } else if (procedure_.sdr95) {
            readcount_ = iscode ? 0 : readcount_ + 1;
        }
        if (iscode || (!procedure_.sdr95 && stored().rowcount == procedure_.codecheck.rowcount))
            fetch({.code = true, .line = number});
    }

    void store(std::int32_t number) {
        const auto row = static_cast<std::size_t>(stored().rowcount++);
        stored().rows.store(row, statement_.expect, statement_.mask);
        if (row >= stored().sources.size()) stored().sources.resize(row + 1);
        stored().sources[row] = {.line = number, .bits = statement_.nbits};
    }

    // line: behind which it is made; 0: at the end of the text.
    bool compare(const std::optional<ComparedRows>& rows, std::int32_t line = 0) {
        if (rows) fetch({.line = line, .first = rows->first, .last = rows->last});
        return rows.has_value();
    }

    void fetch(const SvfFetch& what) { listener_.fetch(what, stored(), statement_); }
    void checkprogress() const {
        if (!procedure_.progressbylines) (void)checkedint32(reader_.svfchars() * 100);
    }

    // --- places ---

    std::size_t offset(std::string_view part) const {
        return static_cast<std::size_t>(part.data() - text_.data());
    }
    // Of ascending offsets; each line end is counted once.
    std::int32_t linenumber(std::size_t at) {
        for (; counted_ < at; ++counted_) {
            const bool pair = text_[counted_] == '\r' && text_.substr(counted_ + 1, 1) == "\n";
            if (text_[counted_] == '\n' || (text_[counted_] == '\r' && !pair)) {
                ++line_;
                linestart_ = counted_ + 1;
            }
        }
        return line_;
    }

    // The first character of a field that is no digit, else the line last read.
    SvfPlace faultplace() {
        const std::string_view last = reader_.svfline();
        const std::size_t end = offset(last) + last.size();
        bool field = false;
        for (std::size_t at = start_; at < end; ++at) {
            const char c = text_[at];
            if (field && c != ')' && static_cast<unsigned char>(c) > ' ' && !digit(c))
                return placeof(at);
            if (c == '(') field = true;
            if (c == ')') field = false;
        }
        return placeof(offset(last));
    }
    static bool digit(char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
    }
    SvfPlace placeof(std::size_t at) {
        const std::int32_t line = linenumber(at);
        return {.line = line, .column = static_cast<std::int32_t>(at - linestart_) + 1};
    }

    const LogicDevice& device_;
    const SvfProcedure& procedure_;
    std::string_view text_;
    SvfReader reader_;
    SvfListener& listener_;
    SdrStatement statement_;
    SvfEnd end_;
    ComparisonPlan plan_;
    std::int32_t readcount_ = 0;
    std::size_t start_ = 0;      // of the line in hand
    std::size_t counted_ = 0;    // up to here line ends have been counted
    std::size_t linestart_ = 0;  // of the last line counted
    std::int32_t line_ = 1;
};

}  // namespace

SvfEnd walksvf(const LogicDevice& device, std::string_view text, SvfListener& listener) {
    return Walk(device, text, listener).walk();
}

}  // namespace keld2::host
