// Named memory of Linux: shared memory objects that vanish with their last user.
//
// Every user of a block holds a shared lock on its object. The last one to close it takes the lock
// exclusively and removes the name. An object whose lock nobody holds is left over from a process
// that has died: it counts as not existing and is removed by whoever finds it. What stands under a
// block's name and is no block, or cannot be opened or removed, makes open and create answer 0.
#pragma once

#include <map>
#include <string>

#include "platform/platform.h"

namespace keld2 {

// For use by one thread; any number of objects may use the same blocks.
class PosixMemory final : public NamedMemory {
  public:
    // scope: put before every name, so that several hosts can work side by side on one machine.
    explicit PosixMemory(std::string scope = {}) : scope_(std::move(scope)) {}
    ~PosixMemory() override;
    PosixMemory(const PosixMemory&) = delete;
    PosixMemory& operator=(const PosixMemory&) = delete;

    MemoryHandle open(const std::string& name) override;
    // All its memory is there from the start: 0 where the machine cannot give it.
    MemoryHandle create(const std::string& name, std::int32_t size) override;
    std::span<std::byte> mapview(MemoryHandle handle) override;  // whole pages
    bool unmapview(std::span<std::byte> view) override;
    void close(MemoryHandle handle) override;

  private:
    std::string objectname(const std::string& name) const { return "/" + scope_ + name; }
    MemoryHandle remember(int descriptor, const std::string& object);

    std::string scope_;
    std::map<MemoryHandle, std::string> objects_;  // by handle: descriptor + 1
};

// A scope that no other user has, in this process or another, as long as user lives.
std::string uniquescope(const void* user);

// Removes the blocks of dead processes whose names begin with prefix: a scope, or "quelta" where
// there is none. An empty prefix removes nothing. Answers how many blocks it found left over.
int removeleftovers(const std::string& prefix);

}  // namespace keld2
