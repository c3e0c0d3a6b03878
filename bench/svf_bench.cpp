// An SVF run from text to comparison, on a programmer that does nothing.
#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "bench/idleprogrammer.h"
#include "platform/posix/posixplatform.h"
#include "plugin/clskeld2.h"

namespace keld2::bench {
namespace {

constexpr int lines = 9900;
constexpr int rowbits = 1728;
constexpr std::int32_t fuses = 141696;

// Of each three lines an instruction, a row driven and a row read and compared.
std::string rowstext() {
    const std::string digits(rowbits / 4, '5');
    const std::string zeros(rowbits / 4, '0');
    const std::string ones(rowbits / 4, 'F');
    const std::string bits = std::to_string(rowbits);
    std::string text;
    for (int i = 0; i < lines / 3; ++i) {
        text += "SIR 8 TDI (16);\n";
        text += "SDR " + bits + " TDI (" + digits + ");\n";
        text += "SDR " + bits + " TDI (" + zeros + ") TDO (" + zeros + ") MASK (" + ones + ");\n";
    }
    return text;
}

// A host that plays one text again and again.
class Host {
  public:
    explicit Host(const std::string& text) {
        std::filesystem::create_directories(folder_);
        std::ofstream(folder_ / "pldtmp.svf", std::ios::binary) << text;
        plugin_.bufcomkeld2(0);
        SharedVariables& s = module_.variables();
        s.prgmode[0] = 80;
        s.tlength[0] = fuses;
        s.bvcc[0] = 330;
        s.prgresult[1] = 6;
    }
    ~Host() { std::filesystem::remove_all(folder_); }
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    bool play() {
        plugin_.runKeld2Prg(false);
        return module_.variables().prgresult[0] == 0;
    }
    std::int64_t queued() const { return queued_; }

  private:
    std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() / ("keld2-bench-" + std::to_string(getpid()));
    std::int64_t queued_ = 0;
    PosixPlatform platform_{{.scope = ownscope(), .folder = folder_}};
    Module module_{
        platform_,
        {.devcore = [this](SharedVariables&) { return std::make_unique<IdleDevCore>(queued_); },
         .transport = [](SharedVariables&) { return std::make_unique<IdleTransport>(); }}};
    ClsKELD2 plugin_{module_};
};

void PlayRows(benchmark::State& state) {
    const std::string text = rowstext();
    Host host(text);
    for (auto _ : state)
        if (!host.play()) state.SkipWithError("the run failed");
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
    rusage used{};
    getrusage(RUSAGE_SELF, &used);
    state.counters["entries/s"] =
        benchmark::Counter(static_cast<double>(host.queued()), benchmark::Counter::kIsRate);
    state.counters["peak MiB"] = static_cast<double>(used.ru_maxrss) / 1024;
}
BENCHMARK(PlayRows)->Unit(benchmark::kMillisecond);

void StartRun(benchmark::State& state) {
    Host host("");
    for (auto _ : state)
        if (!host.play()) state.SkipWithError("the run failed");
}
BENCHMARK(StartRun)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace keld2::bench
