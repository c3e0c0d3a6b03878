#include "host/wave/waveprogrammer.h"

#include <utility>

#include "host/programmer/devcoredecorator.h"
#include "platform/numbers.h"
#include "platform/platformdecorator.h"
#include "sim/programmer.h"

namespace keld2::host {

namespace {

// The chip with all that it sees on its way to the waveform. chip: nullptr for an empty socket.
class WatchedChip final : public sim::Chip {
  public:
    WatchedChip(std::unique_ptr<sim::Chip> chip, std::shared_ptr<Wave> wave)
        : chip_(std::move(chip)), wave_(std::move(wave)) {}

    void supplieschanged(const sim::Socket& socket) override {
        wave_->supplies(socket);
        if (chip_) chip_->supplieschanged(socket);
    }
    void registerwritten(const sim::Socket& socket, std::uint8_t reg) override {
        wave_->written(socket, reg);
        if (!chip_) return;
        chip_->registerwritten(socket, reg);
        looktdo(socket);
    }
    std::uint8_t registerread(const sim::Socket& socket, std::uint8_t reg,
                              std::uint8_t idle) override {
        if (!chip_) {
            wave_->sampled(socket, reg, {});
            return idle;
        }
        const std::uint8_t value = chip_->registerread(socket, reg, idle);
        wave_->sampled(socket, reg, value);
        return value;
    }
    void busmoved(const sim::Socket& socket) override {
        wave_->moved(socket);
        if (chip_) chip_->busmoved(socket);
    }
    std::optional<std::uint8_t> clock8(const sim::Socket& socket, std::uint8_t tdi) override {
        if (!chip_) return {};
        const auto tdo = chip_->clock8(socket, tdi);
        if (tdo) wave_->pulses(socket, tdi, *tdo);
        return tdo;
    }
    std::vector<sim::StateSection> state() override {
        return chip_ ? chip_->state() : std::vector<sim::StateSection>{};
    }
    sim::DebugPort* debugport() override { return chip_ ? chip_->debugport() : nullptr; }

  private:
    // A test access port shows the next bit as soon as a clock has come.
    void looktdo(const sim::Socket& socket) {
        const sim::JtagLines* lines = wave_->jtag();
        if (lines != nullptr)
            wave_->tdo(socket, chip_->registerread(socket, lines->tdo.reg, sim::pulledup));
    }

    std::unique_ptr<sim::Chip> chip_;
    std::shared_ptr<Wave> wave_;
};

class WavePlatform final : public PlatformDecorator {
  public:
    WavePlatform(Platform& inner, Wave& wave) : PlatformDecorator(inner), wave_(wave) {}
    void window(std::string_view name, const WindowChange& change) override {
        if (change.kind == WindowChange::Kind::caption) wave_.operation(utf8(change.text));
        inner().window(name, change);
    }

  private:
    Wave& wave_;
};

// What reaches the pins is done on the shadow too.
class ShadowedDevCore final : public DevCoreDecorator {
  public:
    ShadowedDevCore(std::unique_ptr<DevCore> inner, std::unique_ptr<DevCore> shadow)
        : DevCoreDecorator(std::move(inner)), shadow_(std::move(shadow)) {}

    void setvcc(std::int32_t mv) override { both(&DevCore::setvcc, mv); }
    void setvpp(std::int32_t mv, std::uint8_t channel) override {
        both(&DevCore::setvpp, mv, channel);
    }
    void setgndpin(std::uint8_t pin, std::uint8_t on) override {
        both(&DevCore::setgndpin, pin, on);
    }
    void setvccpin(std::uint8_t pin, std::uint8_t on) override {
        both(&DevCore::setvccpin, pin, on);
    }
    void setvpppin(std::uint8_t pin, std::uint8_t on) override {
        both(&DevCore::setvpppin, pin, on);
    }
    void drivercommit() override { both(&DevCore::drivercommit); }
    void powerdown() override { both(&DevCore::powerdown); }
    void regwrite(std::int32_t value, std::uint8_t reg) override {
        both(&DevCore::regwrite, value, reg);
    }
    void qregwrite(std::int32_t value, std::uint8_t reg) override {
        both(&DevCore::qregwrite, value, reg);
    }
    std::uint8_t regread(std::uint8_t reg) override {
        shadow_->regread(reg);
        return inner().regread(reg);
    }
    void qregread(std::uint8_t reg) override { both(&DevCore::qregread, reg); }
    void waitshort(std::int32_t n) override { both(&DevCore::waitshort, n); }
    void qwaitshort(std::int32_t n) override { both(&DevCore::qwaitshort, n); }
    void waitlong(std::int32_t n) override { both(&DevCore::waitlong, n); }
    void qwaitlong(std::int32_t n) override { both(&DevCore::qwaitlong, n); }
    void qrun() override { both(&DevCore::qrun); }
    void buswrite(std::int32_t address, std::uint8_t data, std::uint8_t control) override {
        both(&DevCore::buswrite, address, data, control);
    }
    void qbuswrite(std::int32_t address, std::uint8_t data, std::uint8_t control) override {
        both(&DevCore::qbuswrite, address, data, control);
    }
    void busconfig(std::int32_t zero, std::uint8_t direction, std::uint8_t mode) override {
        both(&DevCore::busconfig, zero, direction, mode);
    }
    void qbusconfig(std::int32_t zero, std::uint8_t direction, std::uint8_t mode) override {
        both(&DevCore::qbusconfig, zero, direction, mode);
    }

  private:
    template <typename... Parameters>
    void both(void (DevCore::*call)(Parameters...), Parameters... arguments) {
        ((*shadow_).*call)(arguments...);
        (inner().*call)(arguments...);
    }

    std::unique_ptr<DevCore> shadow_;
};

// Frames reach the shadow too; bulk data have nothing to do with its pins.
class ShadowedTransport final : public UsbTransport {
  public:
    ShadowedTransport(std::unique_ptr<UsbTransport> inner, std::unique_ptr<UsbTransport> shadow)
        : inner_(std::move(inner)), shadow_(std::move(shadow)) {}

    int usbcomwrite(std::span<const std::uint8_t> frame) override {
        shadow_->usbcomwrite(frame);
        return inner_->usbcomwrite(frame);
    }
    void usbbulkread(std::span<std::uint8_t> target, std::uint8_t* result) override {
        inner_->usbbulkread(target, result);
    }
    int usbbulkwrite(std::span<const std::uint8_t> source) override {
        return inner_->usbbulkwrite(source);
    }

  private:
    std::unique_ptr<UsbTransport> inner_, shadow_;
};

class WaveProgrammer final : public SessionProgrammer {
  public:
    // shadow: nullptr where the programmer's own socket is watched.
    WaveProgrammer(std::unique_ptr<SessionProgrammer> inner, std::shared_ptr<Wave> wave,
                   std::unique_ptr<sim::SimProgrammer> shadow)
        : wave_(std::move(wave)),
          shadow_(std::move(shadow)),
          inner_(std::move(inner)),
          platform_(inner_->platform(), *wave_) {}

    Platform& platform() override { return platform_; }
    std::unique_ptr<DevCore> devcore(SharedVariables& s) override {
        auto device = inner_->devcore(s);
        if (!shadow_) return device;
        return std::make_unique<ShadowedDevCore>(std::move(device), shadow_->devcore(s));
    }
    std::unique_ptr<UsbTransport> transport(SharedVariables& s) override {
        auto transport = inner_->transport(s);
        if (!shadow_) return transport;
        return std::make_unique<ShadowedTransport>(std::move(transport), shadow_->transport());
    }
    std::function<std::unique_ptr<TextHelper>()> helper() override { return inner_->helper(); }
    bool usable() const override { return inner_->usable(); }
    void finish() const override {
        wave_->finish();
        inner_->finish();
    }

  private:
    std::shared_ptr<Wave> wave_;
    std::unique_ptr<sim::SimProgrammer> shadow_;
    std::unique_ptr<SessionProgrammer> inner_;
    WavePlatform platform_;
};

Socketing watched(std::shared_ptr<Wave> wave) {
    return [wave = std::move(wave)](std::unique_ptr<sim::Chip> chip) {
        return std::make_unique<WatchedChip>(std::move(chip), wave);
    };
}

}  // namespace

ProgrammerFactory wavedsimulated(const ProgrammerChoice& choice, const Device& device,
                                 const std::filesystem::path& vcd, std::uint8_t prgmode) {
    const auto wave = std::make_shared<Wave>(vcd, prgmode);
    return [wave, programmer =
                      simulated(choice, device, watched(wave))](const ProgrammerSetting& setting) {
        return std::make_unique<WaveProgrammer>(programmer(setting), wave, nullptr);
    };
}

ProgrammerFactory waved(ProgrammerFactory programmer, const std::filesystem::path& vcd,
                        std::uint8_t prgmode) {
    const auto wave = std::make_shared<Wave>(vcd, prgmode);
    return [wave, programmer = std::move(programmer)](const ProgrammerSetting& setting) {
        auto shadow =
            std::make_unique<sim::SimProgrammer>(sim::SimSetting{.chip = watched(wave)(nullptr)});
        return std::make_unique<WaveProgrammer>(programmer(setting), wave, std::move(shadow));
    };
}

}  // namespace keld2::host
