// Shared strings of Windows: the system's own allocator for automation texts.
#pragma once

#include "platform/platform.h"

namespace keld2 {

// A handle is the text's address, as the host's own texts are. The system gives no way to tell a
// stale one.
class Win32Strings final : public SharedStrings {
  public:
    StringHandle allocate(std::u16string_view text) override;
    std::u16string text(StringHandle handle) const override;
    void free(StringHandle handle) override;
};

}  // namespace keld2
