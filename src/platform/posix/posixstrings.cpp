#include "platform/posix/posixstrings.h"

#include "platform/fault.h"

namespace keld2 {

namespace {

constexpr std::uint32_t slotbits = 20;  // of a handle; the rest is the generation
constexpr std::size_t mostslots = (std::size_t{1} << slotbits) - 1;
constexpr std::uint32_t generations = 1U << (32 - slotbits);

}  // namespace

StringHandle PosixStrings::allocate(std::u16string_view text) {
    if (text.empty()) return 0;
    if (free_.empty()) {
        if (slots_.size() == mostslots)
            throw RunFault("no room for another text", "shared strings");
        free_.push_back(slots_.size());
        slots_.emplace_back();
    }
    const std::size_t index = free_.back();
    Slot& slot = slots_[index];
    slot.text = text;
    slot.used = true;
    free_.pop_back();
    return slot.generation << slotbits | static_cast<StringHandle>(index + 1);
}

std::u16string PosixStrings::text(StringHandle handle) const {
    return handle == 0 ? std::u16string{} : slots_[slotof(handle)].text;
}

void PosixStrings::free(StringHandle handle) {
    if (handle == 0) return;
    const std::size_t index = slotof(handle);
    Slot& slot = slots_[index];
    slot.text = std::u16string();  // gives the memory back
    slot.used = false;
    // A place whose generations are used up is given up, so that no old handle is ever right again.
    if (++slot.generation < generations)
        free_.push_back(index);
    else
        ++retired_;
}

std::size_t PosixStrings::slotof(StringHandle handle) const {
    const std::size_t number = handle & mostslots;
    if (number == 0 || number > slots_.size())
        throw RunFault("no text was ever given the handle " + std::to_string(handle),
                       "shared strings");
    const Slot& slot = slots_[number - 1];
    if (!slot.used || slot.generation != handle >> slotbits)
        throw RunFault("the text of handle " + std::to_string(handle) + " has been freed",
                       "shared strings");
    return number - 1;
}

}  // namespace keld2
