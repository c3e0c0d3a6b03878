#include "host/files/distinctfiles.h"

#include "host/hosterror.h"

namespace keld2::host {

namespace {

bool aresame(const std::filesystem::path& a, const std::filesystem::path& b) {
    std::error_code unreadable;  // told by who opens the file
    if (std::filesystem::is_other(a, unreadable)) return false;
    const auto whole = [&](const std::filesystem::path& path) {
        return std::filesystem::weakly_canonical(std::filesystem::absolute(path, unreadable),
                                                 unreadable);
    };
    return std::filesystem::equivalent(a, b, unreadable) || whole(a) == whole(b);
}

}  // namespace

void checkdistinct(const std::vector<NamedFile>& files) {
    for (const NamedFile& written : files)
        for (const NamedFile& other : files) {
            if (&written == &other || !written.written || !written.path || !other.path) continue;
            if (aresame(*written.path, *other.path))
                throw HostError(exitstatus::usage, written.name + " " + written.path->string() +
                                                       " would overwrite " + other.name +
                                                       ", expected files of their own");
        }
}

}  // namespace keld2::host
