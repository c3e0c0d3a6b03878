#include "arm/operations.h"
#include "arm/wire.h"

namespace keld2 {

std::u16string owntext(const ArmContext& c, TextId id) {
    return std::u16string(text(id, c.s.Language[0]));
}

void notephase(const ArmContext& c, TextId id) { appendheadline(c.s, owntext(c, id)); }

void notelocation(const ArmContext& c, Detail detail) {
    std::u16string line = owntext(c, TextId::deviceaddress) + addressdigits(c) +
                          owntext(c, TextId::hdevicedata) + devicedata(c);
    if (detail == Detail::deviceandbuffer) line += owntext(c, TextId::hbufferdata) + bufferdata(c);
    appendlog(c.s, line + u"H\n");
}

}  // namespace keld2
