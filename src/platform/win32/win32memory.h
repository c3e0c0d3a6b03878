// Named memory of Windows: file mappings backed by the system paging file.
#pragma once

#include "platform/platform.h"

namespace keld2 {

class Win32Memory final : public NamedMemory {
  public:
    MemoryHandle open(const std::string& name) override;
    MemoryHandle create(const std::string& name, std::int32_t size) override;
    std::span<std::byte> mapview(MemoryHandle handle) override;
    bool unmapview(std::span<std::byte> view) override;
    void close(MemoryHandle handle) override;
};

}  // namespace keld2
