#include "jtag/tapreset.h"

namespace keld2 {

namespace {

using enum TapStep;

constexpr TapMove moves80[] = {{tckhigh},    {tdihigh}, {tmshigh},       {pinrefresh}, {tcklow},
                               {tdilow},     {tmslow},  {waitlong, 100}, {tcklow},     {tmshigh},
                               {pulses, 13}, {tmslow},  {pulses, 1},     {run}};
constexpr TapMove moves84[] = {{tckhigh},   {tdihigh}, {tmshigh},       {pinrefresh}, {tcklow},
                               {tdilow},    {tmslow},  {waitlong, 100}, {tcklow},     {tmshigh},
                               {pulses, 8}, {tmslow},  {pulses, 1}};
constexpr TapMove moves87[] = {{tmshigh}, {pulses, 5}, {tmslow}, {pulses, 5}, {run}};
constexpr TapMove moves90[] = {{tckhigh}, {tdihigh}, {tmshigh},   {pinrefresh}, {waitshort, 100},
                               {tcklow},  {tmshigh}, {pulses, 5}, {tmslow},     {pulses, 2}};
constexpr TapMove moves94[] = {{tckhigh}, {tdihigh},   {tmshigh}, {pinrefresh},    {waitshort, 100},
                               {tcklow},  {tdihigh},   {tmslow},  {waitlong, 100}, {tdilow},
                               {tmshigh}, {pulses, 6}, {tmslow},  {pulses, 2},     {run}};

void playmove(QueuedLines& lines, DevCore& devcore, TapMove move) {
    switch (move.step) {
        case tmshigh:
            return lines.tmshigh();
        case tmslow:
            return lines.tmslow();
        case tckhigh:
            return lines.tckhigh();
        case tcklow:
            return lines.tcklow();
        case tdihigh:
            return lines.tdihigh();
        case tdilow:
            return lines.tdilow();
        case pinrefresh:
            return lines.pinrefresh();
        case pulses:
            return lines.tckpulses(move.n);
        case waitshort:
            return devcore.qwaitshort(move.n);
        case waitlong:
            return devcore.qwaitlong(move.n);
        case run:
            return devcore.qrun();
    }
}

}  // namespace

constinit const TapReset svfreset80 = moves80;
constinit const TapReset svfreset84 = moves84;
constinit const TapReset svfreset87 = moves87;
constinit const TapReset svfreset90 = moves90;
constinit const TapReset svfreset94 = moves94;

void playtapreset(QueuedLines& lines, DevCore& devcore, TapReset reset) {
    for (const TapMove move : reset) playmove(lines, devcore, move);
}

}  // namespace keld2
