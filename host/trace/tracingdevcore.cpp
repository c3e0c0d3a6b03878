#include "host/trace/tracingdevcore.h"

#include "host/files/hexbytes.h"

namespace keld2::host {

namespace {

constexpr std::int64_t recordbegin = 4;  // the parameter record in ubuf1
constexpr std::size_t recordlength = 11;

}  // namespace

void TracingDevCore::setvcc(std::int32_t mv) {
    trace_.line("setvcc", mv);
    inner_->setvcc(mv);
}

void TracingDevCore::setvpp(std::int32_t mv, std::uint8_t channel) {
    trace_.line("setvpp", mv, channel);
    inner_->setvpp(mv, channel);
}

void TracingDevCore::setgndpin(std::uint8_t pin, std::uint8_t on) {
    trace_.line("setgndpin", pin, on);
    inner_->setgndpin(pin, on);
}

void TracingDevCore::setvccpin(std::uint8_t pin, std::uint8_t on) {
    trace_.line("setvccpin", pin, on);
    inner_->setvccpin(pin, on);
}

void TracingDevCore::setvpppin(std::uint8_t pin, std::uint8_t on) {
    trace_.line("setvpppin", pin, on);
    inner_->setvpppin(pin, on);
}

void TracingDevCore::drivercommit() {
    (void)s_.ubuf1[recordbegin + static_cast<std::int64_t>(recordlength) - 1];
    trace_.line("drivercommit", hexfrombytes({s_.ubuf1.data() + recordbegin, recordlength}));
    inner_->drivercommit();
}

void TracingDevCore::powerdown() {
    trace_.line("powerdown");
    inner_->powerdown();
}

void TracingDevCore::signalpass(std::uint8_t zero) {
    trace_.line("signalpass", zero);
    inner_->signalpass(zero);
}

void TracingDevCore::signalfail(std::uint8_t zero) {
    trace_.line("signalfail", zero);
    inner_->signalfail(zero);
}

int TracingDevCore::readycheck() {
    const int answer = inner_->readycheck();
    trace_.line("readycheck", "->", answer);
    return answer;
}

void TracingDevCore::readyfail() {
    trace_.line("readyfail");
    inner_->readyfail();
}

int TracingDevCore::modeselect(std::uint8_t mode) {
    const int answer = inner_->modeselect(mode);
    trace_.line("modeselect", mode, "->", answer);
    return answer;
}

int TracingDevCore::modeselect2(std::uint8_t mode, int second) {
    const int answer = inner_->modeselect2(mode, second);
    trace_.line("modeselect2", mode, second, "->", answer);
    return answer;
}

int TracingDevCore::modeselect3(std::uint8_t mode, int second) {
    const int answer = inner_->modeselect3(mode, second);
    trace_.line("modeselect3", mode, second, "->", answer);
    return answer;
}

int TracingDevCore::armready() {
    const int answer = inner_->armready();
    trace_.line("armready", "->", answer);
    return answer;
}

void TracingDevCore::regwrite(std::int32_t value, std::uint8_t reg) {
    trace_.line("regwrite", value, reg);
    inner_->regwrite(value, reg);
}

void TracingDevCore::qregwrite(std::int32_t value, std::uint8_t reg) {
    trace_.line("qregwrite", value, reg);
    inner_->qregwrite(value, reg);
}

std::uint8_t TracingDevCore::regread(std::uint8_t reg) {
    const std::uint8_t answer = inner_->regread(reg);
    trace_.line("regread", reg, "->", answer);
    return answer;
}

void TracingDevCore::qregread(std::uint8_t reg) {
    trace_.line("qregread", reg);
    inner_->qregread(reg);
}

void TracingDevCore::waitshort(std::int32_t n) {
    trace_.line("waitshort", n);
    inner_->waitshort(n);
}

void TracingDevCore::qwaitshort(std::int32_t n) {
    trace_.line("qwaitshort", n);
    inner_->qwaitshort(n);
}

void TracingDevCore::waitlong(std::int32_t n) {
    trace_.line("waitlong", n);
    inner_->waitlong(n);
}

void TracingDevCore::qwaitlong(std::int32_t n) {
    trace_.line("qwaitlong", n);
    inner_->qwaitlong(n);
}

void TracingDevCore::qrun() {
    trace_.line("qrun");
    inner_->qrun();
}

void TracingDevCore::buswrite(std::int32_t address, std::uint8_t data, std::uint8_t control) {
    trace_.line("buswrite", address, data, control);
    inner_->buswrite(address, data, control);
}

void TracingDevCore::qbuswrite(std::int32_t address, std::uint8_t data, std::uint8_t control) {
    trace_.line("qbuswrite", address, data, control);
    inner_->qbuswrite(address, data, control);
}

void TracingDevCore::busconfig(std::int32_t zero, std::uint8_t direction, std::uint8_t mode) {
    trace_.line("busconfig", zero, direction, mode);
    inner_->busconfig(zero, direction, mode);
}

void TracingDevCore::qbusconfig(std::int32_t zero, std::uint8_t direction, std::uint8_t mode) {
    trace_.line("qbusconfig", zero, direction, mode);
    inner_->qbusconfig(zero, direction, mode);
}

int TracingDevCore::checkbyte(std::int16_t value, std::int32_t address, int mode) {
    const int answer = inner_->checkbyte(value, address, mode);
    trace_.line("checkbyte", value, address, mode, "->", answer);
    return answer;
}

int TracingDevCore::checkword(std::uint8_t low, std::uint8_t high, std::int32_t address, int mode,
                              int blank) {
    const int answer = inner_->checkword(low, high, address, mode, blank);
    trace_.line("checkword", low, high, address, mode, blank, "->", answer);
    return answer;
}

bool TracingDevCore::transferwait(std::uint8_t count) {
    const bool well = inner_->transferwait(count);
    trace_.line("transferwait", count, "->", well ? "true" : "false");
    return well;
}

void TracingDevCore::loadalgobuf(std::int32_t& length) {
    trace_.line("loadalgobuf", length);
    inner_->loadalgobuf(length);
}

}  // namespace keld2::host
