#include "host/run/devicerun.h"

#include <algorithm>
#include <type_traits>

#include "host/arm/armdevice.h"
#include "host/hosterror.h"
#include "host/programmer/devcoredecorator.h"
#include "host/run/hosttexts.h"
#include "host/run/log_differences.h"
#include "host/run/runplatform.h"
#include "platform/numbers.h"
#include "plugin/clskeld2.h"
#include "shared/notes.h"
#include "shared/operations.h"

namespace keld2::host {

namespace {

constexpr std::int16_t instance = 0;
constexpr std::uint8_t blankbyte = 255;
constexpr std::uint8_t blankfuse = '1';

// What the calls on the programmer tell of a run that leaves no other sign.
struct Signs {
    bool refused = false;     // readyfail was called
    bool modefailed = false;  // the mode for the device could not be set
    bool incomplete = false;  // a component could not be had
    bool finished = false;    // the end-of-run signal was given
};

using Steps = std::vector<const Operation*>;

// The steps of a sequence, split into runs. A parallel family's erase ends with the power off, so
// that a step behind it needs a run of its own.
std::vector<Steps> runsof(const RunRequest& request) {
    constexpr std::int64_t parallelbyte = 22, parallelpage = 23;  // of prgmode[0]
    const std::int64_t family = request.device.value("prgmode");
    const bool poweroff =
        !isarm(request.device) && (family == parallelbyte || family == parallelpage);
    std::vector<Steps> runs(1);
    for (const Operation* step : request.steps) {
        const bool behinderase =
            !runs.back().empty() && runs.back().back()->number == operation::erase;
        if (poweroff && behinderase) runs.emplace_back();
        runs.back().push_back(step);
    }
    return runs;
}

class WatchedDevCore final : public DevCoreDecorator {
  public:
    WatchedDevCore(std::unique_ptr<DevCore> inner, Signs& signs, CheckWatch& checks,
                   RunPlatform& platform)
        : DevCoreDecorator(std::move(inner)), signs_(signs), checks_(checks), platform_(platform) {}

    void readyfail() override {
        signs_.refused = true;
        inner().readyfail();
    }
    int modeselect(std::uint8_t mode) override { return note(inner().modeselect(mode)); }
    int modeselect2(std::uint8_t mode, int second) override {
        return note(inner().modeselect2(mode, second));
    }
    int modeselect3(std::uint8_t mode, int second) override {
        return note(inner().modeselect3(mode, second));
    }
    void signalpass(std::uint8_t zero) override {
        signs_.finished = true;
        inner().signalpass(zero);
    }
    void signalfail(std::uint8_t zero) override {
        signs_.finished = true;
        inner().signalfail(zero);
    }
    void qrun() override {
        inner().qrun();
        platform_.look();
    }
    int checkbyte(std::int16_t value, std::int32_t address, int mode) override {
        const CheckedCell cell{.address = address, .value = static_cast<std::uint8_t>(value)};
        checks_.see(cell, mode);
        return checks_.answer(cell, mode, inner().checkbyte(value, address, mode));
    }
    int checkword(std::uint8_t low, std::uint8_t high, std::int32_t address, int mode,
                  int blank) override {
        const auto value = static_cast<std::uint32_t>(high << 8 | low);
        const CheckedCell cell{.unit = CellUnit::word, .address = address, .value = value};
        checks_.see(cell, mode);
        return checks_.answer(cell, mode, inner().checkword(low, high, address, mode, blank));
    }

  private:
    int note(int answer) {
        constexpr int failed = 2;
        signs_.modefailed = answer == failed;
        return answer;
    }

    Signs& signs_;
    CheckWatch& checks_;
    RunPlatform& platform_;
};

class DeviceRun {
  public:
    DeviceRun(const RunRequest& request, const ProgrammerFactory& makeprogrammer,
              RunListener& listener)
        : request_(request),
          runs_(runsof(request)),
          machine_(os::makemachine(".", request.blocks)),
          platform_(*machine_, listener, request.device),
          programmer_(makeprogrammer({.job = request.device.path,
                                      .machine = platform_,
                                      .trace = trace_,
                                      .host = platform_.variables()})) {}

    RunReport run() {
        prepare();
        platform_.laydown(request_.texts, [this] { readbacks_.begintext(); });
        Module module(programmer_->platform(), external());
        ClsKELD2 plugin(module);
        plugin.bufcomkeld2(instance);
        plugin.sinitkeld2();
        plugin.keld2warn(s().wwarnno[0]);
        filldata();
        providefiles();
        for (const Steps& steps : runs_)
            if (!runsteps(plugin, steps)) break;
        readbacks_.close();
        programmer_->finish();
        return report();
    }

  private:
    SharedVariables& s() { return platform_.variables(); }

    // One run of the plug-in; false when no other may follow it.
    bool runsteps(ClsKELD2& plugin, const Steps& steps) {
        const bool usb = true;
        signs_ = {};
        writesteps(steps);
        plugin.runKeld2Prg(usb);
        platform_.look();
        return signs_.finished && s().prgresult.acquire(0) == result::well &&
               !platform_.stopgiven();
    }

    void prepare() {
        s().maprows(instance, {});
        for (const SharedSetting& setting : request_.device.shared) apply(setting, s());
        s().mapbuffers({});
        const bool fuses = request_.device.content == Content::fuses;
        std::fill_n(s().ibuffer.data(), s().ibuffer.size(), fuses ? blankfuse : blankbyte);
        writetexts(s(), request_.device, request_.language);
        writesteps(runs_.front());
    }

    void writesteps(const Steps& steps) {
        s().prgresult[1] = 0;
        s().wautonum[0] = 0;
        if (!request_.sequence) {
            const std::int16_t number = numberof(*request_.steps.at(0));
            s().MainmnuPrg[number] = text(request_.steps[0]->title, request_.language);
            s().prgresult[1] = static_cast<std::uint8_t>(number);
            return;
        }
        s().wautonum[0] = static_cast<std::uint8_t>(steps.size());
        for (std::size_t i = 0; i < steps.size(); ++i)
            s().autoprg[static_cast<std::int64_t>(i)] =
                static_cast<std::uint8_t>(numberof(*steps[i]));
    }

    // The number under which the plug-in carries the step out: one window plays texts for
    // programming alone, whatever they do.
    std::int16_t numberof(const Operation& step) const {
        constexpr std::int64_t playsforprogram = 50;  // of prgmode[0]
        const bool program = request_.device.value("prgmode") == playsforprogram;
        return program ? operationnamed("program")->number : step.number;
    }

    void filldata() {
        for (const BufferPart& part : request_.data) {
            const auto length = static_cast<std::int64_t>(part.bytes.size());
            if (length == 0) continue;
            if (!s().ibuffer.holds(part.offset, part.offset + length - 1))
                throw HostError(exitstatus::programfault, "data outside the main buffer");
            std::copy(part.bytes.begin(), part.bytes.end(), s().ibuffer.data() + part.offset);
        }
    }

    void providefiles() {
        if (!isarm(request_.device)) return;
        const auto& autosteps = request_.sequence ? request_.steps : request_.device.autosteps;
        if (request_.simulated) platform_.provide(algorithmfile(request_.device, autosteps, s()));
        if (takesfile(s())) platform_.provide(datafile(s()));
    }

    External external() {
        External external{
            .devcore = [this](SharedVariables& views) -> std::unique_ptr<DevCore> {
                return std::make_unique<WatchedDevCore>(
                    obtained([&] { return programmer_->devcore(views); }), signs_,
                    platform_.checks(), platform_);
            },
            .transport = [this](SharedVariables& views) -> std::unique_ptr<UsbTransport> {
                return std::make_unique<KeptTransport>(
                    obtained([&] { return programmer_->transport(views); }), readbacks_);
            }};
        if (const auto helper = programmer_->helper())
            external.helper = [this, helper] { return obtained(helper); };
        return external;
    }

    // A component, or the sign that it is missing.
    template <typename Make>
    std::invoke_result_t<const Make&> obtained(const Make& make) {
        try {
            return make();
        } catch (const ComponentMissing&) {
            signs_.incomplete = true;
            throw;
        }
    }

    bool well() { return signs_.finished && s().prgresult.acquire(0) == result::well; }

    // By the result lines of the log, which come in the order of the steps.
    std::size_t stepsdone() {
        if (well()) return request_.steps.size();
        if (isarm(request_.device)) return phasesdone();
        std::size_t done = 0;
        for (const std::string& line : platform_.lines())
            if (done < request_.steps.size() && line == wellline(*request_.steps[done])) ++done;
        return done;
    }
    // An ARM device notes a step of its sequence when it begins.
    std::size_t phasesdone() {
        std::size_t begun = 0;
        for (std::size_t i = 0; i < request_.steps.size(); ++i) {
            const std::string name = ">>" + utf8(s().MainmnuPrg[request_.steps[i]->number].text());
            const auto notes = [&](const std::string& line) { return line.starts_with(name); };
            if (std::ranges::any_of(platform_.lines(), notes)) begun = i;
        }
        return begun;
    }
    std::string wellline(const Operation& step) {
        return ">>" + utf8(s().MainmnuPrg[numberof(step)].text() + s().prgnote[note::well].text());
    }

    int percent() {
        constexpr int whole = 100;
        if (well()) return whole;
        return isarm(request_.device) ? platform_.percent() : s().prgmode[1];
    }

    // Of the checks, or where the plug-in has compared by itself of its log.
    Differences differences() {
        if (!platform_.checks().differences().empty()) return platform_.checks().differences();
        const bool fuses = request_.device.content == Content::fuses;
        return differences_in_log(platform_.lines(), fuses, request_.language);
    }

    RunReport report() {
        return {.result = s().prgresult.acquire(0),
                .finished = signs_.finished,
                .refused = signs_.refused,
                .modefailed = signs_.modefailed,
                .incomplete = signs_.incomplete,
                .boxended = platform_.boxanswered(),
                .stopgiven = platform_.stopgiven(),
                .done = stepsdone(),
                .percent = percent(),
                .differences = differences(),
                .uniform = platform_.checks().uniform(),
                .foreignid = platform_.foreignid(),
                .log = platform_.lines(),
                .buffer = {s().ibuffer.data(), s().ibuffer.data() + s().ibuffer.size()},
                .readbacks = readbacks_.texts()};
    }

    const RunRequest& request_;
    std::vector<Steps> runs_;
    Signs signs_;
    TraceLog trace_;  // the programmer counts by it; nothing is written
    ReadBackKeeper readbacks_;
    std::unique_ptr<Platform> machine_;
    RunPlatform platform_;
    std::unique_ptr<SessionProgrammer> programmer_;
};

}  // namespace

RunReport runondevice(const RunRequest& request, const ProgrammerFactory& makeprogrammer,
                      RunListener& listener) {
    return DeviceRun(request, makeprogrammer, listener).run();
}

}  // namespace keld2::host
