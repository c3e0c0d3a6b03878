#include "faults/faultyprogrammer.h"

#include <atomic>
#include <chrono>
#include <set>
#include <utility>

#include "host/hosterror.h"
#include "host/programmer/devcoredecorator.h"
#include "platform/platformdecorator.h"
#include "platform/timerlist.h"

namespace keld2::test {

namespace {

// Counts the answers and tells where the fault strikes.
class Aim {
  public:
    Aim(FaultPlan plan, FaultWatch& watch) : plan_(plan), watch_(watch) {}

    bool strikes() {
        if (++watch_.answers != plan_.answer) return false;
        if (plan_.fault == Fault::stop) stopdue_ = true;
        return plan_.fault == Fault::wrong || plan_.fault == Fault::hang;
    }
    // A programmer that has lost a frame tells its state for ever: its user pulls the plug.
    bool patienceends() {
        constexpr std::size_t many = 80;
        return plan_.fault != Fault::none && watch_.answers > plan_.answer + many;
    }
    bool stopdue() { return std::exchange(stopdue_, false); }
    bool hangs() {
        hanging_ = plan_.fault == Fault::hang;
        return hanging_;
    }
    bool hanging() const { return hanging_; }
    FaultWatch& watch() { return watch_; }

  private:
    FaultPlan plan_;
    FaultWatch& watch_;
    bool stopdue_ = false;
    bool hanging_ = false;
};

class FaultyDevCore final : public host::DevCoreDecorator {
  public:
    FaultyDevCore(std::unique_ptr<DevCore> inner, Aim& aim)
        : DevCoreDecorator(std::move(inner)), aim_(aim) {}

    int readycheck() override {
        return answer(1, [this] { return inner().readycheck(); });
    }
    int modeselect(std::uint8_t mode) override {
        return answer(2, [&] { return inner().modeselect(mode); });
    }
    int modeselect2(std::uint8_t mode, int second) override {
        return answer(2, [&] { return inner().modeselect2(mode, second); });
    }
    int modeselect3(std::uint8_t mode, int second) override {
        return answer(2, [&] { return inner().modeselect3(mode, second); });
    }
    int armready() override {
        return answer(1, [this] { return inner().armready(); });
    }
    bool transferwait(std::uint8_t count) override {
        const bool told = !aim_.strikes() && !aim_.patienceends() && inner().transferwait(count);
        aim_.watch().queried |= told;
        return told;
    }
    std::uint8_t regread(std::uint8_t reg) override {
        const std::uint8_t value = inner().regread(reg);
        if (!aim_.strikes()) return value;
        aim_.watch().unnoticed = true;
        return static_cast<std::uint8_t>(~value);
    }
    void setvcc(std::int32_t mv) override {
        aim_.watch().powered |= mv > 0;
        inner().setvcc(mv);
    }
    void setvpp(std::int32_t mv, std::uint8_t channel) override {
        aim_.watch().powered |= mv > 0;
        inner().setvpp(mv, channel);
    }
    void powerdown() override {
        aim_.watch().powered = false;
        aim_.watch().queried = false;
        inner().powerdown();
    }

  private:
    template <typename Call>
    int answer(int no, Call call) {
        if (!aim_.strikes()) return call();
        constexpr std::size_t startup = 2;  // answers; a later start-up's are not looked at
        aim_.watch().unnoticed = aim_.watch().answers > startup;
        return no;
    }

    Aim& aim_;
};

class FaultyTransport final : public UsbTransport {
  public:
    FaultyTransport(std::unique_ptr<UsbTransport> inner, Aim& aim)
        : inner_(std::move(inner)), aim_(aim) {}

    int usbcomwrite(std::span<const std::uint8_t> frame) override {
        if (!aim_.strikes()) return inner_->usbcomwrite(frame);
        aim_.watch().unnoticed = true;
        return 1;
    }
    int usbbulkwrite(std::span<const std::uint8_t> source) override {
        return aim_.strikes() ? 1 : inner_->usbbulkwrite(source);
    }
    void usbbulkread(std::span<std::uint8_t> target, std::uint8_t* result) override {
        const bool strikes = aim_.strikes();
        aim_.watch().bulkreads.insert(aim_.watch().answers);
        if (!strikes) return inner_->usbbulkread(target, result);
        const BulkState state = aim_.hangs() ? BulkState::running : BulkState::failed;
        std::atomic_ref(*result).store(static_cast<std::uint8_t>(state), std::memory_order_release);
    }

  private:
    std::unique_ptr<UsbTransport> inner_;
    Aim& aim_;
};

// While a transfer hangs a service takes a second, so that nobody waits for a time-out.
class FaultyPlatform final : public PlatformDecorator {
  public:
    FaultyPlatform(Platform& inner, SharedVariables& host, Aim& aim)
        : PlatformDecorator(inner), host_(host), aim_(aim) {}

    void service() override {
        if (aim_.stopdue()) host_.prgresult.release(0, host::exitstatus::stopped);
        inner().service();
        if (aim_.hanging()) hang();
        timers_.run(now());
    }
    TimerId settimer(std::int32_t milliseconds, std::function<void()> handler) override {
        const TimerId id = timers_.add(now(), milliseconds, std::move(handler));
        set_.insert(id);
        aim_.watch().timers = static_cast<int>(set_.size());
        return id;
    }
    void killtimer(TimerId id) override {
        timers_.remove(id);
        set_.erase(id);
        aim_.watch().timers = static_cast<int>(set_.size());
    }

  private:
    // Where the run itself sets no bound its user stops it in the end.
    void hang() {
        constexpr std::int64_t step = 1000, patience = 60'000;  // ms
        ahead_ += step;
        if (ahead_ > patience) host_.prgresult.release(0, host::exitstatus::stopped);
    }
    std::int64_t now() const {  // ms
        const auto clock = std::chrono::steady_clock::now().time_since_epoch();
        return std::chrono::duration_cast<std::chrono::milliseconds>(clock).count() + ahead_;
    }

    SharedVariables& host_;
    Aim& aim_;
    std::int64_t ahead_ = 0;  // ms
    TimerList timers_;
    std::set<TimerId> set_;
};

class FaultyProgrammer final : public host::SessionProgrammer {
  public:
    FaultyProgrammer(std::unique_ptr<SessionProgrammer> inner, SharedVariables& host,
                     FaultPlan plan, FaultWatch& watch)
        : inner_(std::move(inner)), aim_(plan, watch), platform_(inner_->platform(), host, aim_) {}

    Platform& platform() override { return platform_; }
    std::unique_ptr<DevCore> devcore(SharedVariables& s) override {
        return std::make_unique<FaultyDevCore>(inner_->devcore(s), aim_);
    }
    std::unique_ptr<UsbTransport> transport(SharedVariables& s) override {
        return std::make_unique<FaultyTransport>(inner_->transport(s), aim_);
    }
    void finish() const override { inner_->finish(); }

  private:
    std::unique_ptr<SessionProgrammer> inner_;
    Aim aim_;
    FaultyPlatform platform_;
};

}  // namespace

host::ProgrammerFactory faulty(host::ProgrammerFactory inner, FaultPlan plan, FaultWatch& watch) {
    return [inner = std::move(inner), plan, &watch](const host::ProgrammerSetting& setting) {
        return std::make_unique<FaultyProgrammer>(inner(setting), setting.host, plan, watch);
    };
}

}  // namespace keld2::test
