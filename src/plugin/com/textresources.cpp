// Writes the string table as a Windows resource script to standard output: one STRINGTABLE entry
// for each text of each language block, under its id + the block's offset. Runs on the machine
// that builds.
#include <iostream>
#include <string>

#include "platform/numbers.h"
#include "plugin/texts/table.h"

namespace {

// A text as a resource string: quotes and backslashes doubled or escaped.
std::string quoted(std::u16string_view text) {
    std::string out = "\"";
    for (const char c : keld2::utf8(std::u16string(text))) {
        if (c == '"') out += '"';
        if (c == '\\') out += '\\';
        out += c;
    }
    return out + '"';
}

}  // namespace

int main() {
    std::cout << "#pragma code_page(65001)\nSTRINGTABLE\nBEGIN\n";
    for (const keld2::LanguageBlock& block : keld2::languageblocks)
        for (const keld2::TextRow& row : keld2::texttable)
            std::cout << "  " << block.offset + static_cast<std::int32_t>(row.id) << ", "
                      << quoted(row.*block.column) << "\n";
    std::cout << "END\n";
    return std::cout.good() ? 0 : 1;
}
