// ReadBack: the memory in which the bytes of a list job, or of a fast block read, wait to be
// fetched. Once it has been armed the next byte starts a new block; what has been fetched well is
// gone, what has not can be asked for again.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "sim/socket.h"

namespace keld2::sim {

class ReadBack {
  public:
    void arm() { armed_ = true; }
    void clear() {
        bytes_.clear();
        fetched_ = 0;
        armed_ = false;
    }
    void append(std::uint8_t b) {
        if (armed_) clear();
        bytes_.push_back(b);
    }
    // The next count bytes, filled up with 255 where there are no more.
    std::vector<std::uint8_t> next(std::size_t count) const {
        std::vector<std::uint8_t> block(count, pulledup);
        const std::size_t there = std::min(count, bytes_.size() - fetched_);
        std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(fetched_), there, block.begin());
        return block;
    }
    void pass(std::size_t count) { fetched_ = std::min(bytes_.size(), fetched_ + count); }

  private:
    std::vector<std::uint8_t> bytes_;
    std::size_t fetched_ = 0;
    bool armed_ = false;
};

}  // namespace keld2::sim
