// The parallel families: start-up, read, verify, blank check and compare.
#include <algorithm>
#include <array>

#include "mpu/parallelbus.h"
#include "mpu/parallelmcu.h"

namespace keld2 {

namespace {

struct BaseRow {
    std::int32_t uptolength;  // tlength[0] up to here, inclusive
    std::int32_t base;
};

constexpr std::array baserows{
    BaseRow{.uptolength = 0x40000, .base = 0x1C0000},
    BaseRow{.uptolength = 0x60000, .base = 0x180000},
    BaseRow{.uptolength = 0x7FFFFFFF, .base = 0x100000},
};

constexpr std::int32_t fastblock = 32768;  // bytes
constexpr std::int32_t fastunit = 64;      // the programmer reads whole units
constexpr int fasttries = 10;
constexpr std::uint8_t fastregister = 61;
constexpr std::uint8_t parallelblockread = 9;  // ubuf1[1] of a fast block read

constexpr std::uint8_t controlregister = 6;
constexpr std::int32_t resethigh = 16;

std::uint8_t byteat(std::int32_t value, int shift) {
    return static_cast<std::uint8_t>(value >> shift & 255);
}

}  // namespace

void ParallelMcu::familystartup() {
    DevCore& d = devcore();
    const auto pause = [&d](int times) {
        for (int i = 0; i < times; ++i) d.waitshort(1000);
    };
    for (const std::uint8_t r : std::array<std::uint8_t, 10>{1, 3, 5, 7, 9, 0, 2, 4, 6, 8})
        d.regwrite(0, r);
    pause(1);
    d.setvccpin(s().bvccpin[0], 0);
    pause(3);
    d.setvccpin(s().bvccpin[0], 1);
    d.regwrite(resethigh, controlregister);
    pause(5);
    d.regwrite(0, controlregister);
    pause(4);
    d.regwrite(resethigh, controlregister);
    pause(1);
    d.busconfig(0, busdirection::in, 0);
    pause(1);
    d.buswrite(parking::startup, 255, 7);
}

std::int32_t ParallelMcu::base() const {
    return std::ranges::find_if(
               baserows,
               [length = s().tlength[0]](const BaseRow& row) { return length <= row.uptolength; })
        ->base;
}

std::int32_t ParallelMcu::fastbase() const { return s().tlength[0] < 0x80000 ? 0x1C0000 : 0x80000; }

// Chip addresses are buffer addresses for every byte that is read.
bool ParallelMcu::readpossible() const {
    return first() >= 0 && last() >= 0 && (first() > last() || s().ibuffer.holds(first(), last()));
}

void ParallelMcu::parallelread(int mode) {
    DevCore& d = devcore();
    d.busconfig(0, busdirection::in, 1);
    d.buswrite(parking::read, 255, buscontrol::idle);
    d.waitshort(200);
    const std::int32_t firstblock = first() / readbackdata;
    const std::int32_t lastblock = last() / readbackdata;
    for (std::int32_t b = firstblock; b <= lastblock; ++b) {
        const std::int32_t from = b == firstblock ? first() : b * readbackdata;
        const std::int32_t to = b == lastblock ? last() : (b + 1) * readbackdata - 1;
        if (!queuereadblock(from, to)) break;
        d.qrun();
        d.waitshort(20);
        armreadback(run());
        if (ubulkread2(run(), readbacklength) != status::goon) {
            if (!stopasked()) s().prgresult.release(0, result::timedout);
            break;
        }
        if (!checkblock(from, to, mode)) break;
        d.waitshort(100);
    }
    d.qrun();
}

// Chip addresses from to to, with the command that turns the chip to reading. False after a stop.
bool ParallelMcu::queuereadblock(std::int32_t from, std::int32_t to) {
    DevCore& d = devcore();
    const std::int32_t high = base();
    armreadback(run());
    d.qbusconfig(0, busdirection::out, 1);
    d.qbuswrite(high, buscommand::read, buscontrol::enabled);
    d.qwaitshort(10);
    d.qbuswrite(high, buscommand::read, buscontrol::writestrobe);
    d.qwaitshort(10);
    d.qbuswrite(high, buscommand::read, buscontrol::enabled);
    d.qbusconfig(0, busdirection::in, 1);
    d.qwaitshort(50);
    for (std::int32_t a = from; a <= to; ++a) {
        d.qbuswrite(a | high, 0, buscontrol::readstrobe);
        d.qwaitshort(200);
        d.qregread(datareadregister);
        d.qbuswrite(a | high, 0, buscontrol::enabled);
        if (a % 256 != 0) continue;
        writepercent(s(), a);
        service();
        if (stopasked()) return false;
    }
    return true;
}

bool ParallelMcu::checkblock(std::int32_t from, std::int32_t to, int mode) {
    for (std::int32_t a = from; a <= to; ++a)
        if (devcore().checkbyte(s().ibuf2[a - from], a, mode) == 1) return false;
    return true;
}

void ParallelMcu::fastread(int mode) {
    DevCore& d = devcore();
    d.regwrite(255, fastregister);
    d.busconfig(0, busdirection::in, 1);
    d.buswrite(parking::read, 255, buscontrol::enabled);
    d.waitshort(200);
    const std::int32_t firstblock = first() / fastblock;
    const std::int32_t lastblock = last() / fastblock;
    for (std::int32_t b = firstblock; b <= lastblock; ++b) {
        const std::int32_t from = b == firstblock ? first() : b * fastblock;
        const std::int32_t to = b == lastblock ? last() : (b + 1) * fastblock - 1;
        const std::int32_t count = (to % fastblock + fastunit) / fastunit * fastunit;
        if (!fetchfastblock(from, count) || !checkblock(from, to, mode)) break;
        writepercent(s(), to);
        service();
        if (stopasked()) break;
        d.waitshort(100);
    }
    s().usbpip2readresult.release(0, 0);
}

// count bytes and an end byte; the request is sent anew for each try.
bool ParallelMcu::fetchfastblock(std::int32_t from, std::int32_t count) {
    SharedVariables& v = s();
    const std::int32_t address = from | fastbase();
    for (int attempt = 0; attempt < fasttries; ++attempt) {
        v.ubuf1[0] = framekind::fastblock;
        v.ubuf1[1] = parallelblockread;
        v.ubuf1[2] = 0;
        v.ubuf1[3] = byteat(address, 8);
        v.ubuf1[4] = byteat(address, 16);
        v.ubuf1[5] = byteat(count, 0);
        v.ubuf1[6] = byteat(count, 8);
        v.ubuf1[7] = byteat(count, 16);
        sendframe(run(), 14);
        if (ubulkread2(run(), count + 1) == status::goon) return true;
        if (stopasked()) return false;
    }
    v.prgresult.release(0, result::timedout);
    return false;
}

void ParallelMcu::buspulse(std::int32_t address, std::uint8_t data) {
    devcore().buswrite(address, data, buscontrol::writestrobe);
    devcore().buswrite(address, data, buscontrol::enabled);
}

// What every erase writes before its closing blank check.
void ParallelMcu::announceblankcheck() {
    const std::u16string name = s().MainmnuPrg[operation::blankcheck];
    appendheadline(s(), name);
    caption(headline(s(), name));
}

// A fresh chip between the writing of a program and its verify.
void ParallelMcu::restartforverify() {
    DevCore& d = devcore();
    d.setvpppin(s().bvpppin[0], 0);
    d.setvpp(s().bvcc[0] * 10, 0);
    d.waitshort(100);
    d.powerdown();
    d.waitshort(100);
    hwstart();
    d.waitshort(100);
}

// VPP off the chip after an erase.
void ParallelMcu::endpulses() {
    s().prgmode[1] = 0;
    if (s().bvpppin[0] > 0) devcore().setvpppin(s().bvpppin[0], 0);
    devcore().setvpp(s().bvcc[0] * 10, 0);
}

}  // namespace keld2
