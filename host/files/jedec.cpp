#include "host/files/jedec.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <numeric>

#include "host/files/textrecords.h"

namespace keld2::host {

namespace {

constexpr char stx = 2;
constexpr char etx = 3;
constexpr char unset = '?';
constexpr std::uint32_t mostfuses = 1u << 24;
constexpr std::string_view passedover = "ADJPRSTVX";

bool isblank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

std::string withoutblanks(std::string_view text) {
    std::string out;
    std::copy_if(text.begin(), text.end(), std::back_inserter(out),
                 [](char c) { return !isblank(c); });
    return out;
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isblank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isblank(text.back())) text.remove_suffix(1);
    return text;
}

std::uint16_t bytesum(std::string_view text) {
    return static_cast<std::uint16_t>(
        std::accumulate(text.begin(), text.end(), 0u,
                        [](unsigned sum, char c) { return sum + static_cast<unsigned char>(c); }));
}

std::string bitsof(unsigned value, int count) {
    std::string bits;
    for (int i = count - 1; i >= 0; --i) bits += (value >> i & 1) != 0 ? '1' : '0';
    return bits;
}

// One field: its name, its content and the line in which it begins.
struct Field {
    std::string name;
    std::string_view content;
    std::size_t line = 0;
};

class Reader {
  public:
    Reader(std::string_view text, const std::string& name) : text_(text), name_(name) {}

    FuseMap read() {
        const std::size_t begin = text_.find(stx);
        if (begin == text_.npos) refusefile(name_, "no STX (character 2), which begins a fuse map");
        const std::size_t end = text_.find(etx, begin);
        if (end == text_.npos) refusefile(name_, "no ETX (character 3), which ends a fuse map");
        checktransmission(begin, end);
        walk(begin + 1, end);
        finish();
        return std::move(map_);
    }

  private:
    std::size_t lineat(std::size_t position) const {
        std::size_t line = 1;
        for (std::size_t i = 0; i < position; ++i)
            if (text_[i] == '\n' || (text_[i] == '\r' && text_.substr(i, 2) != "\r\n")) ++line;
        return line;
    }

    void checktransmission(std::size_t begin, std::size_t end) const {
        const std::string_view behind = trimmed(text_.substr(end + 1));
        const std::size_t line = lineat(end);
        unsigned stated = 0;
        const auto [stop, error] =
            std::from_chars(behind.data(), behind.data() + behind.size(), stated, 16);
        if (behind.size() != 4 || error != std::errc{} || stop != behind.data() + 4)
            refuseline(name_, line,
                       "\"" + std::string(behind.substr(0, 12)) +
                           "\" behind ETX, expected the transmission checksum, four hexadecimal "
                           "digits (0000 for none), and nothing more");
        const unsigned sum = bytesum(text_.substr(begin, end - begin + 1));
        if (stated != 0 && stated != sum)
            refuseline(name_, line,
                       "transmission checksum is " + hexdigits(stated, 4) + ", expected " +
                           hexdigits(sum, 4));
    }

    // The text up to the first '*' is the header; then come the fields.
    void walk(std::size_t position, std::size_t end) {
        bool header = true;
        std::size_t line = lineat(position);
        while (true) {
            while (position < end && isblank(text_[position])) line += linestep(position++);
            if (position == end) break;
            const std::size_t star = std::min(text_.find('*', position), end);
            if (star == end) refuseline(name_, line, "the last field does not end with '*'");
            const std::string_view content = text_.substr(position, star - position);
            if (header)
                map_.header = trimmed(content);
            else
                take(fieldof(content, line));
            header = false;
            for (; position <= star; ++position) line += linestep(position);
        }
    }
    std::size_t linestep(std::size_t position) const {
        return text_[position] == '\n' ||
                       (text_[position] == '\r' && text_.substr(position, 2) != "\r\n")
                   ? 1
                   : 0;
    }

    static Field fieldof(std::string_view content, std::size_t line) {
        const std::string_view two = content.substr(0, 2);
        constexpr std::array<std::string_view, 6> longnames{"QF", "QP", "QV", "UH", "UA", "EH"};
        const std::size_t length =
            std::find(longnames.begin(), longnames.end(), two) != longnames.end() ? 2 : 1;
        return {std::string(content.substr(0, length)),
                content.substr(std::min(length, content.size())), line};
    }

    [[noreturn]] void refuse(const Field& field, const std::string& message) const {
        refuseline(name_, field.line, "field " + field.name + ": " + message);
    }

    void take(const Field& field) {
        if (field.name.empty()) return;
        if (field.name == "N") return map_.notes.emplace_back(trimmed(field.content)), void();
        if (field.name == "QF") return takefusecount(field);
        if (field.name == "QP") return void(map_.pins = decimal(field));
        if (field.name == "QV") return void(decimal(field));
        if (field.name == "F") return void(default_ = state(field));
        if (field.name == "G") return void(map_.secured = state(field) == '1');
        if (field.name == "L") return takefuses(field);
        if (field.name == "C") return takechecksum(field);
        if (field.name[0] == 'U') return takeusercode(field);
        if (field.name[0] == 'E') return takeelectrical(field);
        if (passedover.find(field.name) == passedover.npos)
            refuseline(name_, field.line,
                       "field begins with " + shown(field.name[0]) +
                           ", expected a field name of a fuse map");
    }

    std::uint32_t decimal(const Field& field) const {
        const std::string_view digits = trimmed(field.content);
        std::uint32_t value = 0;
        const auto [stop, error] =
            std::from_chars(digits.data(), digits.data() + digits.size(), value);
        if (digits.empty() || error != std::errc{} || stop != digits.data() + digits.size())
            refuse(field,
                   "\"" + std::string(digits.substr(0, 20)) + "\", expected a decimal number");
        return value;
    }

    char state(const Field& field) const {
        const std::string_view value = trimmed(field.content);
        if (value != "0" && value != "1")
            refuse(field, "\"" + std::string(value.substr(0, 20)) + "\", expected 0 or 1");
        return value[0];
    }

    void takefusecount(const Field& field) {
        if (!map_.fuses.empty()) refuse(field, "given twice");
        const std::uint32_t count = decimal(field);
        if (count == 0 || count > mostfuses)
            refuse(field,
                   std::to_string(count) + " fuses, expected 1 to " + std::to_string(mostfuses));
        map_.fuses.assign(count, unset);
    }

    void needfusecount(const Field& field) const {
        if (map_.fuses.empty()) refuse(field, "stands before the number of fuses (QF)");
    }

    void takefuses(const Field& field) {
        needfusecount(field);
        std::string_view content = trimmed(field.content);
        std::uint32_t fuse = 0;
        const auto [stop, error] =
            std::from_chars(content.data(), content.data() + content.size(), fuse);
        const auto digits = static_cast<std::size_t>(stop - content.data());
        if (error != std::errc{} || digits == content.size() || !isblank(content[digits]))
            refuse(field, "\"" + std::string(content.substr(0, 20)) +
                              "\", expected a decimal fuse number, a blank and fuse states");
        content.remove_prefix(digits);
        std::size_t line = field.line;
        for (const char c : content) {
            if (c == '\n') ++line;
            if (!isblank(c)) setfuse({field.name, {}, line}, fuse++, c);
        }
    }

    void setfuse(const Field& field, std::uint32_t fuse, char value) {
        if (value != '0' && value != '1')
            refuse(field, "fuse " + std::to_string(fuse) + " has the state " + shown(value) +
                              ", expected 0 or 1");
        if (fuse >= map_.fuses.size())
            refuse(field, "fuse " + std::to_string(fuse) + " lies behind the last fuse " +
                              std::to_string(map_.fuses.size() - 1));
        if (map_.fuses[fuse] != unset)
            refuse(field, "fuse " + std::to_string(fuse) + " was already given");
        map_.fuses[fuse] = value;
    }

    void takechecksum(const Field& field) {
        needfusecount(field);
        const std::string_view digits = trimmed(field.content);
        unsigned value = 0;
        const auto [stop, error] =
            std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
        if (digits.size() != 4 || error != std::errc{} || stop != digits.data() + 4)
            refuse(field, "\"" + std::string(digits.substr(0, 20)) +
                              "\", expected four hexadecimal digits");
        checksum_ = value;
        checksumfield_ = field;
    }

    void takeusercode(const Field& field) {
        if (map_.usercode) refuse(field, "given twice");
        std::string bits;
        if (field.name == "UA") {
            for (const char c : field.content)
                if (c != '\r' && c != '\n') bits += bitsof(static_cast<unsigned char>(c), 8);
        } else if (field.name == "UH") {
            for (const char c : withoutblanks(field.content)) bits += bitsof(hexvalue(field, c), 4);
        } else {
            bits = withoutblanks(field.content);
            checkbits(field, bits);
        }
        if (bits.size() != usercodecells)
            refuse(field, "user code of " + counted(bits.size(), "bit") + ", expected 32");
        map_.usercode = bits;
    }

    unsigned hexvalue(const Field& field, char c) const {
        const int value = hexdigit(c);
        if (value < 0) refuse(field, shown(c) + ", expected a hexadecimal digit");
        return static_cast<unsigned>(value);
    }

    void checkbits(const Field& field, const std::string& bits) const {
        for (const char c : bits)
            if (c != '0' && c != '1') refuse(field, shown(c) + ", expected 0 or 1");
    }

    void takeelectrical(const Field& field) {
        const std::string content = withoutblanks(field.content);
        if (field.name == "EH")
            for (const char c : content) hexvalue(field, c);
        else
            checkbits(field, content);
        map_.electrical = field.name.substr(1) + content;
    }

    void finish() {
        if (map_.fuses.empty()) refusefile(name_, "no field QF, the number of fuses");
        if (default_ != unset) std::replace(map_.fuses.begin(), map_.fuses.end(), unset, default_);
        if (const std::size_t fuse = map_.fuses.find(unset); fuse != std::string::npos)
            refusefile(name_, "fuse " + std::to_string(fuse) +
                                  " is given in no field L, and there is no default (field F)");
        if (!checksum_) return;
        if (const std::uint16_t sum = fusechecksum(map_.fuses); *checksum_ != sum)
            refuse(checksumfield_, "fuse checksum is " + hexdigits(*checksum_, 4) + ", expected " +
                                       hexdigits(sum, 4));
    }

    std::string_view text_;
    const std::string& name_;
    FuseMap map_;
    char default_ = unset;
    std::optional<unsigned> checksum_;
    Field checksumfield_;
};

}  // namespace

std::uint16_t fusechecksum(std::string_view fuses) {
    unsigned sum = 0;
    for (std::size_t i = 0; i < fuses.size(); ++i)
        if (fuses[i] == '1') sum += 1u << (i % 8);
    return static_cast<std::uint16_t>(sum);
}

FuseMap readjedec(std::string_view text, const std::string& name) {
    return Reader(text, name).read();
}

std::string writejedec(const FuseMap& map) {
    constexpr std::size_t perline = 64;
    std::string out{stx};
    out += map.header + "*\n";
    for (const std::string& note : map.notes) out += "N " + note + "*\n";
    if (map.pins != 0) out += "QP" + std::to_string(map.pins) + "*\n";
    out += "QF" + std::to_string(map.fuses.size()) + "*\n";
    if (map.secured) out += std::string("G") + (*map.secured ? '1' : '0') + "*\n";
    const auto ones = std::count(map.fuses.begin(), map.fuses.end(), '1');
    const char usual = static_cast<std::size_t>(ones) * 2 >= map.fuses.size() ? '1' : '0';
    out += std::string("F") + usual + "*\n";
    for (std::size_t fuse = 0; fuse < map.fuses.size(); fuse += perline) {
        const std::string line = map.fuses.substr(fuse, perline);
        if (line.find_first_not_of(usual) == std::string::npos) continue;
        out += "L" + std::to_string(fuse) + " " + line + "*\n";
    }
    out += "C" + hexdigits(fusechecksum(map.fuses), 4) + "*\n";
    if (map.usercode) out += "U" + *map.usercode + "*\n";
    if (!map.electrical.empty()) out += "E" + map.electrical + "*\n";
    out += etx;
    return out + hexdigits(bytesum(out), 4) + "\n";
}

Image cellsof(const FuseMap& map) {
    std::string cells = map.fuses;
    if (map.usercode) cells += *map.usercode;
    Image image;
    image.segments.push_back({0, {cells.begin(), cells.end()}});
    image.header = map.header;
    return image;
}

}  // namespace keld2::host
