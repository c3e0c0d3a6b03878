// Parallel family 23: program a page at a time, erase by command.
#include "mpu/parallelbus.h"
#include "mpu/parallelmcu.h"
#include "platform/numbers.h"

namespace keld2 {

namespace {

constexpr int erasepolls = 100;

}  // namespace

// Whole pages are written, wherever first and last lie in theirs.
bool PageMcu::programpossible() const {
    const std::int64_t page = s().pagelength[0];
    if (page < 1 || !readpossible()) return false;
    const std::int64_t from = first() / page * page;
    const std::int64_t to = last() / page * page + page - 1;
    return from > to || s().ibuffer.holds(from, to);
}

bool PageMcu::possible(std::int16_t op) const {
    if (op == operation::program) return programpossible();
    return !(reads(op) || op == operation::erase) || readpossible();
}

void PageMcu::carryout(std::int16_t op) {
    if (reads(op)) parallelread(readmode(op));
    if (op == operation::program) pageprogram();
    if (op == operation::erase) pageerase();
}

void PageMcu::pageprogram() {
    DevCore& d = devcore();
    const std::int32_t page = s().pagelength[0];
    const std::int32_t step = s().tlength[0] / page / 100 + 1;  // in pages
    const std::int32_t high = base();
    d.busconfig(0, busdirection::out, 1);
    d.buswrite(parking::write, 255, buscontrol::idle);
    d.setvpp(s().bvpp[0] * 10, 0);
    d.setvpppin(s().bvpppin[0], 1);
    d.waitshort(200);
    d.qbusconfig(0, busdirection::out, 1);
    for (std::int32_t p = first() / page; p <= last() / page; ++p) {
        queuepagebytes(p * page);
        d.qwaitlong(checkedint32(std::int64_t{pwtefield()} * 2));
        d.qrun();
        if (step != 0 && p % step == 0) writepercent(s(), p * page);
    }
    d.qbuswrite(high, buscommand::read, buscontrol::enabled);
    d.qwaitshort(1);
    d.qbuswrite(high, buscommand::read, buscontrol::writestrobe);
    d.qwaitshort(1);
    d.qbuswrite(high, buscommand::read, buscontrol::enabled);
    d.qbuswrite(parking::write, 255, buscontrol::idle);
    d.qrun();
    d.waitshort(200);
    restartforverify();
    verifystages([this] { parallelread(1); });
}

// The command that opens the page at chip address a0, then its bytes.
void PageMcu::queuepagebytes(std::int32_t a0) {
    DevCore& d = devcore();
    const auto pulse = [&d](std::int32_t address, std::uint8_t b, std::int32_t strobepause,
                            std::int32_t endpause) {
        d.qbuswrite(address, b, buscontrol::enabled);
        d.qwaitshort(5);
        d.qbuswrite(address, b, buscontrol::writestrobe);
        d.qwaitshort(strobepause);
        d.qbuswrite(address, b, buscontrol::enabled);
        d.qwaitshort(endpause);
    };
    const std::int32_t high = base();
    pulse(high | a0, buscommand::program, 30, 10);
    const std::int32_t behind = a0 + s().pagelength[0];
    for (std::int32_t a = a0; a < behind; ++a) pulse(high | a, s().ibuffer[a], 10, 5);
}

void PageMcu::pageerase() {
    DevCore& d = devcore();
    d.buswrite(parking::write, 255, buscontrol::idle);
    d.setvpppin(s().bvpppin[0], 1);
    d.waitshort(1000);
    d.busconfig(0, busdirection::out, 1);
    buspulse(commandbase, buscommand::reset);
    d.waitshort(100);
    pollpageerase();
    endpulses();
    announceblankcheck();
    d.powerdown();
    d.waitshort(100);
    hwstart();
    parallelread(2);
    d.powerdown();
    d.waitshort(100);
}

void PageMcu::pollpageerase() {
    DevCore& d = devcore();
    buspulse(commandbase, buscommand::erase);
    buspulse(commandbase, buscommand::erase);
    for (int n = 1;; ++n) {
        d.waitshort(pwtefield());
        buspulse(commandbase, buscommand::read);
        d.busconfig(0, busdirection::in, 1);
        d.buswrite(parking::write, 255, buscontrol::readstrobe);
        for (int i = 0; i <= s().wretry[0]; ++i) d.waitshort(pwtefield());
        if ((d.regread(datareadregister) & erasedonebit) != 0 || n > erasepolls) return;
        service();
        if (stopasked()) return;
        d.busconfig(0, busdirection::out, 1);
        s().prgmode[1] = static_cast<std::uint8_t>(n);
    }
}

}  // namespace keld2
