#include "host/files/streamedfile.h"

#include <cerrno>
#include <system_error>

#include "host/hosterror.h"

namespace keld2::host {

namespace {

[[noreturn]] void refuse(const std::filesystem::path& path, int error) {
    throw HostError(exitstatus::nofile, path.string() + ": cannot be written: " +
                                            std::generic_category().message(error));
}

}  // namespace

StreamedFile::~StreamedFile() {
    if (isopen()) writebuffer();
}

void StreamedFile::open(const std::filesystem::path& path) {
    errno = 0;
    file_.open(path, std::ios::binary | std::ios::trunc);
    if (!file_) refuse(path, errno);
    path_ = path;
}

void StreamedFile::writebuffer() {
    errno = 0;
    file_.write(buffer_.data(), static_cast<std::streamsize>(buffer_.size())).flush();
    if (!file_ && fault_ == 0) fault_ = errno == 0 ? EIO : errno;
    buffer_.clear();
}

void StreamedFile::flush() {
    writebuffer();
    if (fault_ != 0) refuse(path_, fault_);
}

}  // namespace keld2::host
