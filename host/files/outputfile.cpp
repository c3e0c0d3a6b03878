#include "host/files/outputfile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "host/hosterror.h"

namespace keld2::host {

namespace {

[[noreturn]] void refuse(const std::filesystem::path& path, const std::string& message) {
    throw HostError(exitstatus::nofile, path.string() + ": " + message);
}

[[noreturn]] void refusewitherror(const std::filesystem::path& path, int error) {
    refuse(path, std::string("cannot be written: ") + std::strerror(error));
}

// The new file under its passing name; removed unless it has been put in its place.
class PassingFile {
  public:
    explicit PassingFile(const std::filesystem::path& target)
        : target_(target),
          path_(target.string() + ".new" + std::to_string(::getpid())),
          file_(::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666)) {
        if (file_ < 0) refusewitherror(target_, errno);
    }
    ~PassingFile() {
        if (file_ >= 0) ::close(file_);
        if (!placed_) ::unlink(path_.c_str());
    }
    PassingFile(const PassingFile&) = delete;
    PassingFile& operator=(const PassingFile&) = delete;

    void write(std::string_view text) {
        while (!text.empty()) {
            const ssize_t count = ::write(file_, text.data(), text.size());
            if (count < 0 && errno != EINTR) refusewitherror(target_, errno);
            if (count > 0) text.remove_prefix(static_cast<std::size_t>(count));
        }
        if (::fsync(file_) != 0) refusewitherror(target_, errno);
    }

    void place() {
        if (::rename(path_.c_str(), target_.c_str()) != 0) refusewitherror(target_, errno);
        placed_ = true;
    }

  private:
    const std::filesystem::path& target_;
    std::string path_;
    int file_;
    bool placed_ = false;
};

}  // namespace

void checkoutput(const std::filesystem::path& path, bool overwrite) {
    if (std::filesystem::is_directory(path)) refuse(path, "is a folder, expected a file");
    if (!overwrite && std::filesystem::exists(std::filesystem::symlink_status(path)))
        refuse(path, "exists already; --force overwrites it");
    const std::filesystem::path folder = path.has_parent_path() ? path.parent_path() : ".";
    if (::access(folder.c_str(), W_OK) != 0) refusewitherror(path, errno);
}

void writeoutput(const std::filesystem::path& path, std::string_view text, bool overwrite) {
    checkoutput(path, overwrite);
    PassingFile file(path);
    file.write(text);
    file.place();
}

}  // namespace keld2::host
