#include "sim/replacefile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace keld2::sim {

namespace {

[[noreturn]] void refuse() { throw std::system_error(errno, std::generic_category()); }

void writeall(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(file, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR) refuse();
        if (count > 0) bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

// The new file under its passing name; gone unless it has been put in its place.
class PassingFile {
  public:
    explicit PassingFile(const std::filesystem::path& wanted) {
        constexpr int names = 100;  // beside what dead processes have left
        const std::string begin = wanted.string() + ".new" + std::to_string(::getpid());
        for (int i = 0; i < names && file_ < 0; ++i) {
            path_ = begin + "-" + std::to_string(i);
            file_ = ::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
            if (file_ < 0 && errno != EEXIST) break;
        }
        if (file_ < 0) refuse();
    }
    ~PassingFile() {
        ::close(file_);
        if (!placed_) ::unlink(path_.c_str());
    }
    PassingFile(const PassingFile&) = delete;
    PassingFile& operator=(const PassingFile&) = delete;

    void allow(::mode_t mode) {
        if (::fchmod(file_, mode) != 0) refuse();
    }

    void write(std::string_view bytes) {
        writeall(file_, bytes);
        if (::fsync(file_) != 0) refuse();
    }

    void place(const std::filesystem::path& wanted) {
        if (::rename(path_.c_str(), wanted.c_str()) != 0) refuse();
        placed_ = true;
    }

  private:
    std::string path_;
    int file_ = -1;
    bool placed_ = false;
};

// A terminal, a pipe, a device: nothing can be put in its place.
void writethrough(const std::filesystem::path& wanted, std::string_view bytes) {
    const int file = ::open(wanted.c_str(), O_WRONLY | O_CLOEXEC);
    if (file < 0) refuse();
    try {
        writeall(file, bytes);
    } catch (...) {
        ::close(file);
        throw;
    }
    ::close(file);
}

// Makes the new name of a file in its folder last.
void syncfolder(const std::filesystem::path& file) {
    const std::filesystem::path folder = file.has_parent_path() ? file.parent_path() : ".";
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY);
    if (descriptor < 0) return;
    ::fsync(descriptor);
    ::close(descriptor);
}

}  // namespace

void replacefile(const std::filesystem::path& wanted, std::string_view bytes) {
    struct stat former {};
    const bool exists = ::stat(wanted.c_str(), &former) == 0;
    if (exists && !S_ISREG(former.st_mode)) return writethrough(wanted, bytes);
    if (exists && ::access(wanted.c_str(), W_OK) != 0) refuse();
    const std::filesystem::path target =
        std::filesystem::is_symlink(wanted) ? std::filesystem::weakly_canonical(wanted) : wanted;
    PassingFile file(target);
    if (exists) file.allow(former.st_mode & 07777);
    file.write(bytes);
    file.place(target);
    syncfolder(target);
}

}  // namespace keld2::sim
