// Tables of runs that differ in little. A folder below tests/data/cases holds
//   job.toml       the job that its cases share
//   replay.txt     what the programmer answers first in each of them; it may be missing
//   without.txt    kinds of lines that are left out of the traces; it may be missing
//   digest.txt     kinds of lines of which a run of lines is told by its length and checksum
//   NAME.cases     cases
//   NAME.expected  and what comes of them
// and further files, which are laid into the folder of each run. A case begins with "== WHAT IT
// SHOWS"; behind it stand
//   KEY = VALUE         in place of the job's own line, or beside the others of [shared]
//   file PATH BYTES...  lays a file: bytes in hexadecimal, or COUNT*BYTES
//   nofile PATH         takes one away
//   ["ok"]              an action in an editor; [] begins those of the next one
//   anything else       a further line of the replay
// What comes of a case is what its editors show that they have not shown before, its trace, the
// exit status, and what the run has changed in the blocks.
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <sstream>

#include "common/kept.h"
#include "common/madefolder.h"
#include "host/files/hexbytes.h"
#include "host/files/textrecords.h"
#include "host/forms/formfrontend.h"
#include "host/job/session.h"

namespace {

using namespace keld2::host;
using keld2::test::linesof;
namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

const fs::path& root() {
    static const fs::path path = KELD2_TEST_CASES;
    return path;
}

// FOLDER/NAME
Lines tables() {
    Lines names;
    for (const auto& entry : fs::recursive_directory_iterator(root()))
        if (entry.path().extension() == ".cases")
            names.push_back(
                fs::relative(entry.path(), root()).replace_extension().generic_string());
    std::sort(names.begin(), names.end());
    return names;
}

struct Case {
    std::string what;
    Lines lines;
};

std::vector<Case> casesof(const fs::path& path) {
    std::vector<Case> cases;
    for (const std::string& line : linesof(path)) {
        if (line.starts_with("== "))
            cases.push_back({line.substr(3), {}});
        else if (!line.empty() && line[0] != '#')
            cases.at(cases.size() - 1).lines.push_back(line);
    }
    return cases;
}

// Hexadecimal bytes and COUNT*BYTES, with blanks between.
std::string bytesof(const std::string& text) {
    std::istringstream words(text);
    std::string all;
    for (std::string word; words >> word;) {
        const std::size_t star = word.find('*');
        const auto bytes = bytesfromhex(word.substr(star == word.npos ? 0 : star + 1)).value();
        for (int left = star == word.npos ? 1 : std::stoi(word); left > 0; --left)
            all.append(bytes.begin(), bytes.end());
    }
    return all;
}

std::uint64_t checksum(std::uint64_t sum, const std::string& line) {  // FNV-1a
    for (const char c : line + "\n") sum = (sum ^ static_cast<unsigned char>(c)) * 0x100000001B3ULL;
    return sum;
}

// Runs of lines of some kinds as "... 5321 lines, 0123456789abcdef".
Lines digested(const Lines& trace, const Lines& kinds) {
    constexpr std::uint64_t begin = 0xCBF29CE484222325ULL;
    Lines told;
    std::size_t count = 0;
    std::uint64_t sum = begin;
    const auto endrun = [&] {
        if (count == 0) return;
        told.back() += std::to_string(std::exchange(count, 0)) + " lines, " +
                       hexdigits(std::exchange(sum, begin), 16);
    };
    for (const std::string& line : trace) {
        const std::string kind = line.substr(0, line.find(' '));
        if (std::find(kinds.begin(), kinds.end(), kind) == kinds.end()) {
            endrun();
            told.push_back(line);
            continue;
        }
        if (count++ == 0) told.push_back("... ");
        sum = checksum(sum, line);
    }
    endrun();
    return told;
}

// One case in a folder of its own.
class CaseRun {
  public:
    using Shown = std::map<std::string, nlohmann::ordered_json>;  // by windows

    // shown: what the editors have shown in the table so far.
    CaseRun(const fs::path& table, const Case& one, Shown& shown) : shown_(shown) {
        copyfiles(table);
        Lines job = linesof(table / "job.toml");
        std::string replay, form;
        if (fs::exists(table / "replay.txt")) replay = readtext(table / "replay.txt");
        for (const std::string& line : one.lines) {
            if (line.starts_with("["))
                form += (line == "[]" ? "" : line) + "\n";
            else if (line.find(" = ") != line.npos)
                change(job, line);
            else if (line.starts_with("file ") || line.starts_with("nofile "))
                layfile(line);
            else
                replay += line + "\n";
        }
        std::string text;
        for (const std::string& line : job) text += line + "\n";
        made_.file("job.toml", text);
        made_.file("replay.txt", replay);
        if (!form.empty()) forms_ = makefrontend(made_.file("form.txt", form), made_ / "form.log");
        tracewithout_ = linesof(table / "without.txt");
        digest_ = linesof(table / "digest.txt");
    }

    Lines result() {
        Job job = readjob(made_ / "job.toml");
        const int status = runsession(job, replayed(made_ / "replay.txt"),
                                      {.record = {},
                                       .trace = made_ / "trace.txt",
                                       .tracewithout = tracewithout_,
                                       .dump = made_ / "after.json"},
                                      forms_.get());
        job.calls.clear();
        runsession(job, replayed(made_ / "replay.txt"),
                   {.record = {}, .trace = {}, .dump = made_ / "before.json"});
        Lines all = shown();
        for (const std::string& line : digested(linesof(made_ / "trace.txt"), digest_))
            all.push_back(line);
        all.push_back("exit " + std::to_string(status) + " " + changes().dump());
        return all;
    }

  private:
    void copyfiles(const fs::path& table) const {
        for (const auto& entry : fs::recursive_directory_iterator(table)) {
            if (!entry.is_regular_file()) continue;
            const fs::path copy = made_ / fs::relative(entry.path(), table).generic_string();
            fs::create_directories(copy.parent_path());
            fs::copy_file(entry.path(), copy);
        }
    }
    static void change(Lines& job, const std::string& line) {
        const std::string key = line.substr(0, line.find(" = ") + 3);
        const auto own = std::find_if(job.begin(), job.end(), [&key](const std::string& other) {
            return other.starts_with(key);
        });
        if (own != job.end())
            *own = line;
        else
            job.insert(std::find(job.begin(), job.end(), "[shared]") + 1, line);
    }
    void layfile(const std::string& line) {
        const std::size_t name = line.find(' ') + 1;
        const std::size_t blank = std::min(line.find(' ', name), line.size());
        const fs::path path = made_ / line.substr(name, blank - name);
        if (line.starts_with("nofile ")) {
            fs::remove(path);
            return;
        }
        fs::create_directories(path.parent_path());
        writetext(path, bytesof(line.substr(std::min(blank + 1, line.size()))));
    }
    // What the editors show, line by line, that is other than the last time.
    Lines shown() {
        Lines lines;
        for (const std::string& line : linesof(made_ / "form.log")) {
            const auto now = nlohmann::ordered_json::parse(line);
            auto& before = shown_[now["window"]];
            lines.push_back("form " + changed(before, now).dump());
            before = now;
        }
        return lines;
    }
    static nlohmann::ordered_json changed(const nlohmann::ordered_json& before,
                                          const nlohmann::ordered_json& now) {
        auto list = nlohmann::ordered_json::object();
        for (const auto& [name, value] : now.items()) {
            const auto former = before.find(name);
            if (former == before.end() || name == "passed")
                list[name] = value;
            else if (*former != value)
                list[name] = value.is_object() ? changed(*former, value) : value;
        }
        return list;
    }
    // The members of the dump that the calls have changed; of the buffer the changed parts.
    nlohmann::ordered_json changes() const {
        const auto before = keld2::test::dumpof(made_ / "before.json");
        const auto after = keld2::test::dumpof(made_ / "after.json");
        auto changed = nlohmann::ordered_json::object();
        for (const auto& [name, value] : after.items())
            if (value != before[name])
                changed[name] = name == "ibuffer" ? parts(before[name], value) : value;
        return changed;
    }
    static nlohmann::ordered_json parts(const std::string& before, const std::string& after) {
        constexpr std::size_t near = 2 * 8;  // digits that agree between changes of one part
        nlohmann::ordered_json list;
        for (std::size_t at = 0, end = 0; at < after.size(); at += 2) {
            if (after.compare(at, 2, before, at, 2) == 0) continue;
            for (std::size_t i = end = at; i < after.size() && i < end + near; i += 2)
                if (after.compare(i, 2, before, i, 2) != 0) end = i + 2;
            list[std::to_string(at / 2)] = keld2::test::runsof(after.substr(at, end - at));
            at = end;
        }
        return list;
    }

    Shown& shown_;
    const keld2::test::MadeFolder made_;
    std::unique_ptr<FormFrontEnd> forms_;
    Lines tracewithout_, digest_;
};

class CaseTable : public testing::TestWithParam<std::string> {
  protected:
    // To be looked at, and to be taken over for a new table.
    static void keep(const Lines& got) {
        const fs::path path = fs::path(KELD2_TEST_GOT) / (GetParam() + ".expected");
        fs::create_directories(path.parent_path());
        std::string text;
        for (const std::string& line : got) text += line + "\n";
        writetext(path, text);
    }
};

TEST_P(CaseTable, ComesToWhatIsExpected) {
    const fs::path table = root() / GetParam();
    const auto cases = casesof(table.string() + ".cases");
    ASSERT_FALSE(cases.empty());
    Lines got;
    CaseRun::Shown shown;
    for (const Case& one : cases) {
        got.push_back("== " + one.what);
        SCOPED_TRACE(one.what);
        for (const std::string& line : CaseRun(table.parent_path(), one, shown).result())
            got.push_back(line);
    }
    keep(got);

    const Lines expected = linesof(table.string() + ".expected");
    std::string what;
    for (std::size_t i = 0; i < std::min(got.size(), expected.size()); ++i) {
        if (got[i].starts_with("== ")) what = got[i];
        ASSERT_EQ(got[i], expected[i]) << what << ", line " << i + 1 << " of what is expected";
    }
    EXPECT_EQ(got.size(), expected.size()) << "lines of what is expected";
}

INSTANTIATE_TEST_SUITE_P(Tables, CaseTable, testing::ValuesIn(tables()), [](const auto& table) {
    std::string name = table.param;
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return name;
});

}  // namespace
