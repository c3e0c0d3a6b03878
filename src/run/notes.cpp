#include "run/notes.h"

#include "platform/numbers.h"

namespace keld2 {

std::u16string owntext(SharedVariables& s, TextId id) {
    return std::u16string(text(id, s.Language[0]));
}

std::u16string headline(SharedVariables& s, std::u16string_view what) {
    return s.prgnote[0].text().append(what).append(s.prgnote[1].text());
}

void appendlog(SharedVariables& s, std::u16string_view text) { s.MainRtstr[0] += text; }

void appendheadline(SharedVariables& s, std::u16string_view what) {
    appendlog(s, u">>" + headline(s, what) + u"\n");
}

void restartlonglog(SharedVariables& s) {
    if (s.MainRtstr[0].length() > loglimit) s.MainRtstr[0] = u"";
}

void appendresult(SharedVariables& s, std::int16_t op) {
    const auto named = [&](int note) {
        appendlog(s, u">>" + s.MainmnuPrg.textorempty(op) + s.prgnote[note].text() + u"\n");
    };
    const auto plain = [&](int note) { appendlog(s, s.prgnote[note].text() + u"\n"); };
    switch (s.prgresult.acquire(0)) {
        case result::well:
            return named(2);
        case result::failed:
            return named(3);
        case result::stopped:
            return plain(4);
        case result::timedout:
            return plain(12);
        default:
            return;
    }
}

void replacelogbyreport(SharedVariables& s, std::int64_t headindex) {
    s.MainRtstr[0] =
        s.prgnote[5].text() + u"\n" + s.prgnote[headindex].text() + u"\n" + s.MainRtstr[1].text();
    s.MainRtstr[1] = u"";
}

std::int32_t marginvcc(SharedVariables& s, int sign) {
    return roundint32((1 + sign * (0.05 * s.wlverifyvcc[0])) * s.bvcc[0]);
}

void writepercent(SharedVariables& s, std::int32_t a) {
    const double first = s.wltbigendbuf[0];
    const std::int32_t product = roundint32((a - first) * 100);
    const std::int32_t divisor = roundint32(s.wltbigendbuf[1] + 1 - first);
    const std::int64_t percent = divisor == 0 ? 0 : std::int64_t{product} / divisor;
    s.prgmode[1] = static_cast<std::uint8_t>(percent);
}

}  // namespace keld2
