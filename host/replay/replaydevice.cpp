#include "host/replay/replaydevice.h"

#include <algorithm>
#include <atomic>

#include "shared/datacheck.h"

namespace keld2::host {

namespace {

int answerof(Answers<int>& answers, int otherwise) {
    const int* answer = answers.next();
    return answer == nullptr ? otherwise : *answer;
}

constexpr int wellanswer = 0;
constexpr int idleregister = 255;
constexpr std::uint8_t fullpercent = 0x64;

}  // namespace

int ReplayDevCore::readycheck() { return answerof(replay_.readycheck, wellanswer); }

int ReplayDevCore::modeselect(std::uint8_t) { return answerof(replay_.modeselect, wellanswer); }

int ReplayDevCore::modeselect2(std::uint8_t, int) {
    return answerof(replay_.modeselect2, wellanswer);
}

int ReplayDevCore::modeselect3(std::uint8_t, int) {
    return answerof(replay_.modeselect3, wellanswer);
}

int ReplayDevCore::armready() { return answerof(replay_.armready, wellanswer); }

std::uint8_t ReplayDevCore::regread(std::uint8_t) {
    return static_cast<std::uint8_t>(answerof(replay_.regread, idleregister));
}

int ReplayDevCore::checkbyte(std::int16_t value, std::int32_t address, int mode) {
    return keld2::checkbyte(s_, value, address, mode);
}

int ReplayDevCore::checkword(std::uint8_t low, std::uint8_t high, std::int32_t address, int mode,
                             int) {
    return keld2::checkword(s_, low, high, address, mode);
}

bool ReplayDevCore::transferwait(std::uint8_t) {
    const TransferAnswer* answer = replay_.transferwait.next();
    if (answer == nullptr) {
        s_.ibuf1[0] = fullpercent;
        return true;
    }
    for (std::size_t i = 0; i < answer->status.size(); ++i)
        s_.ibuf1[static_cast<std::int64_t>(i)] = answer->status[i];
    return answer->well;
}

int ReplayTransport::usbcomwrite(std::span<const std::uint8_t>) {
    return answerof(replay_.usbcomwrite, wellanswer);
}

int ReplayTransport::usbbulkwrite(std::span<const std::uint8_t>) {
    return answerof(replay_.usbbulkwrite, wellanswer);
}

void ReplayTransport::usbbulkread(std::span<std::uint8_t> target, std::uint8_t* result) {
    using Kind = BulkReadAnswer::Kind;
    const BulkReadAnswer filled{.kind = Kind::bytes, .bytes = {}, .rest = 255};
    const BulkReadAnswer* given = replay_.usbbulkread.next();
    const BulkReadAnswer& answer = given == nullptr ? filled : *given;
    BulkState state = BulkState::done;
    if (answer.kind == Kind::failed) state = BulkState::failed;
    if (answer.kind == Kind::hanging) state = BulkState::running;
    if (state == BulkState::done) {
        const std::size_t known = std::min(answer.bytes.size(), target.size());
        std::copy_n(answer.bytes.begin(), known, target.begin());
        std::fill(target.begin() + static_cast<std::ptrdiff_t>(known), target.end(), answer.rest);
    }
    std::atomic_ref<std::uint8_t>(*result).store(static_cast<std::uint8_t>(state),
                                                 std::memory_order_release);
}

}  // namespace keld2::host
