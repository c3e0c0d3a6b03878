// A transport that answers bulk reads from threads of its own, as a USB library does.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <deque>
#include <span>
#include <thread>
#include <vector>

#include "external/usbtransport.h"
#include "platform/platform.h"

namespace keld2::test {

struct Answer {
    BulkState end = BulkState::done;  // running: the read hangs
    std::uint8_t seed = 0;            // of the bytes, see patternbyte
    std::chrono::microseconds delay{0};
};

inline std::uint8_t patternbyte(std::uint8_t seed, std::size_t at) {
    return static_cast<std::uint8_t>(seed + at * 7 + at / 256);
}

class ThreadedTransport final : public UsbTransport {
  public:
    using Clock = std::chrono::steady_clock;

    // woken: woken at the end of each read. nullptr: the cell alone tells the end, and nothing
    // else orders the bytes before it.
    explicit ThreadedTransport(Platform* woken) : woken_(woken) {}
    ~ThreadedTransport() override { await(); }

    std::deque<Answer> answers;
    int started = 0;

    // When the newest read ended.
    Clock::time_point ended() {
        await();
        return ended_;
    }

    int usbcomwrite(std::span<const std::uint8_t>) override { return 0; }
    int usbbulkwrite(std::span<const std::uint8_t>) override { return 0; }
    void usbbulkread(std::span<std::uint8_t> target, std::uint8_t* result) override {
        await();
        ++started;
        const Answer answer = answers.front();
        answers.pop_front();
        thread_ = std::thread([this, answer, target, result] { carryout(answer, target, result); });
    }

  private:
    void await() {
        if (thread_.joinable()) thread_.join();
    }

    void carryout(const Answer& answer, std::span<std::uint8_t> target, std::uint8_t* result) {
        const std::atomic_ref<std::uint8_t> cell(*result);
        cell.store(static_cast<std::uint8_t>(BulkState::running), std::memory_order_release);
        std::this_thread::sleep_for(answer.delay);
        cell.store(static_cast<std::uint8_t>(BulkState::stillrunning), std::memory_order_release);
        if (answer.end == BulkState::running) return;
        if (answer.end == BulkState::done)
            for (std::size_t i = 0; i < target.size(); ++i) target[i] = patternbyte(answer.seed, i);
        ended_ = Clock::now();
        cell.store(static_cast<std::uint8_t>(answer.end), std::memory_order_release);
        if (woken_ != nullptr) woken_->wake();
    }

    Platform* woken_;
    Clock::time_point ended_;
    std::thread thread_;
};

}  // namespace keld2::test
