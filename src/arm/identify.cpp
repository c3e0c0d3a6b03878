// The device code: read, shown, held against what the host expects.
#include "arm/operations.h"
#include "arm/wire.h"

namespace keld2 {

namespace {

constexpr std::uint8_t lastlowmode = 5;  // low-mode devices have prgmode[0] 1 to 5
constexpr std::int32_t pauseafter = 20;  // short ticks

enum class Identity { goon, retry, end };

bool lowmode(const ArmContext& c) { return c.s.prgmode[0] >= 1 && c.s.prgmode[0] <= lastlowmode; }

// The code as notes and dialog show it.
std::u16string codetext(const ArmContext& c) {
    SharedVariables& s = c.s;
    std::u16string code = s.prgnote[note::device].text();
    for (int i = 0; i <= s.ibuf1[2]; ++i) code += bytedigits(c.helper, s.ibuf1[4 + i]);
    if (lowmode(c)) return code;
    return s.prgnote[note::maker].text() + bytedigits(c.helper, s.ibuf1[3]) + u"   " + code;
}

bool matches(const ArmContext& c) {
    SharedVariables& s = c.s;
    if (lowmode(c) && s.ibuf1[3] == 0) return true;
    return s.typeid_[0] == s.ibuf1[4] && s.compid[0] == s.ibuf1[3];
}

Identity ask(const ArmContext& c, const std::u16string& code) {
    switch (c.platform.messagebox(
        {.buttons = BoxButtons::abortretryignore,
         .icon = BoxIcon::exclamation,
         .title = owntext(c, TextId::warning) + owntext(c, TextId::devicecodeerror),
         .text = code})) {
        case BoxAnswer::retry:
            return Identity::retry;
        case BoxAnswer::ignore:
            return Identity::goon;
        default:
            return Identity::end;
    }
}

Identity decide(const ArmContext& c) {
    const std::u16string code = codetext(c);
    const bool matched = matches(c);
    if (matched || lowmode(c)) appendlog(c.s, u">>" + code + u"\n");
    return matched ? Identity::goon : ask(c, code);
}

Identity identify(const ArmJob& job) {
    const ArmContext& c = job.c;
    clearrecord(c, 1);
    senddevicecode(c);
    do {
        if (!nextrecord(c)) return Identity::goon;  // the run's next wait meets the same failure
        if (c.s.ibuf1[1] == armstate::failed) {
            appendlog(c.s, u">>" + owntext(c, TextId::devicecodeerror) + u"\n");
            return Identity::end;
        }
    } while (c.s.ibuf1[0] != armdone);
    if (job.profile.writeafterid) c.devcore.regwrite(1, 53);
    return decide(c);
}

}  // namespace

int armdevid(const ArmJob& job) {
    SharedVariables& s = job.c.s;
    const bool expected = lowmode(job.c) || s.typeid_[0] != 0 || s.compid[0] != 0;
    Identity identity = expected ? Identity::retry : Identity::goon;
    while (identity == Identity::retry) identity = identify(job);
    job.c.devcore.waitshort(pauseafter);
    return identity == Identity::end ? armstatus::brokenoff : armstatus::goon;
}

}  // namespace keld2
