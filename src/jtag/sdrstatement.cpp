#include "jtag/sdrstatement.h"

#include <algorithm>
#include <array>

#include "jtag/hexfield.h"
#include "jtag/svftext.h"
#include "platform/fault.h"

namespace keld2 {

namespace {

constexpr std::array exceptions92{
    DriveException{.fuses = 11529, .bits = 121},  DriveException{.fuses = 24481, .bits = 131},
    DriveException{.fuses = 52009, .bits = 274},  DriveException{.fuses = 115869, .bits = 313},
    DriveException{.fuses = 189969, .bits = 121}, DriveException{.fuses = 278721, .bits = 121},
};
constexpr std::array exceptions94{DriveException{.fuses = 0, .bits = 18}};

constexpr std::array replaywidths{34, 50, 82};  // bits
constexpr std::array<std::int32_t, 2> uncutmaskfuses{25809, 25813};
constexpr int furtherlines = 4;  // of a TDI field, between its first and its closing line
constexpr std::size_t keywordlength = 3;
constexpr std::size_t nowhere = std::string_view::npos;

// A statement on its way from text to value.
class SdrParser {
  public:
    SdrParser(SvfReader& reader, const SdrRules& rules, std::int32_t fuses, std::int32_t row,
              SdrStatement& statement)
        : reader_(reader), rules_(rules), fuses_(fuses), row_(row), out_(statement) {}

    void parse() {
        readhead();
        if (isexception()) return drive(popdata(fields_));
        if (!beginswith(fields_, "TDI")) throw RunFault("TDI expected behind the bit count", "SDR");
        out_.counted = false;
        const std::size_t tdo = rest_.find("TDO");
        if (fields_.ends_with(';'))
            parseoneline(tdo);
        else if (fields_.ends_with(')'))
            parseclosedtdi();
        else if (tdo == nowhere)
            parseopentdi();
        else
            parseopentdo(tdo);
    }

  private:
    // --- the first line ---

    void readhead() {
        const std::string_view line = Trim(reader_.svfline());
        rest_ = LTrim(line.substr(std::min(keywordlength, line.size())));
        const std::size_t t = requireword(rest_, "T");
        if (t == 0) throw RunFault("bit count expected", "SDR");
        out_.nbits = readint16(rest_.substr(0, t - 1));  // a blank stands before the T
        if (out_.nbits <= 0) throw RunFault("bit count expected to be 1 or more", "SDR");
        fields_ = LTrim(rest_.substr(t));
        out_.tdi.clear();
        out_.expect.clear();
        out_.mask.clear();
        out_.counted = false;
    }

    bool isexception() const {
        return std::ranges::any_of(rules_.drives, [this](const DriveException& e) {
            return e.bits == out_.nbits && (e.fuses == 0 || e.fuses == fuses_);
        });
    }

    bool isreplay() const {
        return rules_.replays && std::ranges::find(replaywidths, out_.nbits) != replaywidths.end();
    }

    // --- layouts ---

    void parseoneline(std::size_t tdo) {
        const std::string_view exact =
            rules_.replays ? fields_.substr(requireword(fields_, "TDI")) : fields_;
        const std::string_view tdi = popdata(exact);
        if (tdo == nowhere) return drive(popdata(fields_));
        if (rules_.replays) storetdi(tdi);
        const std::string_view remainder = rest_.substr(tdo);
        const std::size_t mask = remainder.find("MASK");
        read(tdi);
        store(popdata(remainder));
        if (mask != nowhere) storemask(popdata(remainder.substr(mask)));
    }

    void parseclosedtdi() {
        read(popdata(fields_));
        const std::string_view second = ClearTAB(Trim(reader_.read()));
        const std::string_view tdo = popdata(second);
        if (second.starts_with("TDO") && second.ends_with(';')) return store(tdo);
        const std::string_view third = Trim(reader_.read());
        storetogether(tdo, popdata(third.substr(requireword(third, "MASK"))));
    }

    void parseopentdi() {
        std::string tdi(Trim(fields_.substr(requireword(fields_, "(") + 1)));
        std::string_view line;
        for (int further = 0;; ++further) {
            line = Trim(reader_.readcounted());
            if (closesfield(line)) break;
            tdi += ClearTAB(line);
            if (further == furtherlines) {
                out_.kind = SdrStatement::Kind::givenup;
                return;
            }
        }
        if (line.ends_with(';')) return drive(tdi += ClearTAB(beforebracket(line)));
        const std::string_view tail = beforebracket(line);
        if (isreplay() && tail.find_first_not_of(" \t") != nowhere) tdi += ClearTAB(tail);
        read(tdi);
        parsefurtherfields();
    }

    // TDO, and perhaps MASK, on the lines behind a TDI field of several lines.
    void parsefurtherfields() {
        std::string tdo(Trim(reader_.readcounted()));
        if (holdsword(tdo, "TDO")) tdo = reader_.popMLinedata(tdo, SvfReader::Key::tdo);
        if (tdo.ends_with(';')) {
            std::string_view cleared = ClearTAB(tdo);
            cleared.remove_suffix(1);
            return store(cleared);
        }
        std::string mask(Trim(reader_.readcounted()));
        if (holdsword(mask, "MASK")) mask = reader_.popMLinedata(mask, SvfReader::Key::mask);
        storetogether(tdo, mask);
    }

    void parseopentdo(std::size_t tdo) {
        if (!rules_.unfinishedtdo) throw RunFault("TDO expected on a line of its own", "SDR");
        read(popdata(fields_));
        const std::size_t any = rest_.find("MASK");
        if (any == nowhere) return;  // a read without a row
        const std::size_t behind = rest_.find("MASK", tdo);
        const std::size_t mask = behind != nowhere ? behind : any;
        if (rest_[mask - 1] == 'S') return parsesmask(rest_.substr(tdo));
        if (behind == nowhere) throw RunFault("MASK expected behind TDO", "SDR");
        const std::string expected = reader_.popMLinedata(rest_.substr(tdo), SvfReader::Key::tdo);
        storetogether(expected, reader_.popMLinedata(rest_.substr(behind), SvfReader::Key::mask));
    }

    // The row of a statement whose first MASK is the one inside SMASK.
    void parsesmask(std::string_view first) {
        const std::string tdo = reader_.popMLinedata1(first, SvfReader::Key::tdo);
        const std::string_view keep = Trim(reader_.svfline());
        const std::string mask =
            reader_.popMLinedata1(keep.substr(requireword(keep, "MASK")), SvfReader::Key::mask);
        out_.counted = true;
        const bool whole = out_.nbits % 8 == 0;
        const bool uncut = std::ranges::find(uncutmaskfuses, fuses_) != uncutmaskfuses.end();
        if (!whole && (rules_.replays || uncut)) return;  // counted, but nothing is stored
        if (!rules_.replays && uncut) {
            decode(tdo, mask.size(), out_.expect);
            out_.mask.assign(out_.expect.size(), 255);
        } else {
            store(tdo);
            storemask(std::string_view(mask).substr(0, mask.find(')')));
        }
    }

    // --- values ---

    void drive(std::string_view tdi) {
        out_.kind = SdrStatement::Kind::drive;
        decodefield(tdi, tdi.size(), out_.nbits, Tail::drive, out_.tdi);
    }

    void read(std::string_view tdi) {
        out_.kind = isreplay() ? SdrStatement::Kind::replay : SdrStatement::Kind::read;
        if (isreplay()) decodefield(tdi, tdi.size(), out_.nbits / 8 * 8, Tail::drive, out_.tdi);
    }

    // The whole bytes of a one-line TDI have a place beside the row that the statement stores; a
    // drive stores no row, so it may be longer than one.
    void storetdi(std::string_view tdi) {
        checkrow(out_.nbits / 8);
        decodefield(tdi, tdi.size(), out_.nbits / 8 * 8, Tail::drive, out_.tdi);
    }

    // The expected bytes, all of them compared.
    void store(std::string_view tdo) {
        decode(tdo, tdo.size(), out_.expect);
        out_.mask.assign(out_.expect.size(), 255);
        out_.counted = true;
    }

    void storemask(std::string_view mask) { decode(mask, mask.size(), out_.mask); }

    // Both counted from the right end of the mask's text.
    void storetogether(std::string_view tdo, std::string_view mask) {
        decode(tdo, mask.size(), out_.expect);
        decode(mask, mask.size(), out_.mask);
        out_.counted = true;
    }

    void decode(std::string_view text, std::size_t length, std::vector<std::uint8_t>& bytes) {
        decodefield(text, length, out_.nbits, Tail::stored, bytes);
        checkrow(static_cast<std::int32_t>(bytes.size()));
    }

    void checkrow(std::int32_t bytes) const {
        if (bytes > rules_.limits.bytes)
            throw RunFault("row of " + std::to_string(bytes) + " bytes, expected " +
                               std::to_string(rules_.limits.bytes) + " at the most",
                           "SDR");
        if (row_ >= rules_.limits.rows)
            throw RunFault("more than " + std::to_string(rules_.limits.rows) + " rows", "SDR");
    }

    SvfReader& reader_;
    const SdrRules& rules_;
    std::int32_t fuses_;
    std::int32_t row_;
    SdrStatement& out_;
    std::string_view rest_;    // the line behind its keyword
    std::string_view fields_;  // the line from its first field on
};

}  // namespace

const SdrRules sdrrules80{};
const SdrRules sdrrules92{.drives = exceptions92};
const SdrRules sdrrules94{.drives = exceptions94, .replays = true};
const SdrRules sdrrules50{.unfinishedtdo = false, .limits = {.rows = 501, .bytes = 4001}};

void readsdr(SvfReader& reader, const SdrRules& rules, std::int32_t fuses, std::int32_t row,
             SdrStatement& statement) {
    SdrParser(reader, rules, fuses, row, statement).parse();
}

}  // namespace keld2
