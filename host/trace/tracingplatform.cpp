#include "host/trace/tracingplatform.h"

#include "host/text/boxtext.h"

namespace keld2::host {

void TracingPlatform::service() {
    if (const std::uint8_t now = s_.prgmode[1]; now != progress_) {
        progress_ = now;
        trace_.line("progress", now);
    }
    inner().service();
}

BoxAnswer TracingPlatform::messagebox(const Box& box) {
    const BoxAnswer answer = inner().messagebox(box);
    trace_.line("messagebox", nameof(box.buttons), nameof(box.icon), quotedtext(box.title),
                quotedtext(box.text), "->", nameof(answer));
    return answer;
}

void TracingPlatform::window(std::string_view name, const WindowChange& change) {
    using Kind = WindowChange::Kind;
    switch (change.kind) {
        case Kind::load:
            trace_.line("window", name, "load");
            break;
        case Kind::unload:
            trace_.line("window", name, "unload");
            break;
        case Kind::caption:
            trace_.line("window", name, "caption", quotedtext(change.text));
            break;
        case Kind::grow:
            trace_.line("window", name, "grow", change.twips);
            break;
        case Kind::shrink:
            trace_.line("window", name, "shrink", change.twips);
            break;
        case Kind::pexitshown:
            trace_.line("window", name, "pexit shown");
            break;
        case Kind::pexithidden:
            trace_.line("window", name, "pexit hidden");
            break;
    }
    inner().window(name, change);
}

}  // namespace keld2::host
