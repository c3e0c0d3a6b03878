#include "run/notes.h"

#include "platform/numbers.h"

namespace keld2 {

std::u16string owntext(SharedVariables& s, TextId id) {
    return std::u16string(text(id, s.Language[0]));
}

void restartlonglog(SharedVariables& s) {
    if (s.MainRtstr[0].length() > loglimit) s.MainRtstr[0] = u"";
}

void writepercent(SharedVariables& s, std::int32_t a) {
    const double first = s.wltbigendbuf[0];
    const std::int64_t product = roundint64((a - first) * 100);
    const std::int64_t divisor = roundint64(s.wltbigendbuf[1] + 1 - first);
    const std::int64_t percent = divisor == 0 ? 0 : product / divisor;
    s.prgmode[1] = static_cast<std::uint8_t>(percent);
}

}  // namespace keld2
