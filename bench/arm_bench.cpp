// Whole runs of an ARM device of 1 MiB on a programmer that does nothing.
#include <benchmark/benchmark.h>

#include <stdexcept>
#include <string>

#include "bench/idleprogrammer.h"
#include "platform/platformdecorator.h"
#include "platform/posix/posixplatform.h"
#include "plugin/clskeld2.h"
#include "shared/datacheck.h"

namespace {

using namespace keld2;

constexpr std::int32_t size = 1 << 20;  // bytes

// Ends every step at once, and compares like the simulated programmer.
class ArmDevCore final : public bench::IdleDevCore {
  public:
    ArmDevCore(SharedVariables& s, std::int64_t& queued) : IdleDevCore(queued), s_(s) {}
    int checkbyte(std::int16_t value, std::int32_t address, int mode) override {
        return keld2::checkbyte(s_, value, address, mode);
    }
    bool transferwait(std::uint8_t) override {
        s_.ibuf1[0] = 100;
        return true;
    }

  private:
    SharedVariables& s_;
};

// Brings what was sent last, once, and 255 behind it.
class ArmTransport final : public bench::IdleTransport {
  public:
    void usbbulkread(std::span<std::uint8_t> target, std::uint8_t* result) override {
        std::fill(target.begin(), target.end(), std::uint8_t{255});
        std::copy_n(sent_.begin(), std::min(target.size(), sent_.size()), target.begin());
        sent_ = {};
        *result = static_cast<std::uint8_t>(BulkState::done);
    }
    int usbbulkwrite(std::span<const std::uint8_t> source) override {
        sent_ = source;
        return 0;
    }

  private:
    std::span<const std::uint8_t> sent_;
};

// An algorithm image of one byte, and a message loop with nothing to do.
class IdleMachine final : public PlatformDecorator {
  public:
    using PlatformDecorator::PlatformDecorator;
    void service() override {}
    FileContent readfile(std::span<const std::u16string>) override {
        return {.status = FileContent::Status::read, .bytes = {1}};
    }
};

void armrun(benchmark::State& state, std::uint8_t operation) {
    PosixPlatform machine({.scope = bench::ownscope()});
    IdleMachine idle(machine);
    std::int64_t queued = 0;
    Module module(
        idle,
        {.devcore =
             [&queued](SharedVariables& s) { return std::make_unique<ArmDevCore>(s, queued); },
         .transport = [](SharedVariables&) { return std::make_unique<ArmTransport>(); }});
    SharedVariables& s = module.variables();
    s.maprows(0, {});
    s.buflength[0] = size;
    s.mapbuffers({});
    ClsKELD2 plugin(module);
    s.modeltype[0] = 80;
    s.selmode[0] = 0x40;
    s.tlength[0] = size;
    s.wordmode[0] = 1;
    s.ramlg[0] = 0x30000;
    s.wltbigendbuf[1] = size - 1;
    s.prgresult[1] = operation;
    std::fill_n(s.ibuffer.data(), s.ibuffer.size(), std::uint8_t{255});
    std::fill_n(s.ibuf2.data(), s.ibuf2.size(), std::uint8_t{255});
    for (auto _ : state) {
        s.prgresult[0] = 0;
        s.MainRtstr[0] = u"";
        plugin.runKeld2Prg(false);
        if (s.prgresult[0] != 0) throw std::runtime_error("the run failed");
    }
    state.SetBytesProcessed(state.iterations() * size);
}

BENCHMARK_CAPTURE(armrun, program, 6)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(armrun, verify, 3)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(armrun, compare, 5)->Unit(benchmark::kMicrosecond);

}  // namespace
