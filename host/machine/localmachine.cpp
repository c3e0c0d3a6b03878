#include "host/machine/localmachine.h"

#include "host/files/files.h"
#include "host/hosterror.h"
#include "platform/fault.h"
#include "platform/numbers.h"

namespace keld2::host {

MemoryHandle LocalMemory::open(const std::string& name) {
    const auto at = names_.find(name);
    const std::shared_ptr<Block> block = at == names_.end() ? nullptr : at->second.lock();
    if (block == nullptr) return 0;
    handles_[++last_] = block;
    return last_;
}

MemoryHandle LocalMemory::create(const std::string& name, std::int32_t size) {
    if (size <= 0) return 0;
    auto block = std::make_shared<Block>();
    block->name = name;
    block->bytes.resize(static_cast<std::size_t>(size));
    names_[name] = block;
    handles_[++last_] = std::move(block);
    return last_;
}

std::span<std::byte> LocalMemory::mapview(MemoryHandle handle) {
    const auto at = handles_.find(handle);
    return at == handles_.end() ? std::span<std::byte>{} : std::span(at->second->bytes);
}

bool LocalMemory::unmapview(std::span<std::byte> view) { return !view.empty(); }

void LocalMemory::close(MemoryHandle handle) { handles_.erase(handle); }

StringHandle LocalStrings::allocate(std::u16string_view text) {
    if (text.empty()) return 0;
    texts_[++last_] = text;
    return last_;
}

std::u16string LocalStrings::text(StringHandle handle) const {
    if (handle == 0) return {};
    const auto at = texts_.find(handle);
    if (at == texts_.end()) throw RunFault("stale handle " + std::to_string(handle), "shared text");
    return at->second;
}

void LocalStrings::free(StringHandle handle) {
    if (handle != 0 && texts_.erase(handle) == 0)
        throw RunFault("stale handle " + std::to_string(handle), "shared text");
}

FileContent LocalMachine::readfile(std::span<const std::u16string> parts) {
    std::filesystem::path path = folder_;
    for (const std::u16string& part : parts) {
        if (part.empty() || part == u"." || part == u".." ||
            part.find_first_of(u"/\\:") != part.npos || part.find(u'\0') != part.npos)
            return {.status = FileContent::Status::refused, .bytes = {}};
        path /= utf8(part);
    }
    try {
        return {.status = FileContent::Status::read, .bytes = readbytes(path)};
    } catch (const HostError&) {
        return {};
    }
}

}  // namespace keld2::host
