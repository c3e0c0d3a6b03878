#include "host/trace/tracelog.h"

#include <algorithm>

namespace keld2::host {

void TraceLog::finish(std::size_t namelength) {
    ++lines_;
    const std::string_view line = line_;
    const std::string_view name = line.substr(0, namelength);
    if (watcher_) watcher_(name, line.substr(std::min(namelength + 1, line.size())));
    if (file_.isopen() && !isleftout(name)) file_ << line << "\n";
}

bool TraceLog::isleftout(std::string_view name) const {
    return std::find(without_.begin(), without_.end(), name) != without_.end();
}

}  // namespace keld2::host
