// Parallel family 22: program a byte at a time, erase by command.
#include <cmath>

#include "mpu/parallelbus.h"
#include "mpu/parallelmcu.h"
#include "platform/numbers.h"

namespace keld2 {

namespace {

constexpr int erasepolls = 3000;

}  // namespace

std::int64_t ByteMcu::dataindex(std::int32_t a) const {
    return roundint32(a - s().wltbigendbuf[0] + s().wltbigendbuf[2]);
}

bool ByteMcu::datainbuffer() const {
    const auto index = [this](std::int32_t a) {  // as dataindex, but without a fault
        return std::nearbyint(a - s().wltbigendbuf[0] + s().wltbigendbuf[2]);
    };
    return first() > last() ||
           (index(first()) >= 0 && index(last()) < static_cast<double>(s().ibuffer.size()));
}

bool ByteMcu::possible(std::int16_t op) const {
    if (op == operation::program) return readpossible() && datainbuffer();
    if (op == operation::erase) return readpossible() && (s().woption[0] != 1 || datainbuffer());
    return !reads(op) || readpossible();
}

void ByteMcu::carryout(std::int16_t op) {
    if (reads(op)) parallelread(readmode(op));
    if (op == operation::program) byteprogram();
    if (op == operation::erase) byteerase();
}

void ByteMcu::byteprogram() {
    DevCore& d = devcore();
    d.busconfig(0, busdirection::out, 1);
    d.buswrite(parking::write, 255, buscontrol::idle);
    d.setvpppin(s().bvpppin[0], 1);
    d.waitshort(100);
    if (queuebytes(&ByteMcu::queueprogrambyte)) {
        closelist();
        restartforverify();
        verifystages([this] { parallelread(1); });
    }
    endprogramming();
}

// Queues each byte of the job that is not blank. False after a stop.
bool ByteMcu::queuebytes(void (ByteMcu::*queuebyte)(std::int32_t, std::uint8_t)) {
    for (std::int32_t a = first(); a <= last(); ++a) {
        const std::uint8_t b = s().ibuffer[dataindex(a)];
        if (b != 255) (this->*queuebyte)(a | commandbase, b);
        if (progresspoint(a) && stopasked()) return false;
    }
    return true;
}

// Percent and message loop at multiples of the progress step; true where there was one.
bool ByteMcu::progresspoint(std::int32_t a) {
    if (progressstep() == 0 || a % progressstep() != 0) return false;
    writepercent(s(), a);
    service();
    return true;
}

void ByteMcu::queueprogrambyte(std::int32_t address, std::uint8_t data) {
    DevCore& d = devcore();
    const auto cycle = [&](std::uint8_t b, std::int32_t pause) {
        d.qbuswrite(address, b, buscontrol::writestrobe);
        d.qwaitshort(5);
        d.qbuswrite(address, b, buscontrol::idle);
        d.qwaitshort(pause);
    };
    cycle(buscommand::program, 5);
    cycle(data, pwtefield());
    cycle(buscommand::programcheck, 5);
}

// The list's end, on the address after the job.
void ByteMcu::closelist() {
    DevCore& d = devcore();
    const std::int32_t address = (last() + 1) | commandbase;
    d.qbuswrite(address, buscommand::reset, buscontrol::writestrobe);
    d.qbuswrite(address, buscommand::reset, buscontrol::enabled);
    d.qrun();
    d.waitshort(200);
}

void ByteMcu::endprogramming() {
    DevCore& d = devcore();
    for (const int i : {0, 1})
        if (s().bvpppin[i] > 0) d.setvpppin(s().bvpppin[i], 0);
    if (s().bvpp[0] > 0) {
        d.setvpp(s().bvcc[0] * 10, 0);
        d.setvpp(s().bvcc[0] * 10, 1);
    }
}

void ByteMcu::byteerase() {
    DevCore& d = devcore();
    d.buswrite(parking::write, 255, buscontrol::idle);
    d.setvpppin(s().bvpppin[0], 1);
    d.waitshort(1000);
    if (s().woption[0] != 1 || clearbytes()) pollbyteerase();
    endpulses();
    announceblankcheck();
    d.waitshort(100);
    d.powerdown();
    d.waitshort(100);
    hwstart();
    fastread(2);
    d.powerdown();
    d.waitshort(100);
}

// A pass over the job that programs every byte to 0 before the erase. False after a stop.
bool ByteMcu::clearbytes() {
    DevCore& d = devcore();
    d.busconfig(0, busdirection::out, 1);
    d.buswrite(parking::write, 255, buscontrol::idle);
    d.setvpppin(s().bvpppin[0], 1);
    d.waitshort(100);
    if (!queuebytes(&ByteMcu::queueclearbyte)) return false;
    closelist();
    return true;
}

void ByteMcu::queueclearbyte(std::int32_t address, std::uint8_t) {
    DevCore& d = devcore();
    const auto pulse = [&](std::uint8_t b, std::uint8_t strobe) {
        d.qbuswrite(address, b, strobe);
        d.qbuswrite(address, b, buscontrol::enabled);
    };
    pulse(buscommand::program, buscontrol::writestrobe);
    pulse(0, buscontrol::writestrobe);
    d.qwaitshort(pwtefield());
    pulse(buscommand::programcheck, buscontrol::writestrobe);
    d.qwaitshort(10);
    pulse(255, buscontrol::readstrobe);
}

void ByteMcu::pollbyteerase() {
    DevCore& d = devcore();
    d.busconfig(0, busdirection::out, 1);
    buspulse(commandbase, buscommand::reset);
    d.waitshort(100);
    buspulse(commandbase, buscommand::erase);
    buspulse(commandbase, buscommand::erase);
    for (int n = 1;; ++n) {
        d.waitshort(100);
        buspulse(commandbase, buscommand::programcheck);
        d.busconfig(0, busdirection::in, 1);
        d.buswrite(parking::write, 255, buscontrol::readstrobe);
        d.waitlong(pwtefield());
        if ((d.regread(datareadregister) & erasedonebit) != 0 || n > erasepolls) return;
        service();
        if (stopasked()) return;
        d.busconfig(0, busdirection::out, 1);
        s().prgmode[1] = static_cast<std::uint8_t>(roundint32(n / 100.0));
    }
}

}  // namespace keld2
