#include "platform/posix/posixmemory.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <utility>

namespace keld2 {

namespace {

constexpr mode_t ownonly = 0600;
const std::string folder = "/dev/shm";  // where the objects have their names

// A file descriptor that closes itself unless it is released.
class Descriptor {
  public:
    explicit Descriptor(int fd) : fd_(fd) {}
    ~Descriptor() {
        if (fd_ >= 0) ::close(fd_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    bool opened() const { return fd_ >= 0; }
    int get() const { return fd_; }
    int release() { return std::exchange(fd_, -1); }

  private:
    int fd_;
};

int opened(const std::string& object, int flags) {
    return shm_open(object.c_str(), O_RDWR | O_CLOEXEC | flags, ownonly);
}

bool locked(int fd, int kind) {
    int answer;
    do answer = flock(fd, kind | LOCK_NB);
    while (answer != 0 && errno == EINTR);
    return answer == 0;
}

// Whether the object still has its name.
bool named(int fd) {
    struct stat found {};
    return fstat(fd, &found) == 0 && found.st_nlink > 0;
}

// Removes the object when nobody holds it; the descriptor must be the caller's own.
bool removeifunused(int fd, const std::string& object) {
    if (!locked(fd, LOCK_EX) || !named(fd)) return false;
    shm_unlink(object.c_str());
    return true;
}

std::size_t pagerounded(std::size_t size) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    return (size + page - 1) / page * page;
}

}  // namespace

PosixMemory::~PosixMemory() {
    while (!objects_.empty()) close(objects_.begin()->first);
}

MemoryHandle PosixMemory::remember(int descriptor, const std::string& object) {
    const MemoryHandle handle = descriptor + 1;
    objects_[handle] = object;
    return handle;
}

MemoryHandle PosixMemory::open(const std::string& name) {
    const std::string object = objectname(name);
    for (;;) {
        Descriptor fd(opened(object, 0));
        if (!fd.opened()) return 0;
        if (removeifunused(fd.get(), object)) continue;
        // Somebody uses it, or is just removing it: then the name is gone on the next look.
        if (!locked(fd.get(), LOCK_SH)) {
            usleep(100);
            continue;
        }
        if (named(fd.get())) return remember(fd.release(), object);
    }
}

// The block gets its lock and its size under a name of its own and then, in one step, the name
// under which others find it.
MemoryHandle PosixMemory::create(const std::string& name, std::int32_t size) {
    if (size <= 0) return 0;
    const std::string object = objectname(name);
    const std::string own = object + ".new" + std::to_string(getpid()) + "-" +
                            std::to_string(reinterpret_cast<std::uintptr_t>(this));
    for (;;) {
        Descriptor fd(opened(own, O_CREAT | O_TRUNC));
        if (!fd.opened()) return 0;
        const bool ready = locked(fd.get(), LOCK_SH) && posix_fallocate(fd.get(), 0, size) == 0;
        const bool linked = ready && link((folder + own).c_str(), (folder + object).c_str()) == 0;
        const bool taken = ready && !linked && errno == EEXIST;
        shm_unlink(own.c_str());
        if (linked) return remember(fd.release(), object);
        if (!taken) return 0;
        if (const MemoryHandle existing = open(name); existing != 0) return existing;
    }
}

std::span<std::byte> PosixMemory::mapview(MemoryHandle handle) {
    const int fd = static_cast<int>(handle) - 1;
    struct stat found {};
    if (fstat(fd, &found) != 0 || found.st_size <= 0) return {};
    const std::size_t length = pagerounded(static_cast<std::size_t>(found.st_size));
    void* base = mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    if (base == MAP_FAILED) return {};
    return {static_cast<std::byte*>(base), length};
}

bool PosixMemory::unmapview(std::span<std::byte> view) {
    return munmap(view.data(), view.size()) == 0;
}

void PosixMemory::close(MemoryHandle handle) {
    const auto object = objects_.find(handle);
    if (object == objects_.end()) return;
    const Descriptor fd(static_cast<int>(handle) - 1);
    removeifunused(fd.get(), object->second);
    objects_.erase(object);
}

int removeleftovers(const std::string& prefix) {
    int removed = 0;
    std::error_code fault;
    for (const auto& entry : std::filesystem::directory_iterator("/dev/shm", fault)) {
        const std::string name = entry.path().filename().string();
        if (!name.starts_with(prefix)) continue;
        const Descriptor fd(opened("/" + name, 0));
        if (fd.opened() && removeifunused(fd.get(), "/" + name)) ++removed;
    }
    return removed;
}

}  // namespace keld2
