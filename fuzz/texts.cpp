#include "fuzz/texts.h"

#include <algorithm>
#include <array>
#include <sstream>
#include <tuple>

#include "fuzz/bytesource.h"
#include "fuzz/filed.h"
#include "fuzz/hostilemachine.h"
#include "fuzz/sessions.h"
#include "host/catalogue/catalogue.h"
#include "host/files/files.h"
#include "host/files/intelhex.h"
#include "host/files/jedec.h"
#include "host/files/srecord.h"
#include "host/forms/scriptedform.h"
#include "host/hosterror.h"
#include "host/job/preparation.h"
#include "host/replay/replayfile.h"
#include "host/svf/svfcheck.h"
#include "host/tell/printing.h"
#include "plugin/clskeld2.h"
#include "plugin/module.h"
#include "sim/armalgorithm.h"

namespace keld2::fuzz {

namespace {

using namespace keld2::host;

bool same(const Image& a, const Image& b) {
    return a.entry == b.entry && a.header == b.header &&
           std::ranges::equal(
               a.segments, b.segments, {},
               [](const Segment& s) { return std::tie(s.address, s.bytes); },
               [](const Segment& s) { return std::tie(s.address, s.bytes); });
}

std::string intelhex(std::string_view text) {
    const Image image = readintelhex(text, "text");
    return same(image, readintelhex(writeintelhex(image), "written")) ? ""
                                                                      : "another image comes back";
}

std::string srecord(std::string_view text) {
    Image image = readsrecord(text, "text");
    if (!image.entry) image.entry = 0;  // the end record has one
    return same(image, readsrecord(writesrecord(image), "written")) ? ""
                                                                    : "another image comes back";
}

std::string jedec(std::string_view text) {
    const FuseMap map = readjedec(text, "text");
    const FuseMap again = readjedec(writejedec(map), "written");
    const auto all = [](const FuseMap& m) {
        return std::tie(m.fuses, m.usercode, m.secured, m.electrical, m.pins, m.notes);
    };
    const bool equal = all(map) == all(again);
    return equal ? "" : "another fuse map comes back";
}

std::string job(std::string_view text) {
    const Job read = readjob(filed(text));
    HeapMemory memory;
    PosixStrings strings;
    SharedVariables blocks(memory, strings);
    prepare(read, blocks);
    return read.buffersize() >= 0 ? "" : "a buffer of less than nothing";
}

std::string device(std::string_view text) {
    const Device read = readdevice(filed(text));
    for (const DeviceRange& range : read.ranges)
        if (range.length <= 0 || range.fileend() > read.fileend()) return "range " + range.name;
    return {};
}

std::string replay(std::string_view text) {
    const std::filesystem::path path = filed(text);
    readreplay(path, path.parent_path());
    return {};
}

std::string trace(std::string_view text) {
    const std::filesystem::path path = filed(text);
    std::ostringstream words;
    showtrace(path, 9, words);
    if (!comparetraces(path, path, words)) return "a trace differs from itself";
    const auto longer =
        filed(std::string(text) + (text.ends_with('\n') ? "" : "\n") + "qrun\n", "longer");
    return comparetraces(longer, path, words) ? "a trace is as one with a line more" : "";
}

// Both editors, one after the other, of devices with different controls.
std::string forms(std::string_view text) {
    static constexpr std::array<std::uint8_t, 3> families{1, 21, 41};
    ByteSource none({});
    HostileMachine machine(none, {});
    std::ostringstream messages;
    ScriptedForms front(readformscript(filed(text)), {}, messages);
    SharedVariables blocks(machine.memory(), machine.strings());
    blocks.maprows(0, nullptr);
    blocks.buflength[0] = 20000;
    Module module(machine, {});
    ClsKELD2 plugin(module);
    plugin.bufcomkeld2(0);
    machine.onform = [&front](Form& form) { front.show(form); };
    SharedVariables& s = module.variables();
    for (const std::uint8_t family : families) {
        s.prgmode[0] = family;
        s.tlength[0] = 17200;
        plugin.editfigkeld2();
        plugin.usercode();
    }
    front.check();
    return {};
}

std::string svf(std::string_view text) {
    static const auto devices = [] {
        const Catalogue catalogue = Catalogue::standard();
        std::vector<LogicDevice> list;
        for (const char* name : {"logic-8160", "logic-11529", "logic-23328"})
            list.push_back(logicdevice(catalogue.find(name)));
        return list;
    }();
    for (const LogicDevice& device : devices) {
        const SvfCheck check = checksvf(device, text);
        const std::ptrdiff_t most = 2 + std::ranges::count_if(text, [](char c) { return c < ' '; });
        for (const auto* list : {&check.run, &check.skipped, &check.lost})
            for (const SvfLine& line : *list)
                if (line.line < 1 || line.line > most) return line.what + " of no line";
        if (jsonof(check, "text").empty() || told(check, "text", true).empty()) return "no report";
    }
    return {};
}

std::string algorithm(std::string_view text) {
    const auto parse = [](std::string_view t) {
        return sim::parsealgorithm({reinterpret_cast<const std::uint8_t*>(t.data()), t.size()});
    };
    const std::string written = sim::algorithmtext(parse(text));
    return sim::algorithmtext(parse(written)) == written ? "" : "another algorithm comes back";
}

constexpr std::array all{
    Target{"intelhex", intelhex, "fuzz/seeds/intelhex"},
    Target{"srecord", srecord, "fuzz/seeds/srecord"},
    Target{"jedec", jedec, "fuzz/seeds/jedec"},
    Target{"job", job, "fuzz/seeds/job"},
    Target{"device", device, "devices"},
    Target{"replay", replay, "fuzz/seeds/replay"},
    Target{"trace", trace, "fuzz/seeds/trace"},
    Target{"forms", forms, "fuzz/seeds/forms"},
    Target{"svf", svf, "fuzz/seeds/svf"},
    Target{"algorithm", algorithm, "fuzz/seeds/algorithm"},
    Target{"session", playreplay, "fuzz/seeds/session"},
    Target{"play", playsvf, "fuzz/seeds/play"},
};

}  // namespace

std::span<const Target> targets() { return all; }

std::string wrongwith(const Target& target, std::string_view text) {
    try {
        return target.use(text);
    } catch (const HostError&) {
        return {};
    } catch (const sim::AlgorithmError&) {
        return {};
    }
}

}  // namespace keld2::fuzz
