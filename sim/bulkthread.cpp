#include "sim/bulkthread.h"

#include <algorithm>
#include <atomic>
#include <utility>

namespace keld2::sim {

BulkThread::BulkThread(std::function<void()> wake)
    : wake_(std::move(wake)), thread_([this](const std::stop_token& stop) { serve(stop); }) {}

BulkThread::~BulkThread() = default;

void BulkThread::deliver(BulkDelivery delivery) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return !busy_; });
    waiting_ = std::move(delivery);
    busy_ = true;
    changed_.notify_all();
}

void BulkThread::drain() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return !busy_; });
}

void BulkThread::serve(const std::stop_token& stop) {
    std::unique_lock lock(mutex_);
    while (changed_.wait(lock, stop, [this] { return waiting_.has_value(); })) {
        const BulkDelivery delivery = *std::exchange(waiting_, std::nullopt);
        lock.unlock();
        std::ranges::copy(delivery.data, delivery.target.begin());
        std::atomic_ref<std::uint8_t>(*delivery.cell)
            .store(static_cast<std::uint8_t>(delivery.end), std::memory_order_release);
        if (wake_) wake_();
        lock.lock();
        busy_ = false;
        changed_.notify_all();
    }
}

}  // namespace keld2::sim
