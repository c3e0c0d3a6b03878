#include "host/run/hosttexts.h"

#include <array>

#include "shared/notes.h"
#include "shared/operations.h"

namespace keld2::host {

namespace {

struct LanguageRow {
    std::string_view code;
    std::int32_t offset;
};

constexpr std::array languages{
    LanguageRow{"en", 0},     LanguageRow{"zh-cn", 3000}, LanguageRow{"zh-tw", 6000},
    LanguageRow{"ko", 9000},  LanguageRow{"pl", 12000},   LanguageRow{"it", 18000},
    LanguageRow{"nl", 21000}, LanguageRow{"pt", 24000},   LanguageRow{"tr", 27000},
    LanguageRow{"hu", 30000}, LanguageRow{"ru", 33000}};

// By their index in prgnote.
constexpr std::array<std::u16string_view, note::count> notes{
    u"",                                      // before an operation's name
    u" ...",                                  // behind it
    u" OK",                                   // behind the name of one that ended well
    u" failed",                               //
    u">>Stopped",                             //
    u"Differences between chip and buffer:",  // first line of a compare's report
    u"   Address     Chip       Buffer",      // second line of that of an ARM device
    u"The chip is not blank. Go on?",         //
    u"Blank check",                           // title of that question
    u"Maker: ",                               //
    u"Device: ",                              //
    u"   Address     Chip       Buffer",      // second line of a compare's report
    u">>Transfer timed out"};

}  // namespace

std::optional<std::int32_t> languagenamed(std::string_view code) {
    for (const LanguageRow& row : languages)
        if (row.code == code) return row.offset;
    return std::nullopt;
}

std::string languagecodes() {
    std::string codes;
    for (const LanguageRow& row : languages)
        codes += (codes.empty() ? "" : ", ") + std::string(row.code);
    return codes;
}

void writetexts(SharedVariables& s, const Device& device, std::int32_t language) {
    s.Language[0] = language;
    for (std::size_t i = 0; i < notes.size(); ++i)
        s.prgnote[static_cast<std::int64_t>(i)] = notes[i];
    s.MainmnuPrg[operation::autoprogram] = text(TextId::autoprogram, language);
    for (const Operation* operation : device.operations)
        s.MainmnuPrg[operation->number] = text(operation->title, language);
}

}  // namespace keld2::host
