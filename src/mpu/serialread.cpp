// The serial family: start-up, id, read, verify, blank check and compare.
#include "mpu/serialmcu.h"

#include <algorithm>

namespace keld2 {

namespace {

constexpr std::int64_t configurationlength = 16;  // bytes behind the ID area in the image
constexpr std::int32_t framepause = 100;          // short ticks between the parts of a read frame

std::uint8_t low(std::int32_t a) { return static_cast<std::uint8_t>(a & 255); }
std::uint8_t high(std::int32_t a) { return static_cast<std::uint8_t>(a / 256 & 255); }

}  // namespace

void SerialMcu::familystartup() {
    DevCore& d = devcore();
    d.regwrite(10, 12);
    d.regwrite(0, 11);
    d.regwrite(0, 10);
    d.regwrite(0, 9);
    d.regwrite(2, 8);
    d.waitlong(100);
    d.regwrite(8, 7);
    d.regwrite(2, 6);
    d.waitshort(20);
    d.regwrite(66, 6);
    d.waitlong(100);
    d.setvpppin(s().bvpppin[0], 1);
    d.waitlong(100);
    port_.programmerdrives();
    d.regwrite(0, 4);
}

void SerialMcu::readid(Id& id) {
    port_.progenable();
    port_.send({serialcommand::framestart, serialcommand::readid, 255, 0});
    port_.chipdrives();
    port_.portselect();
    for (std::uint8_t& b : id) b = port_.readbyte();
    port_.programmerdrives();
    port_.portrelease();
}

std::int64_t SerialMcu::configurationarea() const {
    return std::int64_t{s().tlength[0]} - configurationlength;
}

std::int64_t SerialMcu::idarea() const { return configurationarea() - s().bvcch[0]; }

std::int64_t SerialMcu::cutlast() const { return std::min<std::int64_t>(last(), idarea() - 1); }

// Pages, addresses and the ID area's page are such that they lie in the buffer (up to bufferend)
// and in one read-back block.
bool SerialMcu::jobpossible(std::int64_t bufferend) const {
    const std::int16_t page = s().pagelength[0];
    return page >= 1 && first() >= 0 && last() >= 0 && cutlast() < readbackdata &&
           (first() > cutlast() || s().ibuffer.holds(first(), bufferend)) &&
           s().ibuffer.holds(idarea(), idarea() + page - 1);
}

bool SerialMcu::configurationpossible() const {
    return s().ibuffer.holds(configurationarea(), configurationarea() + 1);
}

bool SerialMcu::readpossible(int mode) const {
    return jobpossible(cutlast()) && (mode != 0 || configurationpossible());
}

bool SerialMcu::possible(std::int16_t op) const {
    if (reads(op)) return readpossible(readmode(op));
    if (op == operation::program) return programpossible();
    return op != operation::configuration || configurationpossible();
}

void SerialMcu::carryout(std::int16_t op) {
    if (reads(op)) serialread(readmode(op));
    if (op == operation::program) serialprogram();
    if (op == operation::erase) serialerase();
    if (op == operation::configuration) serialconfiguration();
}

void SerialMcu::serialread(int mode) {
    s().ubuflg[0] = usbblocklength;
    sendlistmode(run(), listmode::run);
    devcore().setvpppin(s().bvpppin[0], 1);
    port_.progenable();
    armreadback(run());
    const std::int32_t behind = queuereadlist();
    devcore().qrun();
    devcore().waitshort(20);
    armreadback(run());
    if (ubulkread0(run(), readbacklength) == status::goon && checkprogrammemory(mode) &&
        checkidarea(behind, mode) && mode == 0 &&
        checkconfiguration(serialcommand::readconfig0, configurationarea()))
        checkconfiguration(serialcommand::readconfig1, configurationarea() + 1);
    devcore().setvpppin(s().bvpppin[0], 0);
}

std::int32_t SerialMcu::queuereadlist() {
    DevCore& d = devcore();
    const std::int64_t end = cutlast();
    const std::int16_t page = s().pagelength[0];
    std::int32_t a = first();
    for (; a <= end; a += page) {
        if (a % 16 == 0) writepercent(s(), a);
        port_.qportselect();
        d.qwaitshort(framepause);
        port_.qprogrammerdrives();
        for (const std::uint8_t b :
             {serialcommand::framestart, serialcommand::readpage, high(a), low(a)}) {
            port_.qsendbyte(b);
            d.qwaitshort(framepause);
        }
        port_.qchipdrives();
        for (int i = 0; i < page; ++i) port_.qreadbyte();
        d.qwaitshort(framepause);
        port_.qportrelease();
        d.qwaitshort(framepause);
    }
    return a;
}

// The read-back is indexed by chip address.
bool SerialMcu::checkprogrammemory(int mode) {
    const std::int64_t end = cutlast();
    for (std::int32_t a = first(); a <= end; ++a)
        if (devcore().checkbyte(s().ibuf2[a], a, mode) == 1) return false;
    return true;
}

bool SerialMcu::checkidarea(std::int32_t a, int mode) {
    port_.qportselect();
    port_.qsend({serialcommand::framestart, serialcommand::readidarea, 255, low(a)});
    port_.qchipdrives();
    devcore().qrun();
    const std::int16_t page = s().pagelength[0];
    for (int i = 0; i < page; ++i) {
        const std::uint8_t b = port_.readbyte();
        if (devcore().checkbyte(b, static_cast<std::int32_t>(idarea() + i), mode) == 1)
            return false;
    }
    port_.programmerdrives();
    port_.portrelease();
    return true;
}

bool SerialMcu::checkconfiguration(std::uint8_t command, std::int64_t address) {
    port_.portselect();
    port_.send({serialcommand::framestart, command, 255, 255});
    port_.chipdrives();
    const std::uint8_t b = port_.readbyte();
    if (devcore().checkbyte(b, static_cast<std::int32_t>(address), 0) == 1) return false;
    port_.programmerdrives();
    port_.portrelease();
    return true;
}

}  // namespace keld2
