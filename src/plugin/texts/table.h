// The rows of the string table: one source for the table in the library and for the resources of
// the Windows library.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "plugin/texts/texts.h"

namespace keld2 {

// One text in all languages. Blanks at both ends belong to the layouts that the texts stand in;
// so do the prefixes ">>" and "H  ". A full-width character takes two columns.
struct TextRow {
    TextId id;
    std::u16string_view english;
    std::u16string_view simplified;   // Chinese
    std::u16string_view traditional;  // Chinese
    std::u16string_view korean;
    std::u16string_view polish;
    std::u16string_view italian;
    std::u16string_view dutch;
    std::u16string_view portuguese;
    std::u16string_view turkish;
    std::u16string_view hungarian;
    std::u16string_view russian;
};

using TextColumn = std::u16string_view TextRow::*;

// A language block: offset is what Language[0] holds.
struct LanguageBlock {
    std::int32_t offset;
    std::string_view name;
    TextColumn column;
};

inline constexpr std::size_t textcount = 33;
extern const std::array<LanguageBlock, 12> languageblocks;  // by rising offset, every 3000
extern const std::array<TextRow, textcount> texttable;      // by rising id

}  // namespace keld2
