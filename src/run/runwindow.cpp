#include "run/runwindow.h"

#include "platform/numbers.h"
#include "run/startup.h"

namespace keld2 {

namespace {

constexpr int growth = 300;        // twips, brings the Stop button into view
constexpr int sequencesteps = 11;  // as many as autoprg holds

}  // namespace

RunWindow::RunWindow(const RunContext& run, std::string_view name) : run_(run), name_(name) {}

RunWindow::~RunWindow() { unload(); }

void RunWindow::wepm0() {
    load();
    s().ubuflg[0] = usbblocklength;
    s().prgresult.release(0, result::well);
    const int ready = hwstart();
    if (ready == status::refused) devcore().readyfail();
    const bool idok = ready == status::goon && !(checksid() && isset(s().chipidtestmode[0]) &&
                                                 chipidcheck() != status::goon);
    if (idok) {
        const double start = platform().secondssincemidnight();
        chooseoperation();
        finish(start);
    }
    devcore().powerdown();
    started_ = false;
    unload();
}

void RunWindow::chooseoperation() {
    const std::int64_t span = roundint64(s().wltbigendbuf[1] - s().wltbigendbuf[0]);
    progressstep_ = span / 100 + 1;
    pwte_ = s().pwte[0];
    const std::uint8_t wish = s().prgresult[1];
    if (wish > 1) {
        runop(wish);
    } else if (wish == 0) {
        if (s().wautonum[0] == 0)
            runop(operation::program);
        else
            autosequence();
    }
}

void RunWindow::autosequence() {
    const int steps = s().wautonum[0] < sequencesteps ? s().wautonum[0] : sequencesteps;
    for (int i = 0; i < steps; ++i) {
        const std::int16_t op = s().autoprg[i];
        runop(op);
        const std::uint8_t ended = s().prgresult.acquire(0);
        if (op == operation::blankcheck && ended == result::failed) {
            if (!asktogoon()) return;
        } else if (ended != result::well) {
            return;
        }
    }
}

bool RunWindow::asktogoon() {
    hwstart();
    s().prgresult.release(0, result::failed);  // a start-up that reads the chip has cleared it
    return platform().messagebox({.buttons = BoxButtons::okcancel,
                                  .icon = BoxIcon::question,
                                  .title = s().prgnote[note::blanktitle].text(),
                                  .text = s().prgnote[note::blankquestion].text()}) ==
           BoxAnswer::ok;
}

void RunWindow::finish(double start) {
    appendelapsed(s(), platform(), start);
    if (s().prgresult.acquire(0) != result::well)
        devcore().signalfail(0);
    else
        devcore().signalpass(0);
}

void RunWindow::runop(std::int16_t op) {
    s().prgresult.release(0, result::well);
    first_ = roundint32(s().wltbigendbuf[0]);
    last_ = roundint32(s().wltbigendbuf[1]);
    s().prgmode[1] = 0;
    restartlonglog(s());
    const std::u16string name = s().MainmnuPrg.textorempty(op);
    appendheadline(s(), name);
    caption(headline(s(), name));
    s().prgmode[1] = 1;
    s().prgmode[2] = 0;
    showstopbutton(op);
    service();
    if (op == operation::program) pwte_ = s().pwte[0];
    dooperation(op);
    if (op == operation::compare) {
        if (stopbutton(op) != StopButton::takenback) {
            shrink();
            hidepexit();
        }
        replacelogbyreport(s(), note::reporthead);
    }
    appendresult(s(), op, s().prgresult.acquire(0));
}

void RunWindow::showstopbutton(std::int16_t op) {
    const StopButton button = stopbutton(op);
    if (button == StopButton::hidden) return;
    change(WindowChange::Kind::grow, growth);
    change(WindowChange::Kind::pexitshown);
    if (button == StopButton::takenback) {
        shrink();
        hidepexit();
    }
}

void RunWindow::prgnote1(std::uint8_t stage) {
    std::u16string note;
    if (stage != 0) {
        const std::int32_t v = marginvcc(s(), stage == 1 ? 1 : -1);
        devcore().setvcc(checkedint32(std::int64_t{v} * 10));
        note = vccnote(v);
    }
    if (stage != 2) shrink();
    devcore().waitshort(100);
    s().prgmode[1] = 0;
    hidepexit();
    const std::u16string name = owntext(s(), TextId::verify) + note;
    appendheadline(s(), name);
    caption(headline(s(), name));
    s().prgmode[2] = 0;
    service();
}

int RunWindow::startup() {
    return startuphead(run_, [this] { started_ = true; });
}

void RunWindow::caption(std::u16string_view text) {
    platform().window(name_, {.kind = WindowChange::Kind::caption, .text = std::u16string(text)});
}

void RunWindow::change(WindowChange::Kind kind, int twips) {
    platform().window(name_, {.kind = kind, .twips = twips});
}

void RunWindow::shrink() { change(WindowChange::Kind::shrink, growth); }

void RunWindow::load() {
    platform().window(name_, {.kind = WindowChange::Kind::load,
                              .text = owntext(s(), TextId::stop),
                              .onpexit = [this] { pexitclick(); }});
    loaded_ = true;
    caption(owntext(s(), TextId::information));
}

void RunWindow::unload() {
    if (!loaded_) return;
    loaded_ = false;
    change(WindowChange::Kind::unload);
}

}  // namespace keld2
