#include "host/trace/tracelog.h"

#include <algorithm>
#include <cerrno>
#include <system_error>

#include "host/hosterror.h"

namespace keld2::host {

namespace {

constexpr std::size_t bufferlimit = 1 << 20;  // bytes

}  // namespace

TraceLog::~TraceLog() {
    if (file_.is_open()) writebuffer();
}

void TraceLog::open(const std::filesystem::path& path) {
    errno = 0;
    file_.open(path, std::ios::binary | std::ios::trunc);
    if (!file_)
        throw HostError(exitstatus::nofile, path.string() + ": cannot be opened for writing: " +
                                                std::generic_category().message(errno));
    path_ = path;
}

void TraceLog::finish(std::size_t namelength) {
    ++lines_;
    const std::string_view line = line_;
    const std::string_view name = line.substr(0, namelength);
    if (watcher_) watcher_(name, line.substr(std::min(namelength + 1, line.size())));
    if (!file_.is_open() || isleftout(name)) return;
    buffer_.append(line).append(1, '\n');
    if (buffer_.size() > bufferlimit) writebuffer();
}

void TraceLog::writebuffer() {
    file_.write(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
    buffer_.clear();
}

bool TraceLog::isleftout(std::string_view name) const {
    return std::find(without_.begin(), without_.end(), name) != without_.end();
}

void TraceLog::flush() {
    if (!file_.is_open()) return;
    writebuffer();
    file_.flush();
    if (!file_) throw HostError(exitstatus::nofile, path_.string() + ": cannot be written");
}

}  // namespace keld2::host
