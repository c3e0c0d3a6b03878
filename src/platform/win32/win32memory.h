// Named memory of Windows: file mappings backed by the system paging file.
#pragma once

#include <string>
#include <utility>

#include "platform/platform.h"

namespace keld2 {

class Win32Memory final : public NamedMemory {
  public:
    // scope: put before every name, so that several hosts can work side by side on one machine.
    explicit Win32Memory(std::string scope = {}) : scope_(std::move(scope)) {}
    MemoryHandle open(const std::string& name) override;
    MemoryHandle create(const std::string& name, std::int32_t size) override;
    std::span<std::byte> mapview(MemoryHandle handle) override;
    bool unmapview(std::span<std::byte> view) override;
    void close(MemoryHandle handle) override;

  private:
    std::string scope_;
};

}  // namespace keld2
