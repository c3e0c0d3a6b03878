// ChipSpec: a simulated chip as a device description gives it, and the making of chips from it.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <variant>
#include <vector>

#include "sim/chip.h"
#include "sim/faults.h"
#include "sim/supplyneeds.h"

namespace keld2::sim {

using SpecValue = std::variant<std::int64_t, std::string, std::vector<std::int64_t>>;

struct ChipSpec {
    std::string device;  // the device's name, which its image file carries too
    std::string kind;    // which model, see makechip
    std::map<std::string, SpecValue, std::less<>> values;
};

// Reads the values of a ChipSpec and knows which have been read. Every failure is a RunFault with
// the device, the key, what is wrong and what was expected.
class SpecReader {
  public:
    explicit SpecReader(const ChipSpec& spec) : spec_(spec) {}

    bool has(const std::string& key) const { return spec_.values.contains(key); }
    std::int64_t integer(const std::string& key, std::int64_t least, std::int64_t most);
    std::int64_t integer(const std::string& key, std::int64_t least, std::int64_t most,
                         std::int64_t otherwise);
    // A list of integers; a single integer counts as a list of one.
    std::vector<std::int64_t> integers(const std::string& key, std::int64_t least,
                                       std::int64_t most);
    std::string text(const std::string& key);
    // gndpin, vccpin (one or several), vccmin, vccmax, and vpppin, vppmin, vppmax for chips that
    // need VPP. Levels in mV.
    SupplyNeeds supplies();
    // A time in microseconds, answered in ns.
    std::uint64_t microseconds(const std::string& key);
    // Fails when there is a key that nobody has asked for.
    void finish() const;

    [[noreturn]] void refuse(const std::string& key, const std::string& what) const;

  private:
    const SpecValue& value(const std::string& key);

    const ChipSpec& spec_;
    std::set<std::string> known_;
};

// The chip of a description, with the faults that are its own. Kinds: see makechip.cpp and the
// headers of the models. An unknown kind or key, and a value that cannot be, is a RunFault that
// names it.
std::unique_ptr<Chip> makechip(const ChipSpec& spec, const Faults& faults = {});

}  // namespace keld2::sim
