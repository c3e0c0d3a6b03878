#include "host/run/log_differences.h"

#include <algorithm>
#include <optional>
#include <sstream>
#include <string_view>

#include "platform/numbers.h"
#include "plugin/texts/texts.h"

namespace keld2::host {

namespace {

// A line that names a place, by the texts that stand ahead of its numbers.
struct PlaceTexts {
    std::string address, chip, buffer;
};

PlaceTexts placetexts(bool fuses, std::int32_t language) {
    const auto own = [language](TextId id) { return utf8(std::u16string(text(id, language))); };
    return {.address = own(TextId::deviceaddress),
            .chip = own(fuses ? TextId::devicedata : TextId::hdevicedata),
            .buffer = own(fuses ? TextId::bufferdata : TextId::hbufferdata)};
}

struct Number {
    std::uint64_t value = 0;
    std::size_t digits = 0;
};

// The number behind a text in a line.
std::optional<Number> numberbehind(const std::string& line, const std::string& text, int base) {
    const std::size_t at = line.find(text);
    if (at == std::string::npos) return {};
    const std::size_t first = line.find_first_not_of(' ', at + text.size());
    if (first == std::string::npos) return {};
    const std::size_t end = std::min(
        line.find_first_not_of(base == 16 ? "0123456789ABCDEF" : "0123456789", first), line.size());
    if (end == first || end - first > 8) return {};
    return Number{.value = std::stoull(line.substr(first, end - first), nullptr, base),
                  .digits = end - first};
}

// A place without what the buffer holds is that of a blank check.
void addplace(const std::string& line, const PlaceTexts& texts, bool fuses, Differences& found) {
    const int base = fuses ? 10 : 16;
    const auto address = numberbehind(line, texts.address, base);
    const auto chip = numberbehind(line, texts.chip, base);
    if (!address || !chip) return;
    const auto buffer = numberbehind(line, texts.buffer, base);
    const CellUnit unit = fuses              ? CellUnit::fuse
                          : chip->digits > 2 ? CellUnit::word
                                             : CellUnit::byte;
    const std::uint32_t blank = unit == CellUnit::word ? 0xFFFF : 0xFF;
    found = {.againstblank = !buffer};
    found.add({.unit = unit,
               .address = static_cast<std::int64_t>(address->value),
               .chip = static_cast<std::uint32_t>(chip->value),
               .expected = buffer ? static_cast<std::uint32_t>(buffer->value) : blank});
}

void addreported(const std::string& line, Differences& found) {
    Difference one{.unit = CellUnit::fuse};
    std::istringstream words(line.substr(2));
    if (!(words >> one.address >> one.chip >> one.expected)) return;
    if (!found.listed) found = {.listed = true};
    found.add(one);
}

}  // namespace

bool isdifference(const std::string& line) {
    return line.size() > 10 && line.starts_with(">> ") &&
           line.find_first_not_of("0123456789ABCDEF", 3) == 9 && line[9] == ' ';
}

Differences differences_in_log(const std::vector<std::string>& log, bool fuses,
                               std::int32_t language) {
    const PlaceTexts texts = placetexts(fuses, language);
    Differences found;
    for (const std::string& line : log) {
        if (fuses && isdifference(line)) addreported(line, found);
        if (!found.listed) addplace(line, texts, fuses, found);
    }
    return found;
}

}  // namespace keld2::host
