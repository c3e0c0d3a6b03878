// A programmer and a machine whose work is done by the callbacks of a C host.
#pragma once

#include <functional>
#include <string>

#include "capi/keld2.h"
#include "external/devcore.h"
#include "external/usbtransport.h"
#include "platform/posix/posixplatform.h"

namespace keld2::capi {

// The callbacks with what they have said of failures.
struct Callbacks {
    keld2_callbacks table{};
    std::string failure = {};    // keld2_fail of the callback that is at work
    std::string lasterror = {};  // words of the last error
    std::function<void(int)> finishread = {};

    // A callback without an answer: NULL is passed over.
    template <typename... Parameters, typename... Arguments>
    void tell(void (*callback)(void*, Parameters...), Arguments... arguments) {
        if (callback == nullptr) return;
        callback(table.user, arguments...);
        raise();
    }
    // A callback with an answer: NULL is a RunFault.
    template <typename Answer, typename... Parameters, typename... Arguments>
    Answer ask(const char* name, Answer (*callback)(void*, Parameters...), Arguments... arguments) {
        if (callback == nullptr) fault(std::string("there is no callback ") + name);
        const Answer answer = callback(table.user, arguments...);
        raise();
        return answer;
    }
    // Throws RunFault when the callback has failed.
    void raise();
    [[noreturn]] void fault(const std::string& what);
};

class CallbackDevCore final : public DevCore {
  public:
    explicit CallbackDevCore(Callbacks& callbacks) : c_(callbacks), t_(callbacks.table) {}

    void setvcc(std::int32_t mv) override { c_.tell(t_.setvcc, mv); }
    void setvpp(std::int32_t mv, std::uint8_t channel) override { c_.tell(t_.setvpp, mv, channel); }
    void setgndpin(std::uint8_t pin, std::uint8_t on) override { c_.tell(t_.setgndpin, pin, on); }
    void setvccpin(std::uint8_t pin, std::uint8_t on) override { c_.tell(t_.setvccpin, pin, on); }
    void setvpppin(std::uint8_t pin, std::uint8_t on) override { c_.tell(t_.setvpppin, pin, on); }
    void drivercommit() override { c_.tell(t_.drivercommit); }
    void powerdown() override { c_.tell(t_.powerdown); }
    void signalpass(std::uint8_t zero) override { c_.tell(t_.signalpass, zero); }
    void signalfail(std::uint8_t zero) override { c_.tell(t_.signalfail, zero); }
    int readycheck() override { return c_.ask("readycheck", t_.readycheck); }
    void readyfail() override { c_.tell(t_.readyfail); }
    int modeselect(std::uint8_t mode) override { return c_.ask("modeselect", t_.modeselect, mode); }
    int modeselect2(std::uint8_t mode, int second) override {
        return c_.ask("modeselect2", t_.modeselect2, mode, second);
    }
    int modeselect3(std::uint8_t mode, int second) override {
        return c_.ask("modeselect3", t_.modeselect3, mode, second);
    }
    int armready() override { return c_.ask("armready", t_.armready); }
    void regwrite(std::int32_t value, std::uint8_t reg) override {
        c_.tell(t_.regwrite, value, reg);
    }
    void qregwrite(std::int32_t value, std::uint8_t reg) override {
        c_.tell(t_.qregwrite, value, reg);
    }
    std::uint8_t regread(std::uint8_t reg) override {
        return static_cast<std::uint8_t>(c_.ask("regread", t_.regread, reg));
    }
    void qregread(std::uint8_t reg) override { c_.tell(t_.qregread, reg); }
    void waitshort(std::int32_t n) override { c_.tell(t_.waitshort, n); }
    void qwaitshort(std::int32_t n) override { c_.tell(t_.qwaitshort, n); }
    void waitlong(std::int32_t n) override { c_.tell(t_.waitlong, n); }
    void qwaitlong(std::int32_t n) override { c_.tell(t_.qwaitlong, n); }
    void qrun() override { c_.tell(t_.qrun); }
    void buswrite(std::int32_t address, std::uint8_t data, std::uint8_t control) override {
        c_.tell(t_.buswrite, address, data, control);
    }
    void qbuswrite(std::int32_t address, std::uint8_t data, std::uint8_t control) override {
        c_.tell(t_.qbuswrite, address, data, control);
    }
    void busconfig(std::int32_t zero, std::uint8_t direction, std::uint8_t mode) override {
        c_.tell(t_.busconfig, zero, direction, mode);
    }
    void qbusconfig(std::int32_t zero, std::uint8_t direction, std::uint8_t mode) override {
        c_.tell(t_.qbusconfig, zero, direction, mode);
    }
    int checkbyte(std::int16_t value, std::int32_t address, int mode) override {
        return c_.ask("checkbyte", t_.checkbyte, value, address, mode);
    }
    int checkword(std::uint8_t low, std::uint8_t high, std::int32_t address, int mode,
                  int blank) override {
        return c_.ask("checkword", t_.checkword, low, high, address, mode, blank);
    }
    bool transferwait(std::uint8_t count) override {
        return c_.ask("transferwait", t_.transferwait, count) != 0;
    }
    void loadalgobuf(std::int32_t& length) override {
        if (t_.loadalgobuf != nullptr) length = c_.ask("loadalgobuf", t_.loadalgobuf, length);
    }

  private:
    Callbacks& c_;
    const keld2_callbacks& t_;
};

class CallbackTransport final : public UsbTransport {
  public:
    explicit CallbackTransport(Callbacks& callbacks) : c_(callbacks), t_(callbacks.table) {}

    int usbcomwrite(std::span<const std::uint8_t> frame) override {
        return c_.ask("usbcomwrite", t_.usbcomwrite, frame.data(), frame.size());
    }
    int usbbulkwrite(std::span<const std::uint8_t> source) override {
        return c_.ask("usbbulkwrite", t_.usbbulkwrite, source.data(), source.size());
    }
    // The result cell is the one that finishread writes.
    void usbbulkread(std::span<std::uint8_t> target, std::uint8_t*) override {
        if (t_.usbbulkread == nullptr) c_.finishread(KELD2_READ_FAILED);
        c_.tell(t_.usbbulkread, target.data(), target.size());
    }

  private:
    Callbacks& c_;
    const keld2_callbacks& t_;
};

class CallbackPlatform final : public PosixPlatform {
  public:
    // served: runs at each service.
    CallbackPlatform(PosixOptions options, Callbacks& callbacks, std::function<void()> served)
        : PosixPlatform(std::move(options)), c_(callbacks), served_(std::move(served)) {}

    void service() override;
    BoxAnswer messagebox(const Box& box) override;
    void window(std::string_view name, const WindowChange& change) override;

  private:
    Callbacks& c_;
    std::function<void()> served_;
};

}  // namespace keld2::capi
