// The string table: every text in every language, and the layouts that depend on its widths.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "platform/numbers.h"
#include "plugin/texts/table.h"

namespace keld2 {
namespace {

std::string shown(std::u16string_view text) { return utf8(std::u16string(text)); }

std::string place(const TextRow& row, const LanguageBlock& block) {
    return std::to_string(static_cast<int>(row.id)) + " in " + std::string(block.name);
}

bool fullwidth(char16_t c) {
    return (c >= 0x1100 && c <= 0x115F) || (c >= 0x2E80 && c <= 0xA4CF) ||
           (c >= 0xAC00 && c <= 0xD7A3) || (c >= 0xFF01 && c <= 0xFF60);
}

int columns(std::u16string_view text) {
    int width = 0;
    for (const char16_t c : text) width += fullwidth(c) ? 2 : 1;
    return width;
}

std::size_t leadingblanks(std::u16string_view text) {
    return std::min(text.find_first_not_of(u' '), text.size());
}

std::size_t trailingblanks(std::u16string_view text) {
    return text.size() - 1 - text.find_last_not_of(u' ');
}

template <typename Check>
void everytext(Check check) {
    for (const TextRow& row : texttable)
        for (const LanguageBlock& block : languageblocks)
            check(row, block, text(row.id, block.offset));
}

TEST(Texts, EveryRowHasATextInEveryLanguage) {
    everytext([](const TextRow& row, const LanguageBlock& block, std::u16string_view t) {
        EXPECT_FALSE(t.empty()) << place(row, block);
        EXPECT_EQ(t.find(u'\n'), t.npos) << place(row, block);
        EXPECT_EQ(utf16(shown(t)), t) << place(row, block) << ": not well-formed";
    });
}

TEST(Texts, RowsAndBlocksAreInOrder) {
    EXPECT_EQ(std::ranges::adjacent_find(texttable, std::greater_equal<>{}, &TextRow::id),
              texttable.end());
    for (std::size_t i = 0; i < languageblocks.size(); ++i)
        EXPECT_EQ(languageblocks[i].offset, static_cast<std::int32_t>(3000 * i));
}

// Texts are joined with others: the blanks and marks at their ends keep them apart.
TEST(Texts, EndsAreThoseOfTheEnglishText) {
    const std::set<TextId> aligned{TextId::programmemory, TextId::idlocations, TextId::configword};
    const std::u16string_view marks = u"!:";
    everytext([&](const TextRow& row, const LanguageBlock& block, std::u16string_view t) {
        const std::u16string_view english = row.english;
        if (!aligned.contains(row.id)) {
            EXPECT_EQ(leadingblanks(t), leadingblanks(english)) << place(row, block);
        }
        EXPECT_EQ(trailingblanks(t), trailingblanks(english)) << place(row, block);
        for (const std::u16string_view prefix : {u">>", u"H  "})
            EXPECT_EQ(t.starts_with(prefix), english.starts_with(prefix)) << place(row, block);
        const char16_t last = english[english.find_last_not_of(u' ')];
        if (marks.find(last) != marks.npos) {
            EXPECT_EQ(t[t.find_last_not_of(u' ')], last) << place(row, block);
        }
    });
}

// The table of device and buffer ranges: three labels of one width below a two-column heading.
TEST(Texts, RangeTableLinesUpInEveryLanguage) {
    for (const LanguageBlock& block : languageblocks) {
        for (const TextId id : {TextId::programmemory, TextId::idlocations, TextId::configword})
            EXPECT_EQ(columns(text(id, block.offset)), 15) << shown(text(id, block.offset));
        const std::u16string_view heading = text(TextId::devicebuffer, block.offset);
        EXPECT_EQ(columns(heading.substr(0, heading.find_last_of(u' ') + 1)), 16) << shown(heading);
    }
}

// The two data notes of one log line and of the other say the same thing.
TEST(Texts, NotesWithAndWithoutTheHexMarkAgree) {
    for (const LanguageBlock& block : languageblocks) {
        EXPECT_EQ(text(TextId::hdevicedata, block.offset).substr(3),
                  text(TextId::devicedata, block.offset).substr(3));
        EXPECT_EQ(text(TextId::hbufferdata, block.offset).substr(3),
                  text(TextId::bufferdata, block.offset).substr(3));
    }
}

// A user must be able to tell operations and entries apart in their own language.
TEST(Texts, NamesAreDistinctWithinALanguage) {
    for (const LanguageBlock& block : languageblocks) {
        std::set<std::u16string_view> names;
        const std::vector<TextId> ids{
            TextId::ok,      TextId::cancel,        TextId::stop,      TextId::enable,
            TextId::disable, TextId::autoprogram,   TextId::read,      TextId::verify,
            TextId::compare, TextId::blankcheck,    TextId::program,   TextId::secure,
            TextId::erase,   TextId::memoryprotect, TextId::progconfig};
        for (const TextId id : ids) names.insert(text(id, block.offset));
        EXPECT_EQ(names.size(), ids.size()) << block.name;
    }
}

TEST(Texts, TranslationsAreNotTheEnglishText) {
    const std::set<TextId> international{TextId::ok, TextId::devicebuffer};
    everytext([&](const TextRow& row, const LanguageBlock& block, std::u16string_view t) {
        if (block.column == &TextRow::english || international.contains(row.id)) return;
        EXPECT_NE(t, row.english) << place(row, block);
    });
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
