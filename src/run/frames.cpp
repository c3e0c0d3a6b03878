#include "run/frames.h"

namespace keld2 {

namespace {

void setreadback(const RunContext& run, std::uint8_t low, std::uint8_t high, std::int64_t length) {
    run.s.ubuf1[0] = framekind::readback;
    run.s.ubuf1[1] = low;
    run.s.ubuf1[2] = high;
    sendframe(run, length);
}

}  // namespace

void sendframe(const RunContext& run, std::int64_t length) {
    (void)run.s.ubuf1[length - 1];  // within the frame
    run.usb.usbcomwrite({run.s.ubuf1.data(), static_cast<std::size_t>(length)});
}

void sendlistmode(const RunContext& run, std::uint8_t mode) {
    run.s.ubuf1[0] = framekind::listmode;
    run.s.ubuf1[1] = mode;
    sendframe(run, 15);
}

void armreadback(const RunContext& run, std::int64_t length) { setreadback(run, 16, 64, length); }

void resetreadback(const RunContext& run) { setreadback(run, 0, 0, 8); }

}  // namespace keld2
