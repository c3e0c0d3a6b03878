// The serial family: program, erase and configuration. Every page is sent twice: once to load
// it, once with its address to write it.
#include "mpu/serialmcu.h"

namespace keld2 {

namespace {

constexpr std::uint8_t configuration0forerase = 250;

}  // namespace

bool SerialMcu::programpossible() const {
    const std::int64_t page = s().pagelength[0];
    if (page < 1) return false;
    const std::int64_t pages = (cutlast() - first()) / page + 1;
    return jobpossible(first() + pages * page - 1);  // whole pages are sent
}

void SerialMcu::serialprogram() {
    DevCore& d = devcore();
    const std::int32_t w = s().pwte[0];
    enablewithvpp();
    const std::int64_t end = cutlast();
    for (std::int32_t a = first(); a <= end; a += s().pagelength[0]) {
        if (a % 16 == 0) writepercent(s(), a);
        queuepage(serialcommand::loadpage, 0, a);
        queuepage(serialcommand::writepage, a, a);
        d.qwaitlong(w / 100);
        d.qrun();
    }
    d.qwaitlong(250);
    queuepage(serialcommand::loadpage, 0, idarea());
    queuepage(serialcommand::writeidarea, 0, idarea());
    d.qwaitlong(w / 1000);
    d.qrun();
    verifystages([this] { serialread(1); });
    d.qrun();
}

void SerialMcu::serialerase() {
    DevCore& d = devcore();
    const std::int32_t w = s().pwte[0];
    enablewithvpp();
    d.qwaitlong(100);
    queueconfiguration(serialcommand::writeconfig0, configuration0forerase);
    d.qwaitlong(w / 1000 * 2);
    d.qrun();
    d.waitshort(1000);
    restartchip();
    port_.qportselect();
    port_.qsend({serialcommand::framestart, serialcommand::erase});
    port_.qportrelease();
    d.qwaitlong(w / 100 * 2);
    d.qwaitlong(100);
    d.qrun();
    d.waitshort(1000);
    d.setvpppin(s().bvpppin[0], 0);
}

void SerialMcu::serialconfiguration() {
    DevCore& d = devcore();
    const std::int32_t w = s().pwte[0];
    enablewithvpp();
    d.qwaitlong(100);
    queueconfiguration(serialcommand::writeconfig0, s().ibuffer[configurationarea()]);
    d.qwaitlong(w / 1000 * 2);
    d.qrun();
    d.waitshort(1000);
    restartchip();
    queueconfiguration(serialcommand::writeconfig1, s().ibuffer[configurationarea() + 1]);
    d.qwaitlong(w / 1000 * 2);
    d.qrun();
    d.setvpppin(s().bvpppin[0], 0);
}

void SerialMcu::enablewithvpp() {
    devcore().setvpppin(s().bvpppin[0], 1);
    port_.progenable();
}

// A power cycle between the two steps of an erase or configuration. A start-up that is refused
// here does not end the operation.
void SerialMcu::restartchip() {
    devcore().setvpppin(s().bvpppin[0], 0);
    devcore().powerdown();
    hwstart();
    enablewithvpp();
    devcore().waitshort(100);
}

// One page of the buffer behind a command with address as operands.
void SerialMcu::queuepage(std::uint8_t command, std::int32_t address, std::int64_t from) {
    port_.qportselect();
    port_.qsend({serialcommand::framestart, command, static_cast<std::uint8_t>(address / 256 & 255),
                 static_cast<std::uint8_t>(address & 255)});
    const std::int16_t page = s().pagelength[0];
    for (int i = 0; i < page; ++i) port_.qsendbyte(s().ibuffer[from + i]);
    port_.qportrelease();
}

void SerialMcu::queueconfiguration(std::uint8_t command, std::uint8_t value) {
    port_.qportselect();
    port_.qsend({serialcommand::framestart, command, 0, 0, value});
    port_.qportrelease();
}

}  // namespace keld2
