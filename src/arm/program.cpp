// Program and Auto Program: the data go block by block into the programmer's RAM, and the phases
// that the programmer reports are followed with notes and percent.
#include <algorithm>
#include <array>

#include "arm/operations.h"
#include "arm/wire.h"
#include "platform/fault.h"

namespace keld2 {

namespace {

// What a record means for the rest; none: go on.
using Left = std::optional<int>;

// A phase that is noted once in an operation.
struct PhaseRow {
    std::uint8_t phase;
    TextId text;
    bool percent = false;     // the percent of the step is shown as it is
    bool infile = false;      // followed when the data come from a file, too
    bool ofheadline = false;  // Program: its headline has said it already
};

constexpr std::array phases{
    PhaseRow{.phase = armphase::erase, .text = TextId::erase, .percent = true},
    PhaseRow{.phase = armphase::blankcheck, .text = TextId::blankcheck, .percent = true},
    PhaseRow{
        .phase = armphase::program, .text = TextId::program, .infile = true, .ofheadline = true},
    PhaseRow{.phase = armphase::configuration, .text = TextId::progconfig},
    PhaseRow{.phase = armphase::secure, .text = TextId::secure},
};

class ArmProgramming {
  public:
    ArmProgramming(const ArmJob& job, const ArmGeometry& geometry, bool fromfile)
        : job_(job), c_(job.c), s_(job.c.s), geometry_(geometry), fromfile_(fromfile) {}

    int blocks() {
        for (std::int32_t i = 0; i <= geometry_.lastblock(); ++i) {
            block_ = geometry_.block(i);
            if (!feed()) return transferfailure();
            start();
            if (const Left left = waitblock()) return *left;
        }
        return armstatus::goon;
    }

  private:
    bool feed();
    void start();
    Left waitblock();
    void followphase();
    void followpasses();
    void notepass(int sign);
    void percent();
    int devicefailure();
    int transferfailure() {
        s_.prgresult.release(0, result::timedout);
        return armstatus::brokenoff;
    }
    const ArmTransferRule& rule() const {
        return fromfile_ ? job_.profile.programfile : job_.profile.program;
    }

    const ArmJob& job_;
    const ArmContext& c_;
    SharedVariables& s_;
    const ArmGeometry& geometry_;
    bool fromfile_;
    ArmBlock block_;
    std::array<bool, phases.size()> noted_{};  // once for the operation
    // Reached in this block.
    bool verify_ = false;
    bool firstpass_ = false;
    bool secondpass_ = false;
};

bool ArmProgramming::feed() {
    const bool fixed = job_.profile.fixedprogramside && !fromfile_;
    if (sendwriteselect(c_, fixed ? programside : bankside(c_)) == 1) return false;
    for (std::int32_t k = 0; k <= block_.lastbulk; ++k)
        if (sendbulk(c_, geometry_.bulk(block_, k)) == 1) return false;
    return true;
}

void ArmProgramming::start() {
    clearrecord(c_, 2);
    verify_ = firstpass_ = secondpass_ = false;
    sendoperation(c_, job_.op, block_.index, block_.last && rule().marklastblock);
}

Left ArmProgramming::waitblock() {
    for (;;) {
        if (!nextrecord(c_)) return transferfailure();
        if (s_.ibuf1[1] == armstate::failed) return devicefailure();
        if (s_.ibuf1[1] == armstate::stopped) {
            s_.prgresult.release(0, result::stopped);
            return armstatus::goon;
        }
        followphase();
        if (stopasked(c_)) sendstop(c_);
        percent();
        if (s_.ibuf1[0] == armdone) return {};
    }
}

void ArmProgramming::followphase() {
    const std::uint8_t phase = s_.ibuf1[2];
    if (phase == armphase::verify && !fromfile_) followpasses();
    const auto* row = std::find_if(phases.begin(), phases.end(),
                                   [phase](const PhaseRow& r) { return r.phase == phase; });
    if (row == phases.end() || (fromfile_ && !row->infile)) return;
    if (row->percent) s_.prgmode[1] = s_.ibuf1[0];
    bool& noted = noted_[static_cast<std::size_t>(row - phases.begin())];
    if (noted) return;
    noted = true;
    if (!row->ofheadline || job_.op != operation::program) notephase(c_, row->text);
    s_.prgmode[2] = 0;
}

void ArmProgramming::followpasses() {
    verify_ = true;
    if (s_.ibuf1[3] < 2 && !firstpass_) {
        firstpass_ = true;
        if (block_.last) notepass(1);
    }
    if (s_.wlverifyvcc[0] > 0 && !secondpass_ && s_.ibuf1[3] == 2) {
        secondpass_ = true;
        if (block_.last) notepass(-1);
    }
}

void ArmProgramming::notepass(int sign) {
    appendheadline(s_, owntext(c_, TextId::verify) + vccnote(marginvcc(s_, sign)));
    s_.prgmode[2] = 0;
}

void ArmProgramming::percent() {
    const std::uint8_t phase = s_.ibuf1[2];
    // With a file these phases are not followed, and count like any other.
    if (!fromfile_ && (phase == armphase::erase || phase == armphase::blankcheck)) {
        s_.prgmode[1] = s_.ibuf1[0];
        return;
    }
    const bool margins = s_.wlverifyvcc[0] > 0;
    const std::int64_t steps = margins ? 3 : 2;  // of a block: program and verify, once or twice
    const int passes = margins ? (firstpass_ + secondpass_) * verify_ : verify_;
    const std::int64_t parts = 100 * (steps * block_.index + passes) + s_.ibuf1[0];
    s_.prgmode[1] = static_cast<std::uint8_t>(parts / (steps * (geometry_.lastblock() + 1)));
}

int ArmProgramming::devicefailure() {
    const std::uint8_t phase = s_.ibuf1[2];
    if (phase != armphase::erase)
        notelocation(c_, phase == armphase::blankcheck && !fromfile_ ? Detail::device
                                                                     : Detail::deviceandbuffer);
    s_.prgresult.release(0, result::failed);
    return armstatus::goon;
}

// The data file into the start of the main buffer; its length in bytes, or 0.
std::int32_t loaddatafile(const ArmContext& c) {
    const std::array<std::u16string, 1> name{u"pldtmp.svf"};
    const FileContent file = c.platform.readfile(name);
    if (file.status != FileContent::Status::read) return 0;
    const auto length = static_cast<std::int64_t>(file.bytes.size());
    if (length == 0 || length > c.s.ibuffer.size()) return 0;
    std::copy(file.bytes.begin(), file.bytes.end(), c.s.ibuffer.data());
    return static_cast<std::int32_t>(length);
}

int program(const ArmJob& job, const std::optional<ArmGeometry>& geometry, bool fromfile) {
    return geometry ? ArmProgramming(job, *geometry, fromfile).blocks() : armstatus::brokenoff;
}

}  // namespace

int armprogram(const ArmJob& job) {
    return program(job, armgeometry(job, job.profile.program), false);
}

int armprogramfile(const ArmJob& job) {
    const std::int32_t length = loaddatafile(job.c);
    if (length == 0) return armstatus::brokenoff;
    return program(job, armgeometry(job, job.profile.programfile, length), true);
}

}  // namespace keld2
