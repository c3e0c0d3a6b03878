// UsbTransport: carries frames and bulk data to the programmer over USB.
//
// All targets and sources lie in shared blocks, but for one local read-back array of the ARM
// image check. The transport may write a bulk read's target and result cell from its own thread.
#pragma once

#include <cstdint>
#include <span>

namespace keld2 {

// States of a bulk read's result cell; values above 3 mean that the transfer has failed.
enum class BulkState : std::uint8_t {
    idle = 0,
    running = 1,
    done = 2,
    stillrunning = 3,
    failed = 4
};

class UsbTransport {
  public:
    virtual ~UsbTransport() = default;

    // Sends the frame's bytes to the command pipe and returns when they are sent. 0 well, 1 failed.
    virtual int usbcomwrite(std::span<const std::uint8_t> frame) = 0;

    // Starts a read of target.size() bytes from the bulk pipe and returns at once. result is the
    // cell usbpip2readresult[0], written atomically (release) after the last byte of the target.
    virtual void usbbulkread(std::span<std::uint8_t> target, std::uint8_t* result) = 0;

    // Sends bytes from the main buffer or algobuf; returns when they are sent. 0 well, 1 failed.
    virtual int usbbulkwrite(std::span<const std::uint8_t> source) = 0;
};

}  // namespace keld2
