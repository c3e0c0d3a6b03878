#include "sim/armflash.h"

#include <algorithm>

namespace keld2::sim {

namespace {

constexpr std::int64_t mostbytes = 1 << 26;
constexpr std::size_t mostcode = 16;
constexpr std::size_t serialbytes = 9;

std::vector<std::uint8_t> bytesof(SpecReader& spec, const std::string& key) {
    const std::vector<std::int64_t> values = spec.integers(key, 0, 255);
    return {values.begin(), values.end()};
}

}  // namespace

ArmFlash::ArmFlash(SpecReader& spec, const Faults& faults)
    : data_(static_cast<std::size_t>(spec.integer("bytes", 1, mostbytes)), faults.stuck),
      sector_(spec.integer("sector", 1, mostbytes)),
      maker_(static_cast<std::uint8_t>(spec.integer("maker", 0, 255))),
      code_(bytesof(spec, "code")),
      weak_(faults.weak) {
    if (code_.empty() || code_.size() > mostcode) spec.refuse("code", "has not 1 to 16 values");
    if (faults.wrongid) code_[0] ^= 255;
    if (spec.has("serial")) serial_ = bytesof(spec, "serial");
    if (spec.has("serial") && serial_.size() != serialbytes)
        spec.refuse("serial", "has not 9 values");
    cells_.fill(erased);
}

std::vector<StateSection> ArmFlash::state() {
    return {{"flash", data_.bytes()}, {"configuration", cells_}, {"protection", {&protection_, 1}}};
}

std::uint8_t ArmFlash::read(std::int64_t address, int vcc) const {
    const auto at = static_cast<std::size_t>(address);  // below 0: far beyond the end
    if (secured()) return erased;
    const bool lost = vcc < nominalvcc && std::ranges::find(weak_, at) != weak_.end();
    return lost ? erased : data_.read(at);
}

void ArmFlash::program(std::int64_t address, std::uint8_t value) {
    if (!secured()) data_.program(static_cast<std::size_t>(address), value);
}

void ArmFlash::erasesector(std::int64_t address) {
    const auto size = static_cast<std::int64_t>(data_.size());
    if (address < 0 || address >= size) return;
    const std::int64_t from = address / sector_ * sector_;
    const auto sector = data_.bytes().subspan(
        static_cast<std::size_t>(from), static_cast<std::size_t>(std::min(sector_, size - from)));
    std::ranges::fill(sector, erased);
}

void ArmFlash::programcell(std::size_t index, std::uint8_t value) { cells_.at(index) &= value; }

void ArmFlash::erasecells() {
    cells_.fill(erased);
    protection_ = erased;
}

std::unique_ptr<Chip> makearmflash(SpecReader& spec, const Faults& faults) {
    return std::make_unique<ArmFlash>(spec, faults);
}

}  // namespace keld2::sim
