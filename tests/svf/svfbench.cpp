#include "svf/svfbench.h"

#include <algorithm>

#include "platform/numbers.h"

namespace keld2::testing {

SvfBench::SvfBench(std::uint8_t family, std::int32_t fuses)
    : Script(0),
      PlatformDecorator(machine_),
      family_(findjtagfamily(family)),
      module_(*this, external()) {
    ClsKELD2(module_).bufcomkeld2(0);
    s().prgmode[0] = family;
    s().tlength[0] = fuses;
    s().bvccpin[0] = 40;
    s().prgnote[2] = u" OK";
    s().prgnote[3] = u" failed";
}

int SvfBench::play(const std::string& text) {
    file = text;
    return run(6);
}

int SvfBench::playtwo(const std::string& first, const std::string& second) {
    s().wautonum[0] = 2;
    s().autoprg[0] = s().autoprg[1] = 6;
    int texts = 0;
    onread = [&] { file = texts++ == 0 ? first : second; };
    const int result = run(0);
    onread = [] {};
    return result;
}

int SvfBench::run(int operation) {
    s().prgresult[1] = static_cast<std::uint8_t>(operation);
    s().MainRtstr[0] = u"";
    bulkreads = 0;
    if (devcore != nullptr) devcore->calls.clear();
    ClsKELD2(module_).runKeld2Prg(false);
    return s().prgresult[0];
}

std::size_t SvfBench::count(const std::string& call) const {
    return static_cast<std::size_t>(std::ranges::count(devcore->calls, call));
}

host::LogicDevice SvfBench::device() {
    return {.name = "bench",
            .family = family_->family,
            .fuses = s().tlength[0],
            .procedure = findsvfprocedure(family_->family),
            .wiring = family_};
}

std::vector<host::SvfMismatch> SvfBench::explained(const std::string& text) {
    host::ReadBack readback(bulk.size() + 4, Bytes(16385));  // 0 behind what is given
    for (std::size_t i = 0; i < bulk.size(); ++i)
        if (bulk[i]) std::ranges::copy(*bulk[i], readback[i].begin());
    return host::explainsvf(device(), text, readback).mismatches;
}

FileContent SvfBench::readfile(std::span<const std::u16string> parts) {
    onread();
    const bool named = parts.size() == 1 && parts[0] == u"pldtmp.svf";
    if (!named) return {};
    return {.status = FileContent::Status::read, .bytes = {file.begin(), file.end()}};
}

// The other lines of the register are there too.
std::uint8_t SvfBench::rawbyte(char bit) const {
    const std::uint8_t mask = family_->wiring.tdo.bits;
    return bit == '1' ? static_cast<std::uint8_t>(mask | (0x55 & ~mask))
                      : static_cast<std::uint8_t>(0xAA & ~mask);
}

Bytes SvfBench::packed(const Bits& bits) const {
    const std::size_t rest = bits.size() % 8 == 0 ? 8 : bits.size() % 8;
    Bytes bytes;
    for (std::size_t at = 0; at < bits.size() - rest; at += 8) {
        unsigned byte = 0;
        for (std::size_t i = 0; i < 8; ++i) byte |= (bits[at + i] == '1' ? 1U : 0U) << i;
        bytes.push_back(static_cast<std::uint8_t>(byte));
    }
    const Bytes last = raw(bits.substr(bits.size() - rest));
    bytes.insert(bytes.end(), last.begin(), last.end());
    return bytes;
}

Bytes SvfBench::raw(const Bits& bits) const {
    Bytes bytes;
    for (const char bit : bits) bytes.push_back(rawbyte(bit));
    return bytes;
}

std::string field(const Bits& bits) {
    std::string digits;
    for (std::size_t at = 0; at < (bits.size() + 7) / 8 * 8; at += 4) {
        unsigned digit = 0;
        for (std::size_t i = 0; i < 4 && at + i < bits.size(); ++i)
            digit |= (bits[at + i] == '1' ? 1U : 0U) << i;
        digits += "0123456789ABCDEF"[digit];
    }
    return {digits.rbegin(), digits.rend()};
}

std::string read(const Bits& bits) {
    const std::string expected = field(bits);
    return "SDR " + std::to_string(bits.size()) + " TDI (" + std::string(expected.size(), '0') +
           ") TDO (" + expected + ");\n";
}

}  // namespace keld2::testing
