// The string table: every text in every language, and the layouts that depend on its widths.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "platform/numbers.h"
#include "plugin/texts/table.h"

namespace keld2 {
namespace {

std::string shown(std::u16string_view text) { return utf8(std::u16string(text)); }

bool fullwidth(char16_t c) {
    return (c >= 0x1100 && c <= 0x115F) || (c >= 0x2E80 && c <= 0xA4CF) ||
           (c >= 0xAC00 && c <= 0xD7A3) || (c >= 0xFF01 && c <= 0xFF60);
}

int columns(std::u16string_view text) {
    int width = 0;
    for (const char16_t c : text) width += fullwidth(c) ? 2 : 1;
    return width;
}

// What stands before and behind a text joins it to others: blanks, marks and prefixes.
struct Ends {
    std::size_t leading, trailing;
    char16_t mark;
    bool report, hex;
    bool operator==(const Ends&) const = default;
};

Ends ends(const TextRow& row, std::u16string_view text) {
    const std::set<TextId> aligned{TextId::programmemory, TextId::idlocations, TextId::configword};
    const std::size_t last = text.find_last_not_of(u' ');
    const bool mark = text[last] == u'!' || text[last] == u':';
    return {.leading = aligned.contains(row.id) ? 0 : text.find_first_not_of(u' '),
            .trailing = text.size() - last,
            .mark = mark ? text[last] : u' ',
            .report = text.starts_with(u">>"),
            .hex = text.starts_with(u"H  ")};
}

TEST(Texts, EveryRowHasAFittingTextInEveryLanguage) {
    const std::set<TextId> international{TextId::ok, TextId::devicebuffer};
    for (const TextRow& row : texttable)
        for (const LanguageBlock& block : languageblocks) {
            const std::u16string_view t = text(row.id, block.offset);
            SCOPED_TRACE(std::to_string(static_cast<int>(row.id)) + ", " + std::string(block.name));
            ASSERT_NE(t.find_first_not_of(u' '), t.npos);
            EXPECT_EQ(t.find(u'\n'), t.npos);
            EXPECT_EQ(utf16(shown(t)), t) << "not well-formed";
            EXPECT_EQ(ends(row, t), ends(row, row.english));
            if (block.column != &TextRow::english && !international.contains(row.id)) {
                EXPECT_NE(t, row.english);
            }
        }
}

TEST(Texts, RowsAndBlocksAreInOrder) {
    EXPECT_EQ(std::ranges::adjacent_find(texttable, std::greater_equal<>{}, &TextRow::id),
              texttable.end());
    for (std::size_t i = 0; i < languageblocks.size(); ++i)
        EXPECT_EQ(languageblocks[i].offset, static_cast<std::int32_t>(3000 * i));
}

// The table of device and buffer ranges: three labels of one width below a two-column heading.
TEST(Texts, LogsLineUpInEveryLanguage) {
    for (const LanguageBlock& block : languageblocks) {
        for (const TextId id : {TextId::programmemory, TextId::idlocations, TextId::configword})
            EXPECT_EQ(columns(text(id, block.offset)), 15) << shown(text(id, block.offset));
        const std::u16string_view heading = text(TextId::devicebuffer, block.offset);
        EXPECT_EQ(columns(heading.substr(0, heading.find_last_of(u' ') + 1)), 16) << shown(heading);
        // The data notes of one log line and of the other say the same thing.
        for (const auto& [hex, plain] : {std::pair{TextId::hdevicedata, TextId::devicedata},
                                         std::pair{TextId::hbufferdata, TextId::bufferdata}})
            EXPECT_EQ(text(hex, block.offset).substr(3), text(plain, block.offset).substr(3));
    }
}

// A user must be able to tell operations, entries and notes apart in their own language.
TEST(Texts, AreDistinctWithinALanguage) {
    for (const LanguageBlock& block : languageblocks) {
        std::set<std::u16string_view> texts;
        for (const TextRow& row : texttable)
            EXPECT_TRUE(texts.insert(row.*block.column).second) << shown(row.*block.column);
    }
}

// A language is told from the others by its script; a text in the wrong column shows up here.
TEST(Texts, TextsAreWrittenInTheirLanguagesScript) {
    const auto has = [](std::u16string_view t, char16_t first, char16_t last) {
        return std::ranges::any_of(t, [=](char16_t c) { return c >= first && c <= last; });
    };
    for (const TextRow& row : texttable) {
        EXPECT_TRUE(has(row.simplified, 0x4E00, 0x9FFF)) << shown(row.simplified);
        EXPECT_TRUE(has(row.traditional, 0x4E00, 0x9FFF)) << shown(row.traditional);
        EXPECT_TRUE(has(row.korean, 0xAC00, 0xD7A3)) << shown(row.korean);
        EXPECT_TRUE(has(row.russian, 0x0400, 0x04FF)) << shown(row.russian);
        for (const TextColumn latin :
             {&TextRow::polish, &TextRow::italian, &TextRow::dutch, &TextRow::portuguese,
              &TextRow::turkish, &TextRow::hungarian})
            EXPECT_FALSE(has(row.*latin, 0x0370, 0xFFFF)) << shown(row.*latin);
    }
}

TEST(Texts, LookupByOffset) {
    struct Case {
        std::int32_t id, language;
        const char16_t* expected;
    };
    for (const Case& c :
         {Case{1068, 0, u"Cancel"}, Case{1068, 15000, u"Cancel"}, Case{1068, 12000, u"Anuluj"},
          Case{1068, 33000, u"Отмена"}, Case{2001, 18000, u"Lettura"}, Case{1066, 3000, u"警告! "},
          // offsets that name no block
          Case{1068, 36000, u"Cancel"}, Case{1068, 1, u"Cancel"}, Case{1068, 33001, u"Cancel"},
          Case{1068, -3000, u"Cancel"}, Case{1068, INT32_MIN, u"Cancel"},
          Case{1068, INT32_MAX, u"Cancel"},
          // ids that name no text
          Case{999, 0, u""}, Case{2025, 3000, u""}, Case{0, 0, u""}, Case{-1, 33000, u""}})
        EXPECT_EQ(text(c.id, c.language), c.expected) << c.id << " + " << c.language;
    EXPECT_EQ(text(TextId::erase, 15000), text(TextId::erase, 0));
}

}  // namespace
}  // namespace keld2
