#include "jtag/sir.h"

#include <algorithm>
#include <charconv>
#include <string>

#include "jtag/svftext.h"
#include "platform/fault.h"

namespace keld2 {

namespace {

constexpr std::size_t keywordlength = 3;
constexpr std::int32_t idlepause = 50;  // short ticks

std::int16_t readvalue(std::string_view digits) {
    std::int16_t value = 0;
    const char* last = digits.data() + digits.size();
    const auto [end, error] = std::from_chars(digits.data(), last, value, 16);
    if (error != std::errc{} || end != last || digits.starts_with('-'))
        throw RunFault("value (" + std::string(digits) + "), expected 0 to 7FFF", "SIR");
    return value;
}

}  // namespace

SirStatement readsir(std::string_view line) {
    line = Trim(line);
    const std::string_view fields =
        Trim(ClearTAB(LTrim(line.substr(std::min(keywordlength, line.size())))));
    const std::string_view count = fields.substr(0, requireword(fields, "TDI"));
    return {.bits = readint16(ClearTAB(count)), .value = readvalue(popdata(line))};
}

void SIRdate(QueuedLines& lines, DevCore& devcore, const SirStatement& statement) {
    lines.shiftir(statement.bits, static_cast<std::uint32_t>(statement.value));
    if (!lines.family().sirtoidle) return;
    lines.tmslow();
    lines.tckpulse();
    devcore.qwaitshort(idlepause);
}

}  // namespace keld2
