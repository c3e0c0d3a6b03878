#include "arm/profile.h"

#include <limits>

namespace keld2 {

namespace {

using Call = ArmStartupCall::Kind;
using End = ArmTransferRule::End;

constexpr std::int16_t anymodel = std::numeric_limits<std::int16_t>::max();
constexpr std::int16_t nomodel = std::numeric_limits<std::int16_t>::min();
constexpr int usbmode = 100;  // added to figmode[0]

constexpr std::array familya{
    ArmStartupRow{
        .firstmodel = 71,
        .lastmodel = 72,
        .usbable = true,
        .calls = {{{.kind = Call::modeselect3}, {.kind = Call::modeselect3, .add = usbmode}}},
        .folder = u"algo2",
        .firstending = u"_g.bin",
        .secondending = u"`h.bin"},
    ArmStartupRow{.firstmodel = 71,
                  .lastmodel = 72,
                  .usbable = false,
                  .calls = {{{.kind = Call::modeselect3}, {.kind = Call::switchadaptor}}},
                  .folder = u"algo",
                  .firstending = u".bin",
                  .secondending = u".bin"},
    ArmStartupRow{.firstmodel = nomodel,
                  .lastmodel = anymodel,
                  .calls = {{{.kind = Call::modeselect3}}},
                  .folder = u"algo",
                  .firstending = u".bin",
                  .secondending = u".bin"},
};

constexpr std::array familyb{
    ArmStartupRow{.firstmodel = 74,
                  .lastmodel = 75,
                  .calls = {{{.kind = Call::ready}}},
                  .folder = u"algo5",
                  .firstending = u".biz",
                  .secondending = u".biz"},
    ArmStartupRow{.firstmodel = 90,
                  .lastmodel = 91,
                  .usbable = true,
                  .calls = {{{.kind = Call::modeselect2, .add = usbmode}}},
                  .folder = u"algo2",
                  .firstending = u"_g.alg",
                  .secondending = u"`h.alg"},
    ArmStartupRow{.firstmodel = 90,
                  .lastmodel = 91,
                  .usbable = false,
                  .calls = {{{.kind = Call::switchadaptor}, {.kind = Call::modeselect2}}},
                  .folder = u"algo4",
                  .firstending = u".alg",
                  .secondending = u".alg"},
    ArmStartupRow{.firstmodel = nomodel,
                  .lastmodel = anymodel,
                  .calls = {{{.kind = Call::modeselect2}}},
                  .folder = u"algo4",
                  .firstending = u".alg",
                  .secondending = u".alg"},
};

constexpr std::int32_t bulka = 0x8000;
constexpr std::int32_t widebulka = 0x10000;
constexpr std::int32_t bulkb = 0xC000;
constexpr std::int32_t programextension = 100;
constexpr std::int32_t roundinglimit = 0x10000;  // words; longer devices are rounded

double rangeend(const ArmJob& job, ArmTransferRule::End end, std::int32_t filelength) {
    SharedVariables& s = job.c.s;
    const std::int32_t length = s.tlength[0];
    const bool islong = length > roundinglimit;
    switch (end) {
        case End::length:
            return (islong && job.op == operation::compare ? trunc256(length) : length) - 1.0;
        case End::rounded:
            return (islong ? trunc256(length) : length) - 1.0;
        case End::truncated:
            return s.wltbigendbuf[1] = trunc256(length) - 1.0;
        case End::bound:
            return s.wltbigendbuf[1];
        case End::file:
            return filelength;
    }
    return 0;
}

}  // namespace

const ArmProfile arm_prg{
    .name = "arm_prg",
    .startup = familya,
    .read = {.end = End::length, .bulksize = bulka, .marklastblock = true},
    .verify = {.end = End::rounded,
               .bulksize = bulka,
               .widebulksize = widebulka,
               .marklastblock = true},
    .program = {.end = End::truncated,
                .bulksize = bulka,
                .widebulksize = widebulka,
                .marklastblock = true,
                .extension = programextension},
    .programfile = {.end = End::file,
                    .bulksize = bulka,
                    .widebulksize = widebulka,
                    .marklastblock = true},
    .stopstransfers = true,
    .readselecteachbulk = true,
};

const ArmProfile arm_prg_32f{
    .name = "arm_prg_32f",
    .startup = familyb,
    .read = {.end = End::length, .bulksize = bulkb, .tailbylength = true},
    .verify = {.end = End::rounded, .bulksize = bulkb},
    .program = {.end = End::bound,
                .bulksize = bulkb,
                .marklastblock = true,
                .extension = programextension},
    .programfile = {.end = End::file, .bulksize = bulkb},
    .writeafterid = true,
    .fixedprogramside = true,
};

const ArmStartupRow& startuprow(const ArmProfile& profile, std::int16_t modeltype, bool usbable) {
    for (const ArmStartupRow& row : profile.startup)
        if (modeltype >= row.firstmodel && modeltype <= row.lastmodel &&
            row.usbable.value_or(usbable) == usbable)
            return row;
    return profile.startup.back();
}

std::optional<ArmGeometry> armgeometry(const ArmJob& job, const ArmTransferRule& rule,
                                       std::int32_t filelength) {
    SharedVariables& s = job.c.s;
    const double last = rangeend(job, rule.end, filelength);
    ArmRange range{.first = rule.end == End::file ? 0 : s.wltbigendbuf[0],
                   .last = last,
                   .bufferoffset = s.wltbigendbuf[2],
                   .wordsize = s.wordmode[0],
                   .ramlength = s.ramlg[0],
                   .bulksize = rule.bulksize,
                   .widebulksize = rule.widebulksize,
                   .extension = rule.extension};
    if (rule.tailbylength && s.tlength[0] > 0) range.tail = s.tlength[0] - 1;
    const std::optional<ArmGeometry> geometry = ArmGeometry::cut(range);
    if (!geometry || geometry->bufferend() > s.ibuffer.size()) return std::nullopt;
    return geometry;
}

}  // namespace keld2
