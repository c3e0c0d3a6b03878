#include "host/commands/boxes.h"

#include <algorithm>
#include <array>
#include <vector>

#include "host/commands/interruptwatch.h"
#include "host/os/terminal.h"
#include "host/text/boxtext.h"
#include "platform/numbers.h"

namespace keld2::host {

namespace {

constexpr int mostpresets = 10;  // an answer such as retry must not go on for ever

std::vector<BoxAnswer> answersof(BoxButtons buttons) {
    switch (buttons) {
        case BoxButtons::okcancel:
            return {BoxAnswer::ok, BoxAnswer::cancel};
        case BoxButtons::abortretryignore:
            return {BoxAnswer::abort, BoxAnswer::retry, BoxAnswer::ignore};
        default:
            return {BoxAnswer::ok};
    }
}

}  // namespace

BoxAnswer TerminalBoxes::answer(const Box& box) {
    std::string text = utf8(box.text);
    std::replace(text.begin(), text.end(), '\r', '\n');
    std::fprintf(out_, "%s\n%s\n", utf8(box.title).c_str(), text.c_str());
    if (box.buttons == BoxButtons::ok) return BoxAnswer::ok;
    const bool terminal = os::isterminal(os::Stream::input) && os::isterminal(os::Stream::error);
    return terminal && !preset_ ? ask(box.buttons) : unasked(box.buttons);
}

BoxAnswer TerminalBoxes::ask(BoxButtons buttons) {
    const std::vector<BoxAnswer> answers = answersof(buttons);
    while (true) {
        for (const BoxAnswer one : answers)
            std::fprintf(out_, "%s%s", one == answers.front() ? "" : ", ",
                         std::string(nameof(one)).c_str());
        std::fputs("? ", out_);
        std::fflush(out_);
        const auto line = os::readline(&InterruptWatch::asked);
        if (!line) return unasked(buttons);
        for (const BoxAnswer one : answers)
            if (!line->empty() && nameof(one).starts_with(*line)) return one;
    }
}

BoxAnswer TerminalBoxes::unasked(BoxButtons buttons) {
    const std::vector<BoxAnswer> answers = answersof(buttons);
    const bool has =
        preset_ && std::find(answers.begin(), answers.end(), *preset_) != answers.end();
    const BoxAnswer answer = has && presetused_++ < mostpresets ? *preset_ : safeanswer(buttons);
    std::fprintf(out_, "keld2: answered with %s\n", std::string(nameof(answer)).c_str());
    return answer;
}

}  // namespace keld2::host
