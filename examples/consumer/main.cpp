// Attaches a programmer of one's own to the installed plug-in: what it is asked to do is printed,
// and a chip id is read from it.
#include <cstdio>
#include <exception>
#include <memory>

#include "external/idledevcore.h"
#include "platform/numbers.h"
#include "platform/posix/posixplatform.h"
#include "plugin/clskeld2.h"

namespace {

// A programmer of which only supplies and ends of a run are told. A real one would derive from
// DevCore, so that the compiler asks for every operation, and talk to its hardware here.
class PrintingDevCore final : public keld2::IdleDevCore {
  public:
    void setvcc(std::int32_t mv) override { std::printf("VCC %d mV\n", mv); }
    void setgndpin(std::uint8_t pin, std::uint8_t on) override {
        std::printf("ground pin %d: %d\n", pin, on);
    }
    void setvccpin(std::uint8_t pin, std::uint8_t on) override {
        std::printf("VCC pin %d: %d\n", pin, on);
    }
    void powerdown() override { std::puts("power down"); }
    void signalpass(std::uint8_t) override { std::puts("pass"); }
    void signalfail(std::uint8_t) override { std::puts("fail"); }
    std::uint8_t regread(std::uint8_t) override { return idbytes[next++ % 3]; }

  private:
    static constexpr std::uint8_t idbytes[3] = {0x5A, 0x41, 0x07};
    int next = 0;
};

class NoTransport final : public keld2::UsbTransport {
  public:
    int usbcomwrite(std::span<const std::uint8_t>) override { return 0; }
    void usbbulkread(std::span<std::uint8_t>, std::uint8_t* result) override {
        *result = static_cast<std::uint8_t>(keld2::BulkState::failed);
    }
    int usbbulkwrite(std::span<const std::uint8_t>) override { return 1; }
};

}  // namespace

int main() try {
    keld2::PosixPlatform platform({.scope = "keld2-consumer-"});
    keld2::Module module(
        platform,
        {.devcore = [](keld2::SharedVariables&) { return std::make_unique<PrintingDevCore>(); },
         .transport = [](keld2::SharedVariables&) { return std::make_unique<NoTransport>(); }});
    keld2::ClsKELD2 plugin(module);
    plugin.bufcomkeld2(0);
    keld2::SharedVariables& s = module.variables();
    s.prgmode[0] = 21;
    s.bvcc[0] = 500;
    s.bvccpin[0] = 40;
    s.bgndpin[0] = 20;
    s.prgresult[1] = 1;  // start the chip and read its id, but carry out no operation
    s.chipidtestmode[0] = keld2::Flag::yes;
    s.compid[0] = 0x5A;
    s.typeid_[0] = 0x41;
    s.prgnote[9] = u"maker ";
    s.prgnote[10] = u"device ";
    plugin.runKeld2Prg(false);
    const std::u16string log = s.MainRtstr[0];
    std::fputs(keld2::utf8(log).c_str(), stdout);
    return s.prgresult[0] == 0 && log.find(u"5A   device 4107") != std::u16string::npos ? 0 : 1;
} catch (const std::exception& fault) {
    std::fprintf(stderr, "consumer: %s\n", fault.what());
    return 1;
}
