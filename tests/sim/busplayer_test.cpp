// Chips and programmer obey what comes over the wires: the cases of tests/data/sim.
#include <gmock/gmock.h>

#include <functional>
#include <memory>

#include "sim/busscript.h"
#include "sim/faultof.h"
#include "sim/simbench.h"
#include "sim/testchips.h"

namespace keld2::test {

namespace {

using Numbers = std::vector<std::int64_t>;

// The arguments of a step; each is cut to what the call takes.
class Arguments {
  public:
    explicit Arguments(const Words& words) : words_(words) {}
    std::int32_t word(std::size_t i) const { return std::stoi(words_.at(i), {}, 0); }
    std::uint8_t byte(std::size_t i) const { return static_cast<std::uint8_t>(word(i)); }
    std::vector<std::uint8_t> bytes() const {
        std::vector<std::uint8_t> list;
        for (std::size_t i = 0; i < words_.size(); ++i) list.push_back(byte(i));
        return list;
    }

  private:
    const Words& words_;
};

struct Step {
    std::string_view name;
    std::function<Numbers(SimBench&, const Arguments&)> play;  // what it answers
};

// A step that only acts.
template <typename Act>
Step act(std::string_view name, Act act) {
    return {name, [act](SimBench& b, const Arguments& a) {
                act(b, a);
                return Numbers{};
            }};
}

Numbers fetch(SimBench& b, const Arguments& a) {
    std::vector<std::uint8_t> target(static_cast<std::size_t>(a.word(0)), 77);
    const BulkState end = b.bulkread(target);
    EXPECT_TRUE(end == BulkState::done || target == std::vector<std::uint8_t>(target.size(), 77));
    return end == BulkState::done ? Numbers(target.begin(), target.end()) : Numbers{-1};
}

// A read that never ends: answers the state of its cell after a while.
Numbers hang(SimBench& b, const Arguments&) {
    static std::array<std::uint8_t, 4> target;  // nobody writes to it
    b.s.usbpip2readresult.release(0, 0);
    b.usb->usbbulkread(target, &b.s.usbpip2readresult[0]);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    return {b.s.usbpip2readresult.acquire(0)};
}

// The status record: its first three bytes; nothing when there is none.
Numbers record(SimBench& b, const Arguments&) {
    if (!b.d->transferwait(15)) return {};
    return {b.s.ibuf1[0], b.s.ibuf1[1], b.s.ibuf1[2]};
}

ShiftChip& shiftchip(SimBench& b) { return dynamic_cast<ShiftChip&>(b.programmer.chip()); }

void beginshift(SimBench& b, const Arguments& a) {
    ShiftChip& chip = shiftchip(b);
    chip.fast = a.word(0) != 0;
    chip.cells = 0x1A5C;
    chip.edges = {};
}

Numbers shifted(SimBench& b, const Arguments&) {
    const ShiftChip& chip = shiftchip(b);
    return {chip.cells, chip.edges[0], chip.edges[1]};
}

void commit(SimBench& b, const Arguments& a) {
    std::ranges::copy(a.bytes(), &b.s.ubuf1[4]);
    b.d->drivercommit();
}

const Step steps[] = {
    // clang-format off
    // supplies and pins
    act("vcc", [](auto& b, auto& a) { b.d->setvcc(a.word(0)); }),
    act("vpp", [](auto& b, auto& a) { b.d->setvpp(a.word(0), a.byte(1)); }),
    act("gndpin", [](auto& b, auto& a) { b.d->setgndpin(a.byte(0), a.byte(1)); }),
    act("vccpin", [](auto& b, auto& a) { b.d->setvccpin(a.byte(0), a.byte(1)); }),
    act("vpppin", [](auto& b, auto& a) { b.d->setvpppin(a.byte(0), a.byte(1)); }),
    act("down", [](auto& b, auto&) { b.d->powerdown(); }),
    {"vccat", [](auto& b, auto& a) { return Numbers{b.programmer.socket().vccat(a.byte(0))}; }},
    {"vppat", [](auto& b, auto& a) { return Numbers{b.programmer.socket().vppat(a.byte(0))}; }},
    {"level", [](auto& b, auto& a) { return Numbers{b.programmer.socket().registers[a.byte(0)]}; }},
    // registers, bus and time, at once and queued
    act("w", [](auto& b, auto& a) { b.d->regwrite(a.word(0), a.byte(1)); }),
    act("qw", [](auto& b, auto& a) { b.d->qregwrite(a.word(0), a.byte(1)); }),
    {"r", [](auto& b, auto& a) { return Numbers{b.d->regread(a.byte(0))}; }},
    act("qr", [](auto& b, auto& a) { b.d->qregread(a.byte(0)); }),
    act("bus", [](auto& b, auto& a) { b.d->buswrite(a.word(0), a.byte(1), a.byte(2)); }),
    act("qbus", [](auto& b, auto& a) { b.d->qbuswrite(a.word(0), a.byte(1), a.byte(2)); }),
    act("turn", [](auto& b, auto& a) { b.d->busconfig(0, a.byte(0), 1); }),
    act("qturn", [](auto& b, auto& a) { b.d->qbusconfig(0, a.byte(0), 1); }),
    act("us", [](auto& b, auto& a) { b.d->waitshort(a.word(0)); }),
    act("qus", [](auto& b, auto& a) { b.d->qwaitshort(a.word(0)); }),
    act("ms", [](auto& b, auto& a) { b.d->waitlong(a.word(0)); }),
    act("qms", [](auto& b, auto& a) { b.d->qwaitlong(a.word(0)); }),
    act("run", [](auto& b, auto&) { b.d->qrun(); }),
    {"now", [](auto& b, auto&) {
         return Numbers{static_cast<std::int64_t>(b.programmer.socket().now / sim::microsecond)};
     }},
    // frames and transfers; a fetch that fails answers -1
    act("frame", [](auto& b, auto& a) { b.frame(a.bytes()); }),
    {"fetch", fetch},
    {"bulkwrite", [](auto& b, auto& a) { return Numbers{b.usb->usbbulkwrite(a.bytes())}; }},
    {"hang", hang},
    {"woken", [](auto& b, auto&) { return Numbers{b.woken}; }},
    {"record", record},
    {"ready", [](auto& b, auto&) { return Numbers{b.d->readycheck()}; }},
    {"mode", [](auto& b, auto& a) { return Numbers{b.d->modeselect(a.byte(0))}; }},
    {"mode3", [](auto& b, auto& a) { return Numbers{b.d->modeselect3(a.byte(0), 0)}; }},
    act("commit", commit),
    // the shift register: 1 lets it take eight pulses at once; cells, edges with TMS low and high
    act("shift", beginshift),
    {"shifted", shifted},
    // clang-format on
};

// A chip of the tests, or a simulated one.
std::unique_ptr<sim::Chip> chipof(const sim::ChipSpec& spec, const sim::Faults& faults) {
    if (spec.kind == "counting") return std::make_unique<CountingChip>();
    if (spec.kind != "shift") return sim::makechip(spec, faults);
    const auto wiring = sim::SpecReader(spec).integer("wiring", 0, 255);
    return std::make_unique<ShiftChip>(*sim::jtaglines(static_cast<std::uint8_t>(wiring)));
}

bool setsup(const BusLine& line) { return line.words[0] == "fault" || line.words[0] == "chip"; }

sim::SimSetting settingof(const BusScript& script, const BusBlock& block) {
    sim::SimSetting setting;
    sim::ChipSpec chip = script.chip;
    for (const BusLine& line : block.lines) {
        if (line.words[0] == "fault") sim::addfault(setting.faults, line.words.at(1));
        if (line.words[0] == "chip") setvalue(chip, {line.words.begin() + 1, line.words.end()});
    }
    setting.chip = chipof(chip, setting.faults);
    return setting;
}

class Player {
  public:
    Player(const BusScript& script, const BusBlock& block)
        : script_(script), bench_(settingof(script, block)) {}

    void play(const BusBlock& block, const Words& arguments = {}) {
        for (const BusLine& line : block.lines) {
            SCOPED_TRACE("line " + std::to_string(line.number));
            if (!setsup(line)) play(expanded(line.words, arguments));
        }
    }

  private:
    void play(const Words& words) {
        const Words rest(words.begin() + 1, words.end());
        if (const auto routine = script_.routines.find(words[0]); routine != script_.routines.end())
            return play(routine->second, rest);
        if (words[0] != "each") return carryout(words[0], rest);
        for (std::size_t i = 1; i < rest.size(); ++i) play(Words{rest[0], rest[i]});
    }
    void carryout(const std::string& name, const Words& words) {
        const auto arrow = std::ranges::find(words, "->");
        const Words given(words.begin(), arrow);
        Numbers expected;
        for (auto word = arrow; word != words.end(); ++word)
            if (word != arrow) expected.push_back(std::stoll(*word, {}, 0));
        const auto step = std::ranges::find(steps, name, &Step::name);
        ASSERT_NE(step, std::end(steps)) << "there is no step " << name;
        EXPECT_EQ(step->play(bench_, Arguments(given)), expected) << name;
    }

    const BusScript& script_;
    SimBench bench_;
};

struct BusCase {
    std::shared_ptr<const BusScript> script;
    BusBlock block;
    friend void PrintTo(const BusCase& c, std::ostream* out) { *out << c.block.title; }
};

std::vector<BusCase> cases(std::vector<BusBlock> BusScript::*blocks) {
    std::vector<BusCase> list;
    for (const auto& entry : std::filesystem::directory_iterator(KELD2_TEST_SIM)) {
        const auto script = std::make_shared<const BusScript>(readscript(entry.path()));
        for (const BusBlock& block : (*script).*blocks) list.push_back({script, block});
    }
    return list;
}

std::string nameof(const testing::TestParamInfo<BusCase>& info) {
    std::string name = info.param.script->name + "_" + std::to_string(info.param.block.number) +
                       "_" + info.param.block.title;
    std::ranges::replace_if(
        name, [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return name;
}

class OnTheBus : public testing::TestWithParam<BusCase> {};

TEST_P(OnTheBus, DoesWhatItHasTo) {
    const auto& [script, block] = GetParam();
    Player(*script, block).play(block);
}

INSTANTIATE_TEST_SUITE_P(Case, OnTheBus, testing::ValuesIn(cases(&BusScript::cases)), nameof);

class RefusedChip : public testing::TestWithParam<BusCase> {};

TEST_P(RefusedChip, IsToldWithDeviceAndKey) {
    const auto& [script, block] = GetParam();
    sim::ChipSpec chip = script->chip;
    for (const BusLine& line : block.lines) setvalue(chip, line.words);
    EXPECT_THAT(faultof([&] { sim::makechip(chip); }),
                testing::StartsWith("simulated chip of test: " + block.title));
}

INSTANTIATE_TEST_SUITE_P(Chip, RefusedChip, testing::ValuesIn(cases(&BusScript::refusals)), nameof);

}  // namespace

}  // namespace keld2::test
