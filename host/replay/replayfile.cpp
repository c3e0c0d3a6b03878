#include "host/replay/replayfile.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <optional>
#include <string>
#include <utility>

#include "host/files/files.h"
#include "host/files/hexbytes.h"
#include "host/hosterror.h"
#include "host/text/boxtext.h"

namespace keld2::host {

namespace {

constexpr std::string_view blanks = " \t\r";
constexpr std::size_t statuslength = 20;  // bytes of ibuf1

struct WrongLine {
    std::string wrong;
    std::string expected;
};

std::string quoted(std::string_view word) { return "\"" + std::string(word) + "\""; }

// The words of one line.
class Line {
  public:
    explicit Line(std::string_view text) : rest_(text.substr(0, text.find('#'))) { trim(); }

    bool empty() const { return rest_.empty(); }
    std::string_view word() {
        const std::size_t end = std::min(rest_.find_first_of(blanks), rest_.size());
        const std::string_view found = rest_.substr(0, end);
        rest_.remove_prefix(end);
        trim();
        return found;
    }
    bool star() {
        if (rest_ != "*" && !rest_.starts_with("* ") && !rest_.starts_with("*\t")) return false;
        (void)word();
        return true;
    }
    std::string_view remainder() { return std::exchange(rest_, {}); }
    void end() const {
        if (!rest_.empty()) throw WrongLine{quoted(rest_) + " stands behind the answer", "nothing"};
    }

  private:
    void trim() {
        rest_.remove_prefix(std::min(rest_.find_first_not_of(blanks), rest_.size()));
        rest_.remove_suffix(rest_.size() -
                            std::min(rest_.find_last_not_of(blanks) + 1, rest_.size()));
    }
    std::string_view rest_;
};

template <typename Number>
Number number(std::string_view word, Number least, Number most) {
    Number value = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error != std::errc{} || end != word.data() + word.size() || value < least || value > most)
        throw WrongLine{quoted(word) + " cannot be used",
                        "a number from " + std::to_string(least) + " to " + std::to_string(most)};
    return value;
}

std::vector<std::uint8_t> hexadecimal(std::string_view word, std::size_t most) {
    auto bytes = bytesfromhex(word);
    if (!bytes)
        throw WrongLine{quoted(word) + " is no hexadecimal text", "two digits for each byte"};
    if (bytes->size() > most)
        throw WrongLine{std::to_string(bytes->size()) + " bytes",
                        "at most " + std::to_string(most)};
    return std::move(*bytes);
}

TransferAnswer transferanswer(Line& line) {
    const std::string_view kind = line.word();
    if (kind == "fail") return {.well = false, .status = {}};
    if (kind == "ok") return {.well = true, .status = hexadecimal(line.word(), statuslength)};
    throw WrongLine{quoted(kind) + " is no answer of transferwait", "ok HEX or fail"};
}

BulkReadAnswer bulkreadanswer(Line& line, const std::filesystem::path& folder) {
    using Kind = BulkReadAnswer::Kind;
    const std::string_view kind = line.word();
    if (kind == "ok")
        return {.bytes = hexadecimal(line.word(), std::numeric_limits<std::size_t>::max())};
    if (kind == "fill") return {.bytes = {}, .rest = number<std::uint8_t>(line.word(), 0, 255)};
    if (kind == "file") {
        const std::string_view name = line.remainder();
        if (name.empty()) throw WrongLine{"the file's name is missing", "file PATH"};
        return {.bytes = readbytes(folder / filenamed(name))};
    }
    if (kind == "fail") return {.kind = Kind::failed, .bytes = {}};
    if (kind == "hang") return {.kind = Kind::hanging, .bytes = {}};
    throw WrongLine{quoted(kind) + " is no answer of usbbulkread",
                    "ok HEX, fill N, file PATH, fail or hang"};
}

BoxAnswer boxanswer(Line& line) {
    const std::string_view word = line.word();
    if (const auto answer = boxanswerof(word)) return *answer;
    throw WrongLine{quoted(word) + " is no answer of a box", "ok, cancel, abort, retry or ignore"};
}

class Reader {
  public:
    explicit Reader(std::filesystem::path folder) : folder_(std::move(folder)) {}

    void read(std::string_view text) {
        Line line(text);
        if (line.empty()) return;
        const std::string_view name = line.word();
        if (name == "stop") {
            replay_.stops.push_back(
                number<std::int64_t>(line.word(), 0, std::numeric_limits<std::int64_t>::max()));
        } else {
            readanswer(name, line);
        }
        line.end();
    }
    Replay take() {
        std::ranges::sort(replay_.stops);
        return std::move(replay_);
    }

  private:
    void readanswer(std::string_view name, Line& line) {
        const bool stays = line.star();
        if (Answers<int>* numbers = numbersof(name)) {
            const int least = name == "regread" ? 0 : std::numeric_limits<int>::min();
            const int most = name == "regread" ? 255 : std::numeric_limits<int>::max();
            numbers->add(number<int>(line.word(), least, most), stays);
        } else if (name == "transferwait") {
            replay_.transferwait.add(transferanswer(line), stays);
        } else if (name == "usbbulkread") {
            replay_.usbbulkread.add(bulkreadanswer(line, folder_), stays);
        } else if (name == "messagebox") {
            replay_.messagebox.add(boxanswer(line), stays);
        } else {
            throw WrongLine{quoted(name) + " is no operation with an answer",
                            "readycheck, modeselect, modeselect2, modeselect3, armready, regread, "
                            "transferwait, usbcomwrite, usbbulkwrite, usbbulkread, messagebox or "
                            "stop"};
        }
    }

    Answers<int>* numbersof(std::string_view name) {
        struct Row {
            std::string_view name;
            Answers<int> Replay::*answers;
        };
        static constexpr std::array rows{
            Row{"readycheck", &Replay::readycheck},   Row{"modeselect", &Replay::modeselect},
            Row{"modeselect2", &Replay::modeselect2}, Row{"modeselect3", &Replay::modeselect3},
            Row{"armready", &Replay::armready},       Row{"regread", &Replay::regread},
            Row{"usbcomwrite", &Replay::usbcomwrite}, Row{"usbbulkwrite", &Replay::usbbulkwrite},
        };
        for (const Row& row : rows)
            if (row.name == name) return &(replay_.*row.answers);
        return nullptr;
    }

    std::filesystem::path folder_;
    Replay replay_;
};

}  // namespace

Replay readreplay(const std::filesystem::path& path, const std::filesystem::path& folder) {
    const std::string text = readtext(path);
    Reader reader(folder);
    std::int64_t number = 0;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        ++number;
        try {
            reader.read(std::string_view(text).substr(at, end - at));
        } catch (const WrongLine& line) {
            throw HostError(exitstatus::data, path.string() + ":" + std::to_string(number) + ": " +
                                                  line.wrong + ", expected " + line.expected);
        }
        at = end + 1;
    }
    return reader.take();
}

}  // namespace keld2::host
