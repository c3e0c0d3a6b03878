#include <algorithm>
#include <utility>

#include "host/profile/profile.h"
#include "host/programmer/devcoredecorator.h"
#include "platform/platformdecorator.h"
#include "sim/board.h"
#include "sim/listengine.h"

namespace keld2::host {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::nanoseconds;
using Share = Profile::Share;

nanoseconds nanos(std::uint64_t count) { return nanoseconds(static_cast<std::int64_t>(count)); }

nanoseconds pauseof(std::int32_t ticks, std::uint64_t unit) {
    return nanos(static_cast<std::uint64_t>(std::max(ticks, 0)) * unit);
}

constexpr std::uint64_t shifttime = 8 * sim::steptime::tckpulse;

nanoseconds writetime(std::uint8_t reg) {
    const bool shifts = reg >= sim::shift::first && reg <= sim::shift::last;
    return nanos(shifts ? shifttime : sim::steptime::registeraccess);
}

// Adds the real time of its life to a share.
class Timed {
  public:
    explicit Timed(Share& share) : share_(share) {}
    ~Timed() { share_.real += Clock::now() - begin_; }
    Timed(const Timed&) = delete;
    Timed& operator=(const Timed&) = delete;

  private:
    Share& share_;
    Clock::time_point begin_ = Clock::now();
};

void count(Share& share, nanoseconds programmer) {
    ++share.calls;
    share.programmer += programmer;
}

class ProfiledDevCore final : public DevCoreDecorator {
  public:
    ProfiledDevCore(std::unique_ptr<DevCore> inner, Profile& profile)
        : DevCoreDecorator(std::move(inner)), profile_(profile) {}

    void regwrite(std::int32_t value, std::uint8_t reg) override {
        const Timed timed(now(profile_.pulses, writetime(reg)));
        inner().regwrite(value, reg);
    }
    std::uint8_t regread(std::uint8_t reg) override {
        const Timed timed(now(profile_.pulses, nanos(sim::steptime::registeraccess)));
        return inner().regread(reg);
    }
    void buswrite(std::int32_t address, std::uint8_t data, std::uint8_t control) override {
        const Timed timed(now(profile_.pulses, nanos(sim::steptime::buscycle)));
        inner().buswrite(address, data, control);
    }
    void busconfig(std::int32_t zero, std::uint8_t direction, std::uint8_t mode) override {
        const Timed timed(now(profile_.pulses, nanos(sim::steptime::buscycle)));
        inner().busconfig(zero, direction, mode);
    }
    void waitshort(std::int32_t n) override {
        const Timed timed(now(profile_.waits, pauseof(n, sim::microsecond)));
        inner().waitshort(n);
    }
    void waitlong(std::int32_t n) override {
        const Timed timed(now(profile_.waits, pauseof(n, sim::millisecond)));
        inner().waitlong(n);
    }
    bool transferwait(std::uint8_t number) override {
        const Timed timed(now(profile_.transfers, nanos(sim::steptime::frame)));
        return inner().transferwait(number);
    }

    void qregwrite(std::int32_t value, std::uint8_t reg) override {
        count(pulses_, writetime(reg));
        inner().qregwrite(value, reg);
    }
    void qregread(std::uint8_t reg) override {
        count(pulses_, nanos(sim::steptime::registeraccess));
        inner().qregread(reg);
    }
    void qbuswrite(std::int32_t address, std::uint8_t data, std::uint8_t control) override {
        count(pulses_, nanos(sim::steptime::buscycle));
        inner().qbuswrite(address, data, control);
    }
    void qbusconfig(std::int32_t zero, std::uint8_t direction, std::uint8_t mode) override {
        count(pulses_, nanos(sim::steptime::buscycle));
        inner().qbusconfig(zero, direction, mode);
    }
    void qwaitshort(std::int32_t n) override {
        count(waits_, pauseof(n, sim::microsecond));
        inner().qwaitshort(n);
    }
    void qwaitlong(std::int32_t n) override {
        count(waits_, pauseof(n, sim::millisecond));
        inner().qwaitlong(n);
    }
    void qrun() override {
        take(profile_.pulses, pulses_);
        take(profile_.waits, waits_);
        const Timed timed(profile_.pulses);
        inner().qrun();
    }
    void powerdown() override {
        pulses_ = waits_ = {};  // a list that has not run never will
        inner().powerdown();
    }

  private:
    static Share& now(Share& share, nanoseconds programmer) {
        count(share, programmer);
        return share;
    }
    static void take(Share& share, Share& queued) {
        share.calls += queued.calls;
        share.programmer += queued.programmer;
        queued = {};
    }

    Profile& profile_;
    Share pulses_, waits_;  // of the list at hand
};

class ProfiledTransport final : public UsbTransport {
  public:
    ProfiledTransport(std::unique_ptr<UsbTransport> inner, Profile& profile)
        : inner_(std::move(inner)), transfers_(profile.transfers) {}

    int usbcomwrite(std::span<const std::uint8_t> frame) override {
        count(transfers_, nanos(sim::steptime::frame));
        const Timed timed(transfers_);
        return inner_->usbcomwrite(frame);
    }
    void usbbulkread(std::span<std::uint8_t> target, std::uint8_t* result) override {
        count(transfers_, nanos(target.size() * sim::steptime::bulkbyte));
        const Timed timed(transfers_);
        inner_->usbbulkread(target, result);
    }
    int usbbulkwrite(std::span<const std::uint8_t> source) override {
        count(transfers_, nanos(source.size() * sim::steptime::bulkbyte));
        const Timed timed(transfers_);
        return inner_->usbbulkwrite(source);
    }

  private:
    std::unique_ptr<UsbTransport> inner_;
    Share& transfers_;
};

class ProfiledPlatform final : public PlatformDecorator {
  public:
    ProfiledPlatform(Platform& inner, Profile& profile)
        : PlatformDecorator(inner), loop_(profile.loop) {}
    void service() override {
        count(loop_, {});
        const Timed timed(loop_);
        inner().service();
    }

  private:
    Share& loop_;
};

class ProfiledProgrammer final : public SessionProgrammer {
  public:
    ProfiledProgrammer(std::unique_ptr<SessionProgrammer> inner, Profile& profile)
        : inner_(std::move(inner)), profile_(profile), platform_(inner_->platform(), profile) {}

    Platform& platform() override { return platform_; }
    std::unique_ptr<DevCore> devcore(SharedVariables& s) override {
        return std::make_unique<ProfiledDevCore>(inner_->devcore(s), profile_);
    }
    std::unique_ptr<UsbTransport> transport(SharedVariables& s) override {
        return std::make_unique<ProfiledTransport>(inner_->transport(s), profile_);
    }
    bool usable() const override { return inner_->usable(); }
    void finish() const override {
        profile_.total = Clock::now() - begin_;
        inner_->finish();
    }

  private:
    std::unique_ptr<SessionProgrammer> inner_;
    Profile& profile_;
    ProfiledPlatform platform_;
    Clock::time_point begin_ = Clock::now();
};

}  // namespace

ProgrammerFactory profiled(ProgrammerFactory programmer, Profile& profile) {
    return [programmer = std::move(programmer), &profile](const ProgrammerSetting& setting) {
        return std::make_unique<ProfiledProgrammer>(programmer(setting), profile);
    };
}

}  // namespace keld2::host
