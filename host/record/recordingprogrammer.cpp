#include "host/record/recordingprogrammer.h"

#include <vector>

namespace keld2::host {

namespace {

constexpr std::uint8_t stopped = 2;

}  // namespace

bool RecordingDevCore::transferwait(std::uint8_t count) {
    const std::span status{s_.ibuf1.data(), static_cast<std::size_t>(s_.ibuf1.size())};
    const std::vector<std::uint8_t> before(status.begin(), status.end());
    const bool well = inner().transferwait(count);
    recorder_.transferwait(well, before, status);
    return well;
}

int RecordingTransport::usbcomwrite(std::span<const std::uint8_t> frame) {
    const int answer = inner_->usbcomwrite(frame);
    recorder_.number("usbcomwrite", answer);
    return answer;
}

void RecordingTransport::usbbulkread(std::span<std::uint8_t> target, std::uint8_t* result) {
    recorder_.bulkread(*inner_, target, result);
}

int RecordingTransport::usbbulkwrite(std::span<const std::uint8_t> source) {
    const int answer = inner_->usbbulkwrite(source);
    recorder_.number("usbbulkwrite", answer);
    return answer;
}

void RecordingPlatform::service() {
    const bool before = s_.prgresult.acquire(0) == stopped;
    inner().service();
    recorder_.deliver();
    if (!before && s_.prgresult.acquire(0) == stopped) recorder_.stop(trace_.lines());
}

BoxAnswer RecordingPlatform::messagebox(const Box& box) {
    const BoxAnswer answer = inner().messagebox(box);
    recorder_.box(box.buttons, answer);
    return answer;
}

}  // namespace keld2::host
