#include "families/jtagstartup.h"

#include <algorithm>

#include "run/startup.h"

namespace keld2 {

namespace {

using Kind = StartupStep::Kind;

constexpr StartupStep set(std::uint8_t reg, std::int32_t value) {
    return {Kind::write, reg, value};
}
constexpr StartupStep qset(std::uint8_t reg, std::int32_t value) {
    return {Kind::qwrite, reg, value};
}
constexpr StartupStep gndpin(std::uint8_t pin) { return {Kind::gndpin, pin}; }
constexpr StartupStep vccpin(std::uint8_t pin) { return {Kind::vccpin, pin}; }
constexpr StartupStep waitshort(std::int32_t n) { return {Kind::waitshort, 0, n}; }
constexpr StartupStep qwaitlong(std::int32_t n) { return {Kind::qwaitlong, 0, n}; }
constexpr StartupStep clear{Kind::clear};
constexpr StartupStep off{Kind::off};
constexpr StartupStep on{Kind::on};
constexpr StartupStep record{Kind::record};
constexpr StartupStep run{Kind::run};

constexpr StartupStep steps80[] = {set(1, 0),
                                   set(0, 0),
                                   off,
                                   qwaitlong(500),
                                   run,
                                   waitshort(500),
                                   waitshort(500),
                                   on,
                                   qwaitlong(500),
                                   run,
                                   waitshort(500),
                                   waitshort(500),
                                   record,
                                   qwaitlong(500),
                                   run,
                                   waitshort(500),
                                   set(3, 0),
                                   set(2, 1),
                                   set(1, 2),
                                   set(0, 130),
                                   set(0, 162),
                                   set(2, 0),
                                   set(2, 8),
                                   set(0, 130),
                                   qwaitlong(500),
                                   run,
                                   waitshort(500),
                                   waitshort(500)};
constexpr StartupStep steps81[] = {clear,       off,          waitshort(500), waitshort(500),
                                   on,          record,       qset(10, 32),   qset(11, 56),
                                   qset(1, 8),  qset(0, 239), qset(5, 0),     qset(4, 0),
                                   qset(7, 16), qset(6, 0),   qset(9, 0),     qset(8, 255),
                                   qset(3, 0),  qset(2, 255), qwaitlong(200)};
constexpr StartupStep steps82[] = {clear,  off,        waitshort(500), on,
                                   record, set(11, 2), set(10, 0),     waitshort(200)};
constexpr StartupStep steps85[] = {
    gndpin(5),   gndpin(111), clear,      off,         waitshort(500), on,
    record,      set(9, 16),  set(8, 16), set(7, 128), set(6, 128),    set(5, 130),
    set(4, 130), set(1, 0),   set(0, 0),  set(3, 4),   set(2, 4),      waitshort(200)};
constexpr StartupStep steps86[] = {clear,       off,        waitshort(500), on,
                                   record,      set(7, 0),  set(6, 0),      set(5, 130),
                                   set(4, 130), set(1, 32), set(0, 0),      set(8, 255),
                                   set(2, 0),   set(10, 0), set(4, 179),    waitshort(200)};
constexpr StartupStep steps87[] = {
    record,          set(1, 0),   set(0, 0),       off,         waitshort(500), on,
    waitshort(1000), set(0, 247), waitshort(2000), set(0, 160), waitshort(50),  set(0, 247),
    waitshort(100),  set(0, 128), waitshort(200),  set(0, 160), waitshort(2000)};
constexpr StartupStep steps88[] = {
    gndpin(108),    gndpin(122), vccpin(22), vccpin(113), clear,     off,
    waitshort(500), on,          record,     set(9, 1),   set(8, 1), set(7, 16),
    set(6, 16),     set(1, 16),  set(0, 16), set(3, 1),   set(2, 1), waitshort(200)};
constexpr StartupStep steps91[] = {record,      set(1, 0),   set(3, 128), set(5, 0),   set(7, 0),
                                   set(9, 0),   set(10, 0),  set(0, 239), set(2, 248), set(4, 36),
                                   set(6, 247), set(8, 255), set(10, 60)};
constexpr StartupStep steps92[] = {gndpin(120), vccpin(113), record,      set(1, 0),
                                   set(3, 0),   set(5, 0),   set(7, 128), set(9, 0),
                                   set(11, 0),  set(0, 247), set(2, 127), set(4, 219),
                                   set(6, 126), set(8, 127), set(10, 60), waitshort(100)};
constexpr StartupStep steps93[] = {record, set(1, 2), set(0, 160), waitshort(100)};

constexpr StartupStep steps41[] = {set(1, 0),      set(0, 0),  off,    waitshort(500),
                                   waitshort(500), on,         record, waitshort(500),
                                   set(1, 2),      set(0, 130)};
constexpr StartupStep steps43[] = {
    gndpin(105), gndpin(113),   set(1, 0),      set(3, 0), set(5, 0),      set(7, 0),
    set(9, 0),   set(11, 0),    waitshort(100), set(0, 0), set(2, 0),      set(4, 0),
    set(6, 0),   set(8, 0),     set(10, 0),     off,       waitshort(500), on,
    vccpin(106), vccpin(112),   record,         set(9, 2), set(8, 2),      set(7, 8),
    set(6, 8),   set(5, 192),   set(4, 192),    set(1, 0), set(0, 0),      set(3, 32),
    set(2, 32),  waitshort(200)};
constexpr StartupStep steps50[] = {
    set(1, 0),   set(0, 0),      off,       waitshort(500), waitshort(500), on,
    record,      waitshort(500), set(3, 0), set(2, 1),      set(1, 2),      set(0, 130),
    set(0, 162), set(2, 0),      set(2, 8), set(0, 130),    waitshort(500), waitshort(500)};

constexpr ParameterRecord record80{0, 8, 16, 128, 2, 1, 0, 8, 8, 0, 0};
constexpr ParameterRecord record85{2, 8, 2, 4, 128, 1, 0, 8, 8, 6, 6};
constexpr ParameterRecord record87{0, 8, 16, 160, 2, 1, 0, 8, 8, 0, 0};
constexpr ParameterRecord record91{2, 8, 4, 0, 128, 1, 128, 8, 8, 2, 0};

void clearregisters(DevCore& devcore) {
    constexpr std::array<std::uint8_t, 12> order{1, 0, 3, 2, 5, 4, 7, 6, 9, 8, 11, 10};
    for (const std::uint8_t reg : order) devcore.regwrite(0, reg);
}

void commitrecord(const RunContext& context, const ParameterRecord& bytes) {
    for (std::size_t i = 0; i < bytes.size(); ++i)
        context.s.ubuf1[recordplace + static_cast<std::int64_t>(i)] = bytes[i];
    context.devcore.drivercommit();
}

void playstep(const RunContext& context, const JtagStartup& startup, const StartupStep& step) {
    DevCore& d = context.devcore;
    switch (step.kind) {
        case Kind::write:
            return d.regwrite(step.value, step.number);
        case Kind::qwrite:
            return d.qregwrite(step.value, step.number);
        case Kind::clear:
            return clearregisters(d);
        case Kind::off:
            return switchvccpins(context, 0);
        case Kind::on:
            return switchvccpins(context, 1);
        case Kind::gndpin:
            return d.setgndpin(step.number, 1);
        case Kind::vccpin:
            return d.setvccpin(step.number, 1);
        case Kind::record:
            return commitrecord(context, startup.record);
        case Kind::waitshort:
            return d.waitshort(step.value);
        case Kind::qwaitlong:
            return d.qwaitlong(step.value);
        case Kind::run:
            return d.qrun();
    }
}

}  // namespace

const std::array<JtagStartup, 20> jtagstartups{{
    {.family = 41, .record = record80, .steps = steps41},
    {.family = 42, .record = record85, .steps = steps85},
    {.family = 43, .record = {6, 8, 4, 8, 64, 1, 0, 8, 8, 10, 0}, .steps = steps43},
    {.family = 50, .record = record80, .steps = steps50},
    {.family = 80, .record = record80, .steps = steps80},
    {.family = 81, .record = {4, 8, 4, 0, 16, 8, 16, 8, 8, 6, 16}, .steps = steps81},
    {.family = 82, .record = {4, 8, 1, 0, 2, 16, 0, 8, 8, 10, 32}, .steps = steps82},
    {.family = 83, .record = record80, .steps = steps80},
    {.family = 84, .record = record80, .steps = steps80},
    {.family = 85, .record = record85, .steps = steps85},
    {.family = 86, .record = {4, 8, 64, 179, 32, 8, 0, 8, 8, 0, 0}, .steps = steps86},
    {.family = 87, .record = record87, .steps = steps87},
    {.family = 88, .record = {4, 8, 32, 0, 128, 1, 0, 8, 8, 6, 16}, .steps = steps88},
    {.family = 89, .record = record87, .steps = steps87},
    {.family = 90, .record = {0, 8, 16, 162, 2, 1, 0, 8, 8, 0, 0}, .steps = steps80},
    {.family = 91, .record = record91, .steps = steps91},
    {.family = 92, .record = {4, 8, 32, 219, 128, 1, 0, 8, 8, 6, 0}, .steps = steps92},
    {.family = 93, .record = {0, 8, 16, 128, 2, 1, 0, 8, 8, 0, 32}, .steps = steps93},
    {.family = 94, .record = record80, .steps = steps80},
    {.family = 95, .record = record91, .steps = steps91},
}};

const JtagStartup* findjtagstartup(std::uint8_t family) {
    const auto row = std::find_if(jtagstartups.begin(), jtagstartups.end(),
                                  [&](const JtagStartup& r) { return r.family == family; });
    return row != jtagstartups.end() ? &*row : nullptr;
}

void playstartup(const RunContext& context, const JtagStartup& startup) {
    for (const StartupStep& step : startup.steps) playstep(context, startup, step);
}

}  // namespace keld2
