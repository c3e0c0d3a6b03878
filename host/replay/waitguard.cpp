#include "host/replay/waitguard.h"

#include "platform/fault.h"

namespace keld2::host {

namespace {

constexpr std::int64_t mostservices = 600'000;       // of one wait, a millisecond each
constexpr std::int64_t mostquestions = 10'000;       // of one session
constexpr std::int64_t mosteffects = 1'000'000'000;  // without a service between them
constexpr std::size_t shownlength = 80;              // characters of an effect in a message

// A stop frame is sent again with every status record.
bool isstopframe(std::string_view name, std::string_view rest) {
    return name == "usbcomwrite" && rest.starts_with("8 341e");
}

}  // namespace

void WaitGuard::effect(std::string_view name, std::string_view rest) {
    if (name == "progress") return;
    if (name == "transferwait") {
        status_ = true;
        return;
    }
    if (isstopframe(name, rest)) return;
    services_ = 0;
    status_ = false;
    last_.assign(name).append(1, ' ').append(rest.substr(0, shownlength));
    if (++effects_ >= mosteffects && !abandoned())
        abandon("calls without any service of the message loop, the last is \"" + last_ + "\"");
}

void WaitGuard::service() {
    throwabandoned();
    effects_ = 0;
    if (++services_ < mostservices) return;
    abandon((status_ ? "the status wait (transferwait) behind \"" : "the wait behind \"") + last_ +
            "\"");
}

void WaitGuard::question() {
    throwabandoned();
    if (++questions_ >= mostquestions) abandon("a question that is asked again after every answer");
}

void WaitGuard::abandon(std::string wait) {
    wait_ = std::move(wait);
    throw RunFault("the run is abandoned", wait_);
}

void WaitGuard::throwabandoned() const {
    if (abandoned()) throw RunFault("the run is abandoned", wait_);
}

}  // namespace keld2::host
