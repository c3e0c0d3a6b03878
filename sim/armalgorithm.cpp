#include "sim/armalgorithm.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <sstream>

namespace keld2::sim {

namespace {

constexpr std::string_view head = "keld2 simulated algorithm 1";
constexpr std::int32_t mostbytes = 1 << 28;
constexpr std::int32_t mosttime = 60'000'000;

struct OperationName {
    std::string_view name;
    std::uint8_t number;
};

// Of two names of one number the first is written.
constexpr std::array operationnames{
    OperationName{"auto", 0},  OperationName{"read", 2},    OperationName{"verify", 3},
    OperationName{"blank", 4}, OperationName{"compare", 5}, OperationName{"program", 6},
    OperationName{"erase", 8}, OperationName{"config", 9},  OperationName{"secure", 9}};

// The words of a text line by line, with messages that name the line.
class Reader {
  public:
    explicit Reader(const std::string& text) : text_(text) {}

    // The words of the next line that has any.
    bool next() {
        for (std::string line; std::getline(text_, line);) {
            ++number_;
            words_.clear();
            std::istringstream stream(line.substr(0, line.find('#')));
            for (std::string word; stream >> word;) words_.push_back(word);
            at_ = 1;
            if (!words_.empty()) return true;
        }
        return false;
    }
    const std::string& key() const { return words_[0]; }
    bool more() const { return at_ < words_.size(); }
    const std::string& word(const std::string& expected) {
        if (!more()) fail("the line ends", expected);
        return words_[at_++];
    }
    std::int32_t number(std::int32_t least, std::int32_t most) {
        const std::string expected =
            "a number from " + std::to_string(least) + " to " + std::to_string(most);
        const std::string& text = word(expected);
        std::int32_t value = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error != std::errc{} || end != text.data() + text.size() || value < least ||
            value > most)
            fail("\"" + text + "\"", expected);
        return value;
    }
    void end() const {
        if (more()) fail("\"" + words_[at_] + "\"", "the end of the line");
    }
    [[noreturn]] void fail(const std::string& wrong, const std::string& expected) const {
        throw AlgorithmError("line " + std::to_string(number_) + ": " + wrong + ", expected " +
                             expected);
    }

  private:
    std::istringstream text_;
    std::vector<std::string> words_;
    std::size_t at_ = 1;
    int number_ = 0;
};

ArmPhase phase(Reader& reader) {
    const std::string& word = reader.word("a phase: " + allphases());
    const std::optional<ArmPhase> phase = phasenamed(word);
    if (!phase) reader.fail("\"" + word + "\"", "a phase: " + allphases());
    return *phase;
}

std::uint8_t operationnumber(Reader& reader) {
    const std::string expected = "the name of an operation, or its number from 0 to 254";
    const std::string word = reader.word(expected);
    for (const OperationName& one : operationnames)
        if (one.name == word) return one.number;
    std::int32_t value = -1;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error != std::errc{} || end != word.data() + word.size() || value < 0 || value > 254)
        reader.fail("\"" + word + "\"", expected);
    return static_cast<std::uint8_t>(value);
}

ArmFamily family(Reader& reader) {
    const std::string& word = reader.word("A or B");
    if (word != "A" && word != "B") reader.fail("\"" + word + "\"", "A or B");
    return word == "A" ? ArmFamily::a : ArmFamily::b;
}

void setting(Reader& reader, ArmAlgorithm& a) {
    const std::string& key = reader.key();
    if (key == "family") {
        a.family = family(reader);
    } else if (key == "words") {
        a.words = reader.number(1, mostbytes);
        a.wordsize = reader.number(1, 2);
    } else if (key == "ram") {
        a.ram = reader.number(2, mostbytes);
    } else if (key == "bank") {
        a.bank = static_cast<std::uint8_t>(reader.number(0, 127));
    } else if (key == "margin") {
        a.margin = reader.number(0, 50);
    } else if (key == "configuration") {
        a.configuration = reader.number(0, 11);
    } else if (key == "operation") {
        auto& phases = a.operations[operationnumber(reader)];
        phases.clear();
        while (reader.more()) phases.push_back(phase(reader));
    } else if (key == "time") {
        const auto at = static_cast<std::size_t>(phase(reader));
        a.time[at] = reader.number(0, mosttime);
    } else {
        reader.fail("\"" + key + "\"",
                    "family, words, ram, bank, margin, configuration, operation or time");
    }
    reader.end();
}

std::string operationname(std::uint8_t number) {
    for (const OperationName& one : operationnames)
        if (one.number == number) return std::string(one.name);
    return std::to_string(number);
}

}  // namespace

ArmAlgorithm parsealgorithm(std::span<const std::uint8_t> image) {
    const std::string text(image.begin(), image.end());
    if (!text.starts_with(head))
        throw AlgorithmError("line 1: expected \"" + std::string(head) + "\"");
    Reader reader(text);
    reader.next();
    ArmAlgorithm algorithm;
    std::vector<std::string> seen;
    while (reader.next()) {
        seen.push_back(reader.key());
        setting(reader, algorithm);
    }
    for (const char* needed : {"family", "words", "ram"})
        if (std::find(seen.begin(), seen.end(), needed) == seen.end())
            throw AlgorithmError("end of the text: expected a line \"" + std::string(needed) +
                                 "\"");
    return algorithm;
}

std::string algorithmtext(const ArmAlgorithm& a) {
    std::ostringstream out;
    out << head << "\nfamily " << static_cast<char>(a.family) << "\nwords " << a.words << " "
        << a.wordsize << "\nram " << a.ram << "\nbank " << int{a.bank} << "\nmargin " << a.margin
        << "\nconfiguration " << a.configuration << "\n";
    for (const auto& [number, phases] : a.operations) {
        out << "operation " << operationname(number);
        for (const ArmPhase phase : phases) out << " " << phasename(phase);
        out << "\n";
    }
    for (std::size_t i = 0; i < armphases; ++i)
        if (a.time[i] != 0)
            out << "time " << phasename(static_cast<ArmPhase>(i)) << " " << a.time[i] << "\n";
    return out.str();
}

}  // namespace keld2::sim
