#include "families/usbsvfprg.h"

#include "families/jtagstartup.h"

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
    if (levels_.wired()) s().prgresult.release(0, result::failed);
}

}  // namespace keld2
