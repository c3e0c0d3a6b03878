#include "mpu/serialport.h"

namespace keld2 {

namespace {

constexpr std::uint8_t datareg = 4;
constexpr std::uint8_t directionreg = 5;
constexpr std::uint8_t controlreg = 6;

constexpr std::int32_t idle = 74;  // chip deselected
constexpr std::int32_t selected = 10;
constexpr std::int32_t strobehigh = 42;  // selected, strobe high

constexpr std::int32_t inward = 255;  // the chip drives the data byte
constexpr std::int32_t outward = 0;

constexpr std::int32_t settle = 10;  // short ticks behind each queued step

}  // namespace

void SerialPort::sendbyte(std::uint8_t b) {
    devcore_.regwrite(b, datareg);
    devcore_.regwrite(strobehigh, controlreg);
    devcore_.regwrite(selected, controlreg);
}

void SerialPort::send(std::initializer_list<std::uint8_t> bytes) {
    for (const std::uint8_t b : bytes) sendbyte(b);
}

void SerialPort::portselect() { devcore_.regwrite(selected, controlreg); }
void SerialPort::portrelease() { devcore_.regwrite(idle, controlreg); }
void SerialPort::chipdrives() { devcore_.regwrite(inward, directionreg); }
void SerialPort::programmerdrives() { devcore_.regwrite(outward, directionreg); }

std::uint8_t SerialPort::readbyte(Turn turn) {
    if (turn == Turn::beforeread) chipdrives();
    const std::uint8_t b = devcore_.regread(datareg);
    devcore_.regwrite(strobehigh, controlreg);
    devcore_.regwrite(selected, controlreg);
    if (turn == Turn::afterread) programmerdrives();
    return b;
}

void SerialPort::progenable() {
    portselect();
    send({serialcommand::framestart, serialcommand::enable, serialcommand::enableoperand});
    portrelease();
}

void SerialPort::qstep(std::int32_t value, std::uint8_t reg) {
    devcore_.qregwrite(value, reg);
    devcore_.qwaitshort(settle);
}

void SerialPort::qsendbyte(std::uint8_t b) {
    qstep(b, datareg);
    qstep(strobehigh, controlreg);
    qstep(selected, controlreg);
}

void SerialPort::qsend(std::initializer_list<std::uint8_t> bytes) {
    for (const std::uint8_t b : bytes) qsendbyte(b);
}

void SerialPort::qportselect() { devcore_.qregwrite(selected, controlreg); }
void SerialPort::qportrelease() { devcore_.qregwrite(idle, controlreg); }
void SerialPort::qchipdrives() { devcore_.qregwrite(inward, directionreg); }
void SerialPort::qprogrammerdrives() { devcore_.qregwrite(outward, directionreg); }

void SerialPort::qreadbyte(Turn turn) {
    if (turn == Turn::beforeread) qchipdrives();
    devcore_.qregread(datareg);
    devcore_.qwaitshort(settle);
    qstep(strobehigh, controlreg);
    qstep(selected, controlreg);
    if (turn == Turn::afterread) qprogrammerdrives();
}

}  // namespace keld2
