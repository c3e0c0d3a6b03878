// BulkThread: delivers bulk reads from a thread of its own, one after the other.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <span>
#include <thread>
#include <vector>

#include "external/usbtransport.h"

namespace keld2::sim {

// One read that ends. data is as long as target, or empty.
struct BulkDelivery {
    std::vector<std::uint8_t> data;
    std::span<std::uint8_t> target;
    std::uint8_t* cell = nullptr;  // the result cell
    BulkState end = BulkState::done;
};

class BulkThread {
  public:
    // wake is called from the thread after each delivery; empty: nobody is woken.
    explicit BulkThread(std::function<void()> wake);
    ~BulkThread();  // ends after the delivery under way
    BulkThread(const BulkThread&) = delete;
    BulkThread& operator=(const BulkThread&) = delete;

    // Copies the data to the target, then stores the end in the cell (release), soon. Waits for
    // the delivery before it.
    void deliver(BulkDelivery delivery);
    // Returns when nothing is under way.
    void drain();

  private:
    void serve(const std::stop_token& stop);

    std::function<void()> wake_;
    std::mutex mutex_;
    std::condition_variable_any changed_;
    std::optional<BulkDelivery> waiting_;
    bool busy_ = false;
    std::jthread thread_;  // last: started when all else stands, joined before it goes
};

}  // namespace keld2::sim
