#include "families/svfrun.h"

#include "families/rowverify.h"
#include "jtag/runtest.h"
#include "jtag/sir.h"
#include "jtag/svftext.h"
#include "platform/numbers.h"
#include "run/frames.h"

namespace keld2 {

namespace {

constexpr std::int32_t progresslines = 10000;    // that count as a whole text
constexpr std::int32_t rollingreadback = 12288;  // queued bytes beyond which rows are compared
constexpr std::int32_t once208fuses = 115869;
constexpr std::int32_t once208rows = 208;

std::int32_t half(std::int32_t total) { return roundint32(total / 2.0); }

class Player {
  public:
    Player(const RunContext& run, const SvfProcedure& procedure, LineLevels& levels,
           SvfState& state, std::span<const std::uint8_t> text)
        : run_(run),
          procedure_(procedure),
          lines_(levels, run.devcore),
          state_(state),
          reader_(text),
          executor_(run_, lines_, state, procedure.codecheck),
          total_(rowtotal(procedure, run.s.tlength[0])) {}

    // False when the operation has failed.
    bool play() {
        while (!reader_.atend()) {
            reader_.readcounted();
            if (++linecount_ > procedure_.linelimit) return comparebeyondlimit();
            if (!playline()) return false;
            run_.s.prgmode[1] = progress();
            if (failed() || !comparerolling()) return false;
        }
        return compareatend();
    }

  private:
    bool failed() const { return run_.s.prgresult.acquire(0) == result::failed; }

    bool playline() {
        const std::string_view line = reader_.svfline();
        if (beginswith(line, "SIR")) {
            SIRdate(lines_, run_.devcore, readsir(line));
        } else if (beginswith(line, "SDR")) {
            readsdr(reader_, *procedure_.sdrrules, run_.s.tlength[0], state_.rowcount, statement_);
            if (procedure_.sdr95)
                executor_.SDRdate95(statement_);
            else
                executor_.SDRdate(statement_);
            return failed() || comparebehindsdr();
        } else if (beginswith(line, "RUNTEST")) {
            const RuntestStatement runtest = readruntest(lines_.family().runtest, line);
            executeruntest(lines_, run_.devcore, runtest, run_.s.pwte[0]);
        }
        return true;
    }

    std::uint8_t progress() const {
        const std::int64_t done = procedure_.progressbylines ? linecount_ : reader_.svfchars();
        const std::int64_t whole = procedure_.progressbylines ? progresslines : reader_.svfsize();
        return static_cast<std::uint8_t>(checkedint32(done * 100) / whole);
    }

    bool compare(std::int32_t first, std::int32_t last) {
        return verifyrows(run_, *procedure_.comparison, state_, lines_.levels().tdomask(), first,
                          last) == status::goon;
    }

    bool comparebehindsdr() {
        switch (procedure_.interim) {
            case SvfProcedure::Interim::half:
                return state_.rowcount != total_ / 2 + 1 || compare(1, half(total_));
            case SvfProcedure::Interim::once208:
                return compareonce208();
            default:
                return true;
        }
    }

    bool compareonce208() {
        if (compared208_ || run_.s.tlength[0] != once208fuses || state_.rowcount != once208rows)
            return true;
        if (!compare(1, once208rows)) return false;
        compared208_ = true;
        armreadback(run_);
        return true;
    }

    bool comparerolling() {
        const bool due = procedure_.interim == SvfProcedure::Interim::rolling &&
                         lines_.levels().readcount > rollingreadback;
        if (!due) return true;
        if (!compare(verified_ + 1, state_.rowmark)) return false;
        verified_ = state_.rowmark;
        armreadback(run_);
        lines_.levels().readcount = 0;
        return true;
    }

    bool comparebeyondlimit() {
        return procedure_.interim == SvfProcedure::Interim::rolling || compareatend();
    }

    bool compareatend() {
        if (state_.rowcount < procedure_.leastrowcount) return true;
        switch (procedure_.interim) {
            case SvfProcedure::Interim::half:
                return compare(half(total_) + 1, total_);
            case SvfProcedure::Interim::rolling:
                return compare(verified_ + 1, state_.rowmark);
            default:
                return compare(procedure_.firstrow, total_);
        }
    }

    const RunContext& run_;
    const SvfProcedure& procedure_;
    QueuedLines lines_;
    SvfState& state_;
    SvfReader reader_;
    SdrExecutor executor_;
    SdrStatement statement_;
    std::int32_t total_;
    std::int32_t linecount_ = 0;
    std::int32_t verified_ = 0;
    bool compared208_ = false;
};

// Brings the programmer's list engine up and resets the chip's TAP.
void prepare(const RunContext& run, const SvfProcedure& procedure, LineLevels& levels) {
    run.s.ubuflg[0] = usbblocklength;
    sendlistmode(run, listmode::run);
    run.devcore.qrun();
    run.devcore.waitshort(20);
    armreadback(run);
    QueuedLines lines(levels, run.devcore);
    playtapreset(lines, run.devcore, *procedure.reset);
}

}  // namespace

void svfrun(const RunContext& run, const SvfProcedure& procedure, LineLevels& levels,
            SvfState& state) {
    state.rowcount = 0;
    state.rowmark = 0;
    levels.readcount = 0;
    bool passed = false;
    try {
        prepare(run, procedure, levels);
        const std::u16string name[] = {u"pldtmp.svf"};
        const FileContent text = run.platform.readfile(name);
        if (text.status == FileContent::Status::read)
            passed = Player(run, procedure, levels, state, text.bytes).play();
    } catch (const RunFault&) {
    }
    if (!passed) run.s.prgresult.release(0, result::failed);
}

}  // namespace keld2
