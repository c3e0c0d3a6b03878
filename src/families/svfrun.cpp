#include "families/svfrun.h"

#include "families/comparisonplan.h"
#include "families/rowverify.h"
#include "jtag/runtest.h"
#include "jtag/sir.h"
#include "jtag/svftext.h"
#include "platform/numbers.h"
#include "run/frames.h"

namespace keld2 {

namespace {

constexpr std::int32_t progresslines = 10000;  // that count as a whole text

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
          plan_(procedure, run.s.tlength[0]) {}

    // False when the operation has failed.
    bool play() {
        while (!reader_.atend()) {
            reader_.readcounted();
            if (++linecount_ > procedure_.linelimit) return compareatend(true);
            if (!playline()) return false;
            run_.s.prgmode[1] = progress();
            if (failed() || !comparerolling()) return false;
        }
        return compareatend(false);
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
            return failed() || compare(plan_.behindsdr(state_.rowcount));
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

    bool compare(const std::optional<ComparedRows>& rows) {
        if (!rows) return true;
        if (verifyrows(run_, *procedure_.comparison, state_, lines_.levels().tdomask(), rows->first,
                       rows->last) != status::goon)
            return false;
        if (rows->rearms) armreadback(run_);
        return true;
    }

    bool comparerolling() {
        const auto rows = plan_.behindline(state_.rowmark, lines_.levels().readcount);
        if (!rows) return true;
        if (!compare(rows)) return false;
        lines_.levels().readcount = 0;
        return true;
    }

    bool compareatend(bool beyondlimit) {
        return compare(plan_.atend(state_.rowcount, state_.rowmark, beyondlimit));
    }

    const RunContext& run_;
    const SvfProcedure& procedure_;
    QueuedLines lines_;
    SvfState& state_;
    SvfReader reader_;
    SdrExecutor executor_;
    SdrStatement statement_;
    ComparisonPlan plan_;
    std::int32_t linecount_ = 0;
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
