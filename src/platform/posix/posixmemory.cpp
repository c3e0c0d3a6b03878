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
constexpr int looks = 10000;            // at a name that somebody is removing
constexpr useconds_t pause = 100;       // us between two looks
constexpr int attempts = 50;            // to create a block against others that do the same
const std::string folder = "/dev/shm";  // where the objects have their names

// A file descriptor that closes itself unless it is released.
class Descriptor {
  public:
    explicit Descriptor(int fd) : fd_(fd) {}
    ~Descriptor() { reset(-1); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    bool opened() const { return fd_ >= 0; }
    int get() const { return fd_; }
    int release() { return std::exchange(fd_, -1); }
    void reset(int fd) {
        if (fd_ >= 0) ::close(fd_);
        fd_ = fd;
    }

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

// Whether the name still stands for this object: it may have been removed, or given to another.
bool named(int fd, const std::string& object) {
    struct stat held {};
    struct stat found {};
    return fstat(fd, &held) == 0 && stat((folder + object).c_str(), &found) == 0 &&
           held.st_dev == found.st_dev && held.st_ino == found.st_ino;
}

enum class Sweep { inuse, gone, stuck };

// Removes the object when nobody holds it; the descriptor must be the caller's own. Nobody else
// can take a name away while its object is locked.
Sweep removeifunused(int fd, const std::string& object) {
    if (!locked(fd, LOCK_EX)) return Sweep::inuse;
    const bool gone = !named(fd, object) || shm_unlink(object.c_str()) == 0;
    return gone ? Sweep::gone : Sweep::stuck;
}

// Backs the block with memory, so that touching it can never fail later.
bool backed(int fd, off_t size) {
    int fault;
    do fault = posix_fallocate(fd, 0, size);
    while (fault == EINTR);
    return fault == 0;
}

// The block gets its lock and its memory under a name of its own and then, in one step, the name
// under which others find it. Answers 0 or the fault's number.
int publish(Descriptor& fd, const std::string& own, const std::string& object, std::int32_t size) {
    fd.reset(opened(own, O_CREAT | O_EXCL));
    if (!fd.opened()) return errno;
    int fault = 0;
    if (!locked(fd.get(), LOCK_SH))
        fault = EWOULDBLOCK;
    else if (!backed(fd.get(), size))
        fault = ENOSPC;
    else if (link((folder + own).c_str(), (folder + object).c_str()) != 0)
        fault = errno;
    shm_unlink(own.c_str());
    return fault;
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
    for (int look = 0; look < looks; ++look) {
        Descriptor fd(opened(object, 0));
        if (!fd.opened()) return 0;
        const Sweep sweep = removeifunused(fd.get(), object);
        if (sweep == Sweep::gone) continue;
        if (sweep == Sweep::stuck) return 0;
        if (!locked(fd.get(), LOCK_SH)) {
            usleep(pause);  // somebody is just removing it: then the name is gone on a next look
            continue;
        }
        if (named(fd.get(), object)) return remember(fd.release(), object);
    }
    return 0;
}

MemoryHandle PosixMemory::create(const std::string& name, std::int32_t size) {
    if (size <= 0) return 0;
    const std::string object = objectname(name);
    const std::string own = object + ".new" + std::to_string(getpid()) + "-" +
                            std::to_string(reinterpret_cast<std::uintptr_t>(this)) + "-";
    Descriptor fd(-1);
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (const MemoryHandle existing = open(name); existing != 0) return existing;
        const int fault = publish(fd, own + std::to_string(attempt), object, size);
        if (fault == 0) return remember(fd.release(), object);
        // Another creator was first, or a sweep came across the block before it had its lock.
        if (fault != EEXIST && fault != ENOENT && fault != EWOULDBLOCK) return 0;
    }
    return 0;
}

std::span<std::byte> PosixMemory::mapview(MemoryHandle handle) {
    if (!objects_.contains(handle)) return {};
    const int fd = static_cast<int>(handle) - 1;
    struct stat found {};
    if (fstat(fd, &found) != 0 || found.st_size <= 0 || !backed(fd, found.st_size)) return {};
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

std::string uniquescope(const void* user) {
    return "keld2-" + std::to_string(getpid()) + "-" +
           std::to_string(reinterpret_cast<std::uintptr_t>(user)) + "-";
}

int removeleftovers(const std::string& prefix) {
    if (prefix.empty()) return 0;
    int removed = 0;
    std::error_code fault;
    std::filesystem::directory_iterator entry(folder, fault);
    for (; !fault && entry != std::filesystem::directory_iterator(); entry.increment(fault)) {
        const std::string object = "/" + entry->path().filename().string();
        std::error_code unknown;
        if (!object.starts_with("/" + prefix) || !entry->is_regular_file(unknown)) continue;
        const Descriptor fd(opened(object, 0));
        if (fd.opened() && removeifunused(fd.get(), object) == Sweep::gone) ++removed;
    }
    return removed;
}

}  // namespace keld2
