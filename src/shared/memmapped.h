// clsMemMapped: one named shared block.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "platform/platform.h"

namespace keld2 {

class clsMemMapped {
  public:
    explicit clsMemMapped(NamedMemory& memory) : memory_(&memory) {}
    ~clsMemMapped();  // unmaps
    clsMemMapped(const clsMemMapped&) = delete;
    clsMemMapped& operator=(const clsMemMapped&) = delete;

    std::byte* BaseAddress() const { return view_.data(); }
    MemoryHandle hFile() const { return handle_; }  // 0: none; to hand to the operating system
    const std::string& MappedFile() const { return name_; }
    std::int32_t MappedSize() const { return size_; }      // as given at mapping, in bytes
    std::size_t ViewSize() const { return view_.size(); }  // bytes that may be touched

    // Releases the view, then the mapping. False when there was no view; then nothing changes.
    bool UnMapFile();
    // Maps the block of that name: the one that exists, else a new one of size bytes. False when
    // it can be neither opened nor created, or not mapped.
    bool OpenAndMapMemoryBlock(const std::string& name, std::int32_t size);
    // The first host instance number, 0 to 100, whose blocks do not exist yet; 101: all taken.
    std::int16_t findnum();

  private:
    NamedMemory* memory_;
    MemoryHandle handle_ = 0;
    std::span<std::byte> view_;
    std::string name_;
    std::int32_t size_ = 0;
};

}  // namespace keld2
