#include "shared/memmapped.h"

namespace keld2 {

clsMemMapped::~clsMemMapped() {
    if (!UnMapFile() && handle_ != 0) memory_->close(handle_);
}

bool clsMemMapped::UnMapFile() {
    if (view_.empty() || !memory_->unmapview(view_)) return false;
    memory_->close(handle_);
    handle_ = 0;
    view_ = {};
    name_.clear();
    size_ = 0;
    return true;
}

bool clsMemMapped::OpenAndMapMemoryBlock(const std::string& name, std::int32_t size) {
    if (handle_ != 0 && !UnMapFile()) {
        memory_->close(handle_);  // a handle that an earlier call could not map
        handle_ = 0;
    }
    handle_ = memory_->open(name);
    if (handle_ == 0) handle_ = memory_->create(name, size);
    if (handle_ == 0) return false;
    view_ = memory_->mapview(handle_);
    if (view_.empty()) return false;
    name_ = name;
    size_ = size;
    return true;
}

std::int16_t clsMemMapped::findnum() {
    for (std::int16_t i = 0; i <= 100; ++i) {
        const MemoryHandle handle = memory_->open("queltaibuf1" + std::to_string(i));
        if (handle == 0) return i;
        memory_->close(handle);
    }
    return 101;
}

}  // namespace keld2
