#include "families/usbsvfprg.h"

#include "families/jtagstartup.h"
#include "families/svfrun.h"

namespace keld2 {

usbsvfprg::usbsvfprg(const RunContext& run)
    : RunWindow(run, "usbsvfprg"), levels_(run.s.prgmode[0]) {}

int usbsvfprg::dohwstart() {
    if (const int ready = startup(); ready != status::goon) return ready;
    if (const JtagStartup* row = findjtagstartup(s().prgmode[0])) playstartup(run(), *row);
    return status::goon;
}

RunWindow::StopButton usbsvfprg::stopbutton(std::int16_t op) const {
    const bool shown = op == operation::compare || op == operation::program;
    return shown ? StopButton::shown : StopButton::hidden;
}

// The operation's number plays no part: the host lays down a text for each operation.
void usbsvfprg::dooperation(std::int16_t) {
    if (const SvfProcedure* procedure = findsvfprocedure(s().prgmode[0]))
        svfrun(run(), *procedure, levels_, state_);
}

}  // namespace keld2
