#include <array>
#include <string_view>

#include "platform/fault.h"
#include "sim/armflash.h"
#include "sim/chipspec.h"
#include "sim/fixedlogicchip.h"
#include "sim/logicchip.h"
#include "sim/parallelchip.h"
#include "sim/serialchip.h"

namespace keld2::sim {

namespace {

struct KindRow {
    std::string_view kind;
    std::unique_ptr<Chip> (*make)(SpecReader& spec, const Faults& faults);
};

constexpr std::array kinds{
    KindRow{.kind = "fusearray", .make = makefixedlogicchip},
    KindRow{.kind = "logic", .make = makelogicchip},
    KindRow{.kind = "parallelbyte", .make = makebytechip},
    KindRow{.kind = "parallelpage", .make = makepagechip},
    KindRow{.kind = "serial", .make = makeserialchip},
    KindRow{.kind = "arm", .make = makearmflash},
};

}  // namespace

std::unique_ptr<Chip> makechip(const ChipSpec& spec, const Faults& faults) {
    std::string known;
    for (const KindRow& row : kinds) {
        known += (known.empty() ? "" : ", ") + std::string(row.kind);
        if (row.kind != spec.kind) continue;
        SpecReader reader(spec);
        std::unique_ptr<Chip> chip = row.make(reader, faults);
        reader.finish();
        return chip;
    }
    throw RunFault("kind '" + spec.kind + "' is unknown, expected one of " + known,
                   "simulated chip of " + spec.device);
}

}  // namespace keld2::sim
