#include "host/tell/printing.h"

#include <algorithm>
#include <iomanip>
#include <optional>
#include <ostream>

#include "host/tell/narrator.h"
#include "host/tell/words.h"

namespace keld2::host {

namespace {

constexpr int alllevels = 1000;

class Printer final : public Narration {
  public:
    Printer(int depth, std::ostream& out) : depth_(depth), out_(out) {}

    void operation(const std::string& words, std::int64_t line) override {
        print(line, 0, "operation " + words);
    }
    void step(Step step) override { printstep(step, 1); }

  private:
    void print(std::int64_t line, int level, const std::string& words) {
        out_ << std::setw(8) << line << "  "
             << std::string(static_cast<std::size_t>(2 * level), ' ') << words << '\n';
    }
    void printstep(const Step& step, int level) {
        if (level >= depth_) return;
        print(step.first, level, step.words);
        for (const Step& part : step.parts) printstep(part, level + 1);
    }

    int depth_;
    std::ostream& out_;
};

// Where a line of a trace lies: the operation, and the steps from the outermost to the line.
struct Place {
    std::string operation;
    std::vector<Step> steps;     // without their parts
    std::optional<Step> before;  // the step in front of the outermost
};

class PlaceFinder final : public Narration {
  public:
    explicit PlaceFinder(std::int64_t line) : line_(line) {}

    void operation(const std::string& words, std::int64_t line) override {
        if (line <= line_) place_.operation = words;
        if (line == line_)
            place_.steps = {{.words = "operation " + words, .first = line, .last = line}};
    }
    void step(Step step) override {
        if (!place_.steps.empty()) return;
        if (step.first <= line_ && line_ <= step.last && descend(step)) return;
        if (step.last < line_) place_.before = std::move(step);
    }
    const Place& place() const { return place_; }
    bool found() const { return !place_.steps.empty(); }

  private:
    bool descend(const Step& step) {
        if (step.first > line_ || line_ > step.last) return false;
        place_.steps.push_back({.words = step.words, .first = step.first, .last = step.last});
        std::ranges::any_of(step.parts, [this](const Step& part) { return descend(part); });
        return true;
    }

    std::int64_t line_;
    Place place_;
};

Place placeof(const std::filesystem::path& path, std::int64_t number, std::string& text) {
    PlaceFinder finder(number);
    Narrator narrator(finder, alllevels);
    TraceReader reader(path);
    while (const TraceLine* line = reader.next()) {
        if (line->number == number) text = line->text;
        narrator.take(*line);
        if (finder.found()) break;
    }
    narrator.finish();
    return finder.place();
}

// The number of the first line that differs; none when all are equal.
std::optional<std::int64_t> firstdifference(const std::filesystem::path& a,
                                            const std::filesystem::path& b) {
    TraceReader first(a), second(b);
    for (std::int64_t number = 1;; ++number) {
        const TraceLine* one = first.next();
        const TraceLine* other = second.next();
        if (one == nullptr && other == nullptr) return {};
        if (one == nullptr || other == nullptr || one->text != other->text) return number;
    }
}

void printplace(const Place& place, std::size_t from, char sign, const std::string& text,
                std::ostream& out) {
    for (std::size_t i = from; i < place.steps.size(); ++i) {
        const Step& step = place.steps[i];
        out << sign << std::setw(8) << step.first << "  " << std::string(2 * i, ' ') << step.words
            << '\n';
    }
    if (place.steps.empty())
        out << sign << "          the trace ends here\n";
    else
        out << sign << "          " << text << '\n';
}

}  // namespace

void showtrace(const std::filesystem::path& path, int depth, std::ostream& out) {
    Printer printer(depth, out);
    Narrator narrator(printer, std::max(depth - 2, 0));
    TraceReader reader(path);
    while (const TraceLine* line = reader.next()) narrator.take(*line);
    narrator.finish();
}

bool comparetraces(const std::filesystem::path& a, const std::filesystem::path& b,
                   std::ostream& out) {
    const auto number = firstdifference(a, b);
    if (!number) return true;
    std::string expected, actual;
    const Place one = placeof(a, *number, expected), other = placeof(b, *number, actual);
    out << "first difference: line " << *number << "\n- " << a.string() << "\n+ " << b.string()
        << '\n';
    if (!one.operation.empty()) out << "  in operation " << one.operation << '\n';
    if (one.before)
        out << ' ' << std::setw(8) << one.before->first << "  " << one.before->words << '\n';
    const auto samewords = [](const Step& x, const Step& y) {
        return x.words == y.words && x.first == y.first;
    };
    const auto end = std::ranges::mismatch(one.steps, other.steps, samewords).in1;
    const auto common = static_cast<std::size_t>(end - one.steps.begin());
    for (std::size_t i = 0; i < common; ++i)
        out << ' ' << std::setw(8) << one.steps[i].first << "  " << std::string(2 * i, ' ')
            << one.steps[i].words << '\n';
    printplace(one, common, '-', expected, out);
    printplace(other, common, '+', actual, out);
    return false;
}

}  // namespace keld2::host
