#include "shared/notes.h"

#include "platform/numbers.h"

namespace keld2 {

namespace {

constexpr double secondsperday = 86400;

}  // namespace

std::u16string headline(SharedVariables& s, std::u16string_view what) {
    return s.prgnote[note::before].text().append(what).append(s.prgnote[note::behind].text());
}

void appendlog(SharedVariables& s, std::u16string_view text) { s.MainRtstr[0] += text; }

void appendheadline(SharedVariables& s, std::u16string_view what) {
    appendlog(s, u">>" + headline(s, what) + u"\n");
}

void appendelapsed(SharedVariables& s, Platform& platform, double start) {
    double elapsed = platform.secondssincemidnight() - start;
    if (elapsed < 0) elapsed += secondsperday;
    appendlog(s, u">> " + secondstext(elapsed) + u"Sec\n");
}

void appendresult(SharedVariables& s, std::int16_t op, std::uint8_t ended) {
    const auto named = [&](std::int64_t index) {
        appendlog(s, u">>" + s.MainmnuPrg.textorempty(op) + s.prgnote[index].text() + u"\n");
    };
    const auto plain = [&](std::int64_t index) { appendlog(s, s.prgnote[index].text() + u"\n"); };
    switch (ended) {
        case result::well:
            return named(note::well);
        case result::failed:
            return named(note::failed);
        case result::stopped:
            return plain(note::stopped);
        case result::timedout:
            return plain(note::timedout);
        default:
            return;
    }
}

void replacelogbyreport(SharedVariables& s, std::int64_t head) {
    s.MainRtstr[0] = s.prgnote[note::reporttitle].text() + u"\n" + s.prgnote[head].text() + u"\n" +
                     s.MainRtstr[1].text();
    s.MainRtstr[1] = u"";
}

std::int32_t marginvcc(SharedVariables& s, int sign) {
    return roundint32((1 + sign * (0.05 * s.wlverifyvcc[0])) * s.bvcc[0]);
}

std::u16string vccnote(std::int32_t vcc) { return u"(VCC:" + numbertext(vcc / 100.0) + u"V) "; }

}  // namespace keld2
