// Shared strings of Linux: one allocator for host and plug-in of a process.
#pragma once

#include <vector>

#include "platform/platform.h"

namespace keld2 {

// A handle is a slot's number and the slot's generation, so that a handle of a text that is gone
// is known to be stale, for ever. The empty text is handle 0. Up to a million texts at a time.
class PosixStrings final : public SharedStrings {
  public:
    StringHandle allocate(std::u16string_view text) override;
    std::u16string text(StringHandle handle) const override;
    void free(StringHandle handle) override;
    std::size_t living() const { return slots_.size() - free_.size() - retired_; }

  private:
    struct Slot {
        std::u16string text;
        std::uint32_t generation = 0;
        bool used = false;
    };

    std::size_t slotof(StringHandle handle) const;

    std::vector<Slot> slots_;
    std::vector<std::size_t> free_;
    std::size_t retired_ = 0;
};

}  // namespace keld2
