#include "host/run/logfollower.h"

#include "platform/numbers.h"

namespace keld2::host {

void LogFollower::poll() {
    const std::u16string log = s_.MainRtstr[0].text();
    if (log == seen_) return;
    std::size_t from = log.starts_with(seen_) ? seen_.size() : 0;
    for (std::size_t end; (end = log.find(u'\n', from)) != log.npos; from = end + 1)
        sink_(utf8(log.substr(from, end - from)));
    seen_ = log.substr(0, from);
}

}  // namespace keld2::host
