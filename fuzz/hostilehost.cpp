#include "fuzz/hostilehost.h"

#include <array>
#include <cmath>
#include <limits>

#include "fuzz/hostilemachine.h"
#include "plugin/clskeld2.h"

namespace keld2::fuzz {

namespace {

constexpr std::array<std::int64_t, 28> numbers{
    0,   1,    2,     3,      16,     64,      100,        127,          128,   255,
    256, 1000, 16383, 16384,  16385,  32767,   32768,      65535,        65536, -1,
    -2,  -16,  -128,  -32768, 131072, 1048576, 2147483647, -2147483648LL};
constexpr std::array<double, 14> doubles{0,
                                         1,
                                         63,
                                         255,
                                         1000,
                                         16383,
                                         16384,
                                         0.5,
                                         -1,
                                         -1e9,
                                         1e9,
                                         1e300,
                                         std::numeric_limits<double>::quiet_NaN(),
                                         HUGE_VAL};
constexpr std::array<std::uint8_t, 28> families{21, 22, 23, 24, 41, 42, 43, 44, 50, 80,
                                                81, 82, 83, 84, 85, 86, 87, 88, 89, 90,
                                                91, 92, 93, 94, 95, 1,  4,  255};
constexpr std::array<std::int32_t, 24> fusecounts{
    7664,  8160,  11529, 12275, 15074, 16160, 17200,  18880,  23328,  24481,  25809,  30608,
    33440, 35600, 46656, 48000, 52009, 93312, 101844, 115869, 141696, 209356, 282744, 64};
constexpr std::array<std::uint8_t, 12> operations{0, 2, 3, 4, 5, 6, 8, 9, 20, 1, 7, 255};

// Anything at all into an element.
struct Spoil {
    ByteSource& source;
    SharedStrings& strings;

    template <typename T>
    void operator()(SharedVariable<T>* v) const {
        if (v->size() == 0) return;
        T& element = (*v)[source.below(static_cast<std::uint32_t>(v->size()))];
        if constexpr (std::is_same_v<T, double>)
            element =
                source.chance(20) ? static_cast<double>(source.number()) : source.pick(doubles);
        else
            element = static_cast<T>(source.pick(numbers));
    }
    void operator()(SharedTexts* v) const {
        const auto i = source.below(static_cast<std::uint32_t>(v->size()));
        const std::u16string text(source.byte() * (source.chance(5) ? 20U : 1U), u'x');
        // A fifth are handles that are none. What stood there is lost, as it may be one.
        StringHandle& handle = static_cast<SharedArray<StringHandle>&>(*v)[i];
        handle = source.chance(20) ? source.number() : strings.allocate(text);
    }
};

// A job that makes sense, so that the run gets beyond its first checks.
void sensible(SharedVariables& s, ByteSource& source) {
    s.prgmode[0] = source.chance(10) ? source.byte() : source.pick(families);
    if (source.chance(25)) {
        s.modeltype[0] = source.pick(std::array<std::int16_t, 5>{50, 71, 74, 80, 90});
        s.selmode[0] = 0x40;
    }
    const std::int32_t small = 300 + source.byte();
    s.tlength[0] = source.chance(60) ? source.pick(fusecounts) : small;
    s.bvcc[0] = 500;
    s.bvpp[0] = 1200;
    s.bvcch[0] = source.pick(std::array<std::int16_t, 4>{0, 16, 32, 64});
    s.pagelength[0] = source.pick(std::array<std::int16_t, 4>{1, 16, 64, 128});
    s.pwte[0] = source.byte();
    s.wltbigendbuf[0] = source.chance(80) ? 0 : source.byte();
    s.wltbigendbuf[1] = source.chance(80) ? source.byte() : 20000;
    s.wordmode[0] = source.chance(50) ? 1 : 2;
    s.ramlg[0] = source.chance(50) ? 1024 : 0x8000;
    s.prgresult[0] = source.byte() % 5;
    s.prgresult[1] = source.pick(operations);
    s.wautonum[0] = source.chance(70) ? 0 : source.byte();
    for (int i = 0; i < 11; ++i) s.autoprg[i] = source.pick(operations);
    s.wlverifyvcc[0] = source.chance(50) ? 0 : 1;
    s.chipidtestmode[0] = source.chance(50) ? Flag::yes : Flag::no;
    s.compid[0] = source.byte();
    s.buftype[0] = source.chance(80) ? 0 : 128;
}

void append(std::vector<std::uint8_t>& text, const std::string& piece) {
    text.insert(text.end(), piece.begin(), piece.end());
}

std::string digits(ByteSource& source) {
    const std::uint32_t count = source.chance(5) ? source.below(6000) : source.below(70);
    return std::string(count, "0F5aX "[source.below(source.chance(90) ? 4 : 6)]);
}

// A text that looks like SVF: statements in all layouts, whole or broken, among other lines.
std::vector<std::uint8_t> svftext(ByteSource& source) {
    static constexpr std::array<const char*, 22> pieces{"SIR ",
                                                        "SDR ",
                                                        "8",
                                                        "12",
                                                        "18",
                                                        "32",
                                                        "34",
                                                        "82",
                                                        "121",
                                                        "1728",
                                                        " TDI (",
                                                        ")",
                                                        " TDO (",
                                                        " MASK (",
                                                        " SMASK (",
                                                        ";",
                                                        "\n",
                                                        "\r\n",
                                                        "RUNTEST 100 TCK;\n",
                                                        "RUNTEST IDLE 12 TCK 1.00E-003 SEC;\n",
                                                        "! x\n",
                                                        "STATE IDLE;\n"};
    std::vector<std::uint8_t> text;
    const std::uint32_t count = source.below(60);
    for (std::uint32_t i = 0; i < count; ++i) {
        if (source.chance(40)) {
            const std::string bits =
                source.pick(std::array<const char*, 6>{"8", "32", "34", "18", "202", "32767"});
            append(text,
                   "SDR " + bits + " TDI (" + digits(source) + (source.chance(80) ? ")" : "\n"));
            if (source.chance(60))
                append(text, " TDO (" + digits(source) + ") MASK (" + digits(source) + ")");
            append(text, source.chance(80) ? ";\n" : "\n");
        } else {
            append(text, source.pick(pieces));
            if (source.chance(20)) append(text, digits(source));
        }
        if (source.chance(3)) text.push_back(source.byte());
    }
    return text;
}

void makecall(ClsKELD2& plugin, SharedVariables& s, ByteSource& source) {
    switch (source.below(8)) {
        case 0:
            return plugin.sinitkeld2();
        case 1:
            return plugin.keld2warn(source.chance(50) ? std::uint8_t{54} : source.byte());
        case 2:
            return plugin.editfigkeld2();
        case 3:
            return plugin.usercode();
        case 4:
            return plugin.freesharebufferkeld2();
        case 5:
            s.buflength[0] = static_cast<std::int32_t>(
                source.chance(50) ? source.below(70000) : source.pick(numbers) % 3'000'000);
            return plugin.bufcomkeld2(static_cast<std::int16_t>(source.byte()));
        default:
            return plugin.runKeld2Prg(false);
    }
}

std::string wrongafter(SharedVariables& s, const ProgrammerState& programmer, bool endless) {
    if (programmer.powered) return "the power is still on behind a call";
    if (s.prgresult[0] > 4) return "prgresult[0] is " + std::to_string(s.prgresult[0]);
    if (endless && s.modeltype[0] < 40) return "a run has no end";
    return {};
}

}  // namespace

std::string hostilesession(std::span<const std::uint8_t> bytes) {
    ByteSource source(bytes);
    ProgrammerState programmer;
    HostileMachine machine(source, svftext(source));
    SharedVariables host(machine.memory(), machine.strings());
    host.maprows(0, nullptr);
    host.buflength[0] = source.chance(80) ? static_cast<std::int32_t>(source.below(70000)) : 64;
    host.mapbuffers(nullptr);
    Module module(
        machine,
        {.devcore = [&](SharedVariables& s) { return hostiledevcore(source, programmer, s); },
         .transport = [&](SharedVariables& s) { return hostiletransport(source, s); }});
    ClsKELD2 plugin(module);
    plugin.bufcomkeld2(0);
    SharedVariables& s = module.variables();
    machine.onservice = [&] {
        if (source.chance(2)) s.prgresult.release(0, 2);
    };
    const int calls = 1 + source.byte() % 3;
    for (int i = 0; i < calls; ++i) {
        sensible(s, source);
        const std::uint32_t spoiled = source.below(6);
        for (std::uint32_t k = 0; k < spoiled; ++k)
            std::visit(Spoil{source, machine.strings()},
                       s.variable(source.below(static_cast<std::uint32_t>(blocktable.size()))));
        if (s.prgresult[0] > 4) s.prgresult[0] = 0;
        makecall(plugin, s, source);
        std::string wrong = wrongafter(s, programmer, machine.endless());
        if (!wrong.empty()) return wrong;
    }
    return {};
}

}  // namespace keld2::fuzz
