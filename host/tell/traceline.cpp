#include "host/tell/traceline.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <system_error>
#include <utility>

#include "host/hosterror.h"

namespace keld2::host {

namespace {

// Arguments by letters: i an integer, w bytes, a place or a name, * the rest of the line.
struct CallRow {
    std::string_view name;
    std::string_view arguments;
    Call call;
    bool answers = false;
};

constexpr CallRow calls[] = {
    {"qregwrite", "ii", Call::qregwrite},
    {"qregread", "i", Call::qregread},
    {"qwaitshort", "i", Call::qwaitshort},
    {"qbuswrite", "iii", Call::qbuswrite},
    {"regwrite", "ii", Call::regwrite},
    {"regread", "i", Call::regread, true},
    {"checkbyte", "iii", Call::checkbyte, true},
    {"buswrite", "iii", Call::buswrite},
    {"qwaitlong", "i", Call::qwaitlong},
    {"qbusconfig", "iii", Call::qbusconfig},
    {"busconfig", "iii", Call::busconfig},
    {"waitshort", "i", Call::waitshort},
    {"waitlong", "i", Call::waitlong},
    {"qrun", "", Call::qrun},
    {"setvcc", "i", Call::setvcc},
    {"setvpp", "ii", Call::setvpp},
    {"setgndpin", "ii", Call::setgndpin},
    {"setvccpin", "ii", Call::setvccpin},
    {"setvpppin", "ii", Call::setvpppin},
    {"drivercommit", "w", Call::drivercommit},
    {"powerdown", "", Call::powerdown},
    {"signalpass", "i", Call::signalpass},
    {"signalfail", "i", Call::signalfail},
    {"readycheck", "", Call::readycheck, true},
    {"readyfail", "", Call::readyfail},
    {"modeselect", "i", Call::modeselect, true},
    {"modeselect2", "ii", Call::modeselect2, true},
    {"modeselect3", "ii", Call::modeselect3, true},
    {"armready", "", Call::armready, true},
    {"checkword", "iiiii", Call::checkword, true},
    {"transferwait", "i", Call::transferwait, true},
    {"loadalgobuf", "i", Call::loadalgobuf},
    {"usbcomwrite", "iw", Call::usbcomwrite, true},
    {"usbbulkwrite", "wi", Call::usbbulkwrite, true},
    {"usbbulkread", "wi", Call::usbbulkread},
    {"messagebox", "w*", Call::messagebox, true},
    {"window", "w*", Call::window},
    {"progress", "i", Call::progress},
};

class LineParser {
  public:
    LineParser(std::string_view text, std::int64_t number, const std::string& file)
        : file_(file), left_(text) {
        line_.number = number;
        line_.text = text;
    }

    TraceLine parse() {
        const CallRow& row = rowof(nextword());
        line_.call = row.call;
        if (row.answers) takeanswer(row);
        std::size_t integers = 0;
        for (const char kind : row.arguments) {
            if (kind == 'i')
                line_.numbers.at(integers++) = integer(nextword(), row);
            else if (kind == 'w')
                line_.word = argument(row);
            else
                line_.rest = std::exchange(left_, {});
        }
        if (!left_.empty()) refuse("\"" + std::string(left_) + "\" is too much" + expected(row));
        return line_;
    }

  private:
    [[noreturn]] void refuse(const std::string& wrong) const {
        throw HostError(exitstatus::data,
                        file_ + ":" + std::to_string(line_.number) + ": " + wrong);
    }
    static std::string expected(const CallRow& row) {
        std::string text = ", expected " + std::string(row.name);
        for (const char kind : row.arguments)
            text += kind == 'i' ? " NUMBER" : kind == 'w' ? " WORD" : " ...";
        return text + (row.answers ? " -> ANSWER" : "");
    }
    const CallRow& rowof(std::string_view name) const {
        const auto* row = std::ranges::find(calls, name, &CallRow::name);
        if (row == std::end(calls))
            refuse("\"" + std::string(name.substr(0, 40)) +
                   "\" is no call, expected a line of a "
                   "trace such as \"setvcc 5000\"");
        return *row;
    }
    std::string_view nextword() {
        const std::size_t end = std::min(left_.find(' '), left_.size());
        const std::string_view word = left_.substr(0, end);
        left_.remove_prefix(std::min(end + 1, left_.size()));
        return word;
    }
    std::string_view argument(const CallRow& row) {
        const std::string_view word = nextword();
        if (word.empty()) refuse("an argument is missing" + expected(row));
        return word;
    }
    std::int32_t integer(std::string_view word, const CallRow& row) const {
        std::int32_t value = 0;
        const auto [end, error] = std::from_chars(word.begin(), word.end(), value);
        if (error != std::errc() || end != word.end())
            refuse("\"" + std::string(word) + "\" is no number" + expected(row));
        return value;
    }
    void takeanswer(const CallRow& row) {
        constexpr std::string_view arrow = "-> ";
        const std::size_t at = left_.rfind(arrow);
        if (at == left_.npos) refuse("the answer is missing" + expected(row));
        line_.answer = left_.substr(at + arrow.size());
        left_ = left_.substr(0, at == 0 ? 0 : at - 1);
        const bool inwords = row.call == Call::transferwait || row.call == Call::messagebox;
        if (!inwords) integer(line_.answer, row);
    }

    const std::string& file_;
    std::string_view left_;
    TraceLine line_;
};

}  // namespace

int TraceLine::answernumber() const {
    int value = 0;
    std::from_chars(answer.begin(), answer.end(), value);
    return value;
}

TraceLine parsetraceline(std::string_view text, std::int64_t number, const std::string& file) {
    return LineParser(text, number, file).parse();
}

bool isqueued(Call call) {
    switch (call) {
        case Call::qregwrite:
        case Call::qregread:
        case Call::qwaitshort:
        case Call::qwaitlong:
        case Call::qbuswrite:
        case Call::qbusconfig:
            return true;
        default:
            return false;
    }
}

TraceReader::TraceReader(const std::filesystem::path& path) : name_(path.string()) {
    errno = 0;
    if (std::filesystem::is_directory(path))
        errno = EISDIR;
    else
        file_.open(path, std::ios::binary);
    if (!file_.is_open())
        throw HostError(exitstatus::nofile,
                        name_ + ": cannot be opened: " + std::generic_category().message(errno));
}

const TraceLine* TraceReader::next() {
    if (!std::getline(file_, text_)) return nullptr;
    line_ = parsetraceline(text_, line_.number + 1, name_);
    return &line_;
}

}  // namespace keld2::host
