#include "host/run/readbacks.h"

#include <atomic>

namespace keld2::host {

void ReadBackKeeper::begintext() {
    close();
    texts_.emplace_back();
}

void ReadBackKeeper::open(std::span<const std::uint8_t> target, std::uint8_t* result) {
    target_ = target;
    result_ = result;
}

void ReadBackKeeper::close() {
    if (result_ == nullptr) return;
    constexpr auto done = static_cast<std::uint8_t>(BulkState::done);
    const bool well =
        std::atomic_ref<std::uint8_t>(*result_).load(std::memory_order_acquire) == done;
    if (well && !texts_.empty()) texts_.back().emplace_back(target_.begin(), target_.end());
    result_ = nullptr;
}

}  // namespace keld2::host
