#include "plugin/texts/texts.h"

#include <algorithm>

#include "plugin/texts/table.h"

namespace keld2 {

namespace {

constexpr std::int32_t blocksize = 3000;  // between the offsets of two languages

TextColumn columnof(std::int32_t language) {
    const std::int32_t block = language / blocksize;
    const bool known = language >= 0 && language % blocksize == 0 &&
                       block < static_cast<std::int32_t>(languageblocks.size());
    return languageblocks[known ? static_cast<std::size_t>(block) : 0].column;
}

}  // namespace

std::u16string_view text(TextId id, std::int32_t language) {
    const auto row = std::ranges::lower_bound(texttable, id, {}, &TextRow::id);
    if (row == texttable.end() || row->id != id) return {};
    return (*row).*columnof(language);
}

std::u16string_view text(std::int32_t id, std::int32_t language) {
    return text(static_cast<TextId>(id), language);
}

}  // namespace keld2
