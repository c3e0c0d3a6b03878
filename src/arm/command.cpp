// Operations that move no data: Blank Check, Erase, Secure and the rest of the host's menu.
#include "arm/operations.h"
#include "arm/wire.h"

namespace keld2 {

namespace {

// The one note of an operation that runs a second phase.
void followphase(const ArmJob& job, bool& noted) {
    const std::uint8_t phase = job.c.s.ibuf1[2];
    const auto note = [&](TextId id) {
        noted = true;
        notephase(job.c, id);
    };
    if (phase == armphase::verify && !noted) note(TextId::verify);
    if (phase == armphase::blankcheck && !noted && job.op != operation::blankcheck)
        note(TextId::blankcheck);
}

}  // namespace

int armcommand(const ArmJob& job) {
    const ArmContext& c = job.c;
    SharedVariables& s = c.s;
    clearrecord(c, 1);
    sendoperation(c, job.op);
    bool noted = false;
    while (nextrecord(c)) {
        if (s.ibuf1[1] == armstate::failed) {
            if (job.op == operation::blankcheck) notelocation(c, Detail::device);
            s.prgresult.release(0, result::failed);
            return armstatus::goon;
        }
        if (s.ibuf1[1] == armstate::stopped) return armstatus::goon;
        followphase(job, noted);
        if (stopasked(c)) sendstop(c);
        s.prgmode[1] = s.ibuf1[0];
        if (s.ibuf1[0] == armdone) return armstatus::goon;
    }
    return armstatus::brokenoff;
}

}  // namespace keld2
