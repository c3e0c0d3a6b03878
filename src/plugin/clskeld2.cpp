#include "plugin/clskeld2.h"

#include "arm/armrun.h"
#include "editors/edit_figkeld2.h"
#include "editors/usercode0.h"
#include "platform/numbers.h"
#include "plugin/dispatch.h"
#include "plugin/texts/texts.h"

namespace keld2 {

namespace {

constexpr std::u16string_view owntitle = u"tq5keld2";  // of boxes that have no other
constexpr std::uint8_t acadaptormode = 4;              // of prgmode[0]
constexpr std::uint8_t rangeswarning = 54;             // of keld2warn
constexpr std::int64_t usercodearea = 33;              // bytes behind the fuse map

// The table of device and buffer address ranges that the ranges warning shows.
std::u16string rangestable(SharedVariables& s) {
    const std::int32_t n = checkedint32(std::int64_t{s.tlength[0]} - 16);
    const std::int32_t c = s.bvcch[0];
    const auto t = [&](TextId id) { return owntext(s, id); };
    const auto h = [](std::int64_t x) { return hextext(checkedint32(x)); };
    const std::int64_t id = std::int64_t{n} - c;
    const std::u16string margin(20, u' ');
    return margin + t(TextId::devicebuffer) + u"\r\r" + t(TextId::programmemory) + u"0000H---" +
           h(id - 1) + u"H    0000H---" + h(id - 1) + u"H" + u"\r\r" + t(TextId::idlocations) +
           u"0000H---001FH    " + h(id) + u"H---" + h(id + 31) + u"H   " + u"\r\r" +
           t(TextId::configword) + u" " + u"000H---0001H    " + h(n) + u"H---" +
           h(std::int64_t{n} + 1) + u"H   " + u"\r\r";
}

}  // namespace

template <typename Work>
bool ClsKELD2::guarded(Work work) {
    try {
        work();
        return true;
    } catch (const ComponentMissing& component) {
        reportmissing(component);
    } catch (const std::exception&) {
        module_.variables().prgresult.release(0, result::failed);
    }
    return false;
}

void ClsKELD2::runKeld2Prg(const bool&) {
    SharedVariables& s = module_.variables();
    const Runner runner = runnerfor(s.modeltype[0], s.selmode[0], s.prgmode[0]);
    if (runner == Runner::none) return;
    if (const ArmProfile* profile = armprofile(runner)) {
        guarded([&] { runarm(*profile); });
        return;
    }
    std::unique_ptr<RunWindow> window;
    const bool ended = guarded([&] {
        window = makewindow(runner, {.s = s,
                                     .platform = module_.platform(),
                                     .devcore = module_.devcore(),
                                     .usb = module_.transport(),
                                     .helper = module_.helper()});
        window->wepm0();
    });
    if (!ended && window != nullptr && window->hardwarestarted())
        guarded([this] { module_.devcore().powerdown(); });
    guarded([&window] { window.reset(); });
}

void ClsKELD2::runarm(const ArmProfile& profile) {
    armrun({.s = module_.variables(),
            .platform = module_.platform(),
            .devcore = module_.devcore(),
            .usb = module_.transport(),
            .helper = module_.helper(),
            .readback = module_.imagereadback()},
           profile);
}

void ClsKELD2::editfigkeld2() {
    guarded([this] {
        edit_figkeld2 window(module_.variables(), module_.helper());
        window.load();
        module_.platform().showform(window);
    });
}

void ClsKELD2::usercode() {
    guarded([this] {
        usercode0 window(module_.variables());
        window.load();
        module_.platform().showform(window);
    });
}

void ClsKELD2::bufcomkeld2(const std::int16_t& num) {
    guarded([&] {
        module_.variables().map(num, [this] {
            module_.platform().messagebox({.title = std::u16string(owntitle),
                                           .text = u"Unable to create memory mapped file"});
        });
    });
}

void ClsKELD2::freesharebufferkeld2() {
    guarded([this] { module_.variables().releasebuffers(); });
}

void ClsKELD2::keld2warn(const std::uint8_t& no) {
    guarded([&] {
        SharedVariables& s = module_.variables();
        const auto tell = [this](const std::u16string& title, const std::u16string& text) {
            module_.platform().messagebox(
                {.icon = BoxIcon::information, .title = title, .text = text});
        };
        const std::u16string note = owntext(s, TextId::note);
        if (s.prgmode[0] == acadaptormode) {
            const std::u16string text = u">>" + note + owntext(s, TextId::needacadaptor);
            tell(text, text);
        }
        if (no == rangeswarning) tell(note, rangestable(s));
    });
}

void ClsKELD2::sinitkeld2() {
    guarded([this] {
        SharedVariables& s = module_.variables();
        if (s.prgmode[0] < 41 || s.prgmode[0] > 43) return;
        const std::int64_t from = s.tlength[0];
        for (std::int64_t i = from; i < from + usercodearea; ++i)
            if (s.ibuffer.holds(i, i)) s.ibuffer[i] = u'1';
    });
}

void ClsKELD2::reportmissing(const ComponentMissing& component) {
    SharedVariables& s = module_.variables();
    s.prgresult.release(0, result::timedout);
    module_.platform().messagebox({.icon = BoxIcon::exclamation,
                                   .title = std::u16string(owntitle),
                                   .text = u"Missing component: " + utf16(component.what())});
}

}  // namespace keld2
