// The device code of the fixed logic family: read at the end of the start-up, and the question
// about a foreign one.
#include <algorithm>
#include <ranges>

#include "families/usbkeld2pldprg.h"
#include "jtag/tapreset.h"
#include "platform/numbers.h"

namespace keld2 {

namespace {

constexpr std::int32_t beforeread = 20;  // short ticks

}  // namespace

int usbkeld2pldprg::idread() {
    DevCore& d = devcore();
    int ended = status::goon;
    startlists();
    d.qrun();
    d.waitshort(beforeread);
    for (;;) {
        queueid();
        d.qrun();
        d.waitshort(beforeread);
        armreadback(run());
        if (ubulkread0(run(), readbacklength) != status::goon) break;
        takeid();
        const bool matches = idmatch();
        queued_.tckpulse();
        if (matches) break;
        const BoxAnswer answer = askaboutid();
        if (answer == BoxAnswer::retry) continue;
        if (answer == BoxAnswer::abort) {
            d.powerdown();
            ended = status::ended;
        }
        break;
    }
    d.qrun();
    armreadback(run());
    sendlistmode(run(), listmode::fixed);
    return ended;
}

void usbkeld2pldprg::queueid() {
    armreadback(run());
    playtapreset(queued_, devcore(), svfreset84);
    shiftir(fixedinstruction::readid);
    queued_.goshiftdr();
    for (std::size_t i = 1; i < idbytes_.size(); ++i) shiftdr(queued_, 8, 0, ShiftMode::read);
    shiftdr(queued_, 8, 0, ShiftMode::readlast);
}

// One raw byte of the read-back for each bit.
void usbkeld2pldprg::takeid() {
    std::int64_t raw = 0;
    for (std::uint8_t& byte : idbytes_) {
        byte = 0;
        for (int k = 0; k < 8; ++k)
            if ((s().ibuf2[raw++] & levels_.tdomask()) != 0)
                byte |= static_cast<std::uint8_t>(1 << k);
    }
}

bool usbkeld2pldprg::idmatch() {
    if (std::find(acceptedcodes.begin(), acceptedcodes.end(), idbytes_) != acceptedcodes.end())
        return true;
    idnote();
    return false;
}

// The last byte read is written first.
void usbkeld2pldprg::idnote() {
    idtext_.clear();
    for (const std::uint8_t byte : idbytes_ | std::views::reverse)
        idtext_ += (byte < 16 ? u"0" : u"") + hextext(byte);
    appendlog(s(), u">>" + owntext(s(), TextId::devcode) + idtext_ + u"\n");
}

BoxAnswer usbkeld2pldprg::askaboutid() {
    return platform().messagebox(
        {.buttons = BoxButtons::abortretryignore,
         .icon = BoxIcon::exclamation,
         .title = owntext(s(), TextId::warning) + owntext(s(), TextId::devicecodeerror),
         .text = s().prgnote[note::device].text() + idtext_});
}

}  // namespace keld2
