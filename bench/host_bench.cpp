// What the host adds to a run: the simulated programmer with its chips, and replays.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <string>

#include "bench/idleprogrammer.h"
#include "host/catalogue/catalogue.h"
#include "host/files/files.h"
#include "host/job/session.h"
#include "host/programmer/devcoredecorator.h"
#include "host/programmer/programmer.h"
#include "host/run/devicerun.h"
#include "host/svf/svftask.h"
#include "jtag/wiring.h"
#include "platform/posix/posixplatform.h"
#include "shared/notes.h"

namespace keld2::bench {
namespace {

class NobodyListens final : public host::RunListener {
  public:
    void logline(const std::string&) override {}
    void progress(int) override {}
    void step(const std::string&) override {}
    BoxAnswer box(const Box&) override { return BoxAnswer::cancel; }
    bool stopasked() override { return false; }
};

// Counts what is queued.
class CountedDevCore final : public host::DevCoreDecorator {
  public:
    CountedDevCore(std::unique_ptr<DevCore> inner, std::int64_t& queued)
        : DevCoreDecorator(std::move(inner)), queued_(queued) {}

    void qregwrite(std::int32_t value, std::uint8_t reg) override {
        ++queued_;
        inner().qregwrite(value, reg);
    }
    void qregread(std::uint8_t reg) override {
        ++queued_;
        inner().qregread(reg);
    }
    void qwaitshort(std::int32_t n) override {
        ++queued_;
        inner().qwaitshort(n);
    }
    void qbuswrite(std::int32_t address, std::uint8_t data, std::uint8_t control) override {
        ++queued_;
        inner().qbuswrite(address, data, control);
    }

  private:
    std::int64_t& queued_;
};

class CountedProgrammer final : public host::SessionProgrammer {
  public:
    CountedProgrammer(std::unique_ptr<SessionProgrammer> inner, std::int64_t& queued)
        : inner_(std::move(inner)), queued_(queued) {}
    Platform& platform() override { return inner_->platform(); }
    std::unique_ptr<DevCore> devcore(SharedVariables& s) override {
        return std::make_unique<CountedDevCore>(inner_->devcore(s), queued_);
    }
    std::unique_ptr<UsbTransport> transport(SharedVariables& s) override {
        return inner_->transport(s);
    }
    void finish() const override { inner_->finish(); }

  private:
    std::unique_ptr<SessionProgrammer> inner_;
    std::int64_t& queued_;
};

// Whole runs on a fresh chip that is not kept.
void SimulatedRun(benchmark::State& state, const char* name, const char* operation) {
    const host::Device device = host::Catalogue(KELD2_BENCH_DEVICES).find(name);
    host::RunRequest request{
        .device = device, .steps = {host::operationnamed(operation)}, .data = {}};
    const std::vector<std::uint8_t> cells(static_cast<std::size_t>(device.ranges[0].length), '0');
    if (host::playssvf(device))
        request.texts = {makesvf(host::logicdevice(device), *host::tasknamed(operation), cells)};
    else
        request.data = {{device.ranges[0].buffer, cells}};
    std::int64_t queued = 0;
    const host::ProgrammerFactory sim = simulated({.image = {}, .faults = {}}, device);
    const host::ProgrammerFactory counted = [&](const host::ProgrammerSetting& setting) {
        return std::make_unique<CountedProgrammer>(sim(setting), queued);
    };
    NobodyListens listener;
    for (auto _ : state)
        if (runondevice(request, counted, listener).result != result::well)
            state.SkipWithError("the run failed");
    state.counters["entries/s"] =
        benchmark::Counter(static_cast<double>(queued), benchmark::Counter::kIsRate);
}
BENCHMARK_CAPTURE(SimulatedRun, serial_program, "serial-4k", "program")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(SimulatedRun, parallel_program, "parallel-page-64k", "program")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(SimulatedRun, logic_program, "logic-141696", "program")
    ->Unit(benchmark::kMillisecond);

// Command lists alone: TCK pulses into the TAP of a logic device.
void SimulatedList(benchmark::State& state) {
    constexpr int pulses = 50'000;
    const host::Device device = host::Catalogue(KELD2_BENCH_DEVICES).find("logic-8160");
    PosixPlatform machine({.scope = ownscope()});
    SharedVariables s(machine.memory(), machine.strings());
    s.maprows(0, {});
    s.mapbuffers({});
    host::TraceLog trace;
    const host::ProgrammerFactory sim = simulated({.image = {}, .faults = {}}, device);
    const auto programmer =
        sim({.job = device.path, .machine = machine, .trace = trace, .host = s});
    const std::unique_ptr<DevCore> devcore = programmer->devcore(s);
    const JtagFamily& family = *findjtagfamily(host::logicdevice(device).family);
    const RegisterBits tck = family.wiring.tck;
    for (auto _ : state) {
        for (int i = 0; i < pulses; ++i) {
            devcore->qregwrite(tck.bits, tck.reg);
            devcore->qregwrite(0, tck.reg);
        }
        devcore->qrun();
    }
    state.counters["entries/s"] = benchmark::Counter(
        static_cast<double>(state.iterations()) * 2 * pulses, benchmark::Counter::kIsRate);
}
BENCHMARK(SimulatedList)->Unit(benchmark::kMillisecond);

// A whole session on recorded answers, with its trace.
void ReplaySession(benchmark::State& state) {
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("keld2-bench-replay-" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    host::writetext(folder / "job.toml",
                    "[shared]\nprgmode = 21\ntlength = 4112\nbuflength = 4112\nbvcc = 500\n"
                    "pagelength = 32\nwltbigendbuf = [0.0, 4063.0, 0.0]\nprgresult = [0, 2]\n"
                    "MainmnuPrg = [\"\", \"\", \"Read\"]\n");
    host::writetext(folder / "replay.txt", "usbbulkread * fill 0\n");
    const host::Job job = host::readjob(folder / "job.toml");
    const host::ProgrammerFactory programmer = host::replayed(folder / "replay.txt");
    const host::SessionOutput output{.record = {}, .trace = folder / "trace.txt", .dump = {}};
    for (auto _ : state)
        if (runsession(job, programmer, output) != 0) state.SkipWithError("the run failed");
    const auto bytes = static_cast<std::int64_t>(file_size(folder / "trace.txt"));
    state.SetBytesProcessed(state.iterations() * bytes);
    std::filesystem::remove_all(folder);
}
BENCHMARK(ReplaySession)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace keld2::bench
