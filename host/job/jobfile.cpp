#include "host/job/jobfile.h"

#include <toml++/toml.h>
#include <array>
#include <limits>
#include <set>

#include "host/files/files.h"
#include "host/files/hexbytes.h"
#include "host/hosterror.h"
#include "platform/numbers.h"
#include "shared/sharedvariables.h"

namespace keld2::host {

namespace {

constexpr std::int64_t mostbytes = std::numeric_limits<std::int32_t>::max();

// What an element type takes.
struct TypeRow {
    ElementType type;
    std::int64_t least = 0;
    std::int64_t most = 0;  // of the integer types
    std::string_view expected;
};

constexpr std::array typerows{
    TypeRow{ElementType::byte, 0, 255, "an integer from 0 to 255"},
    TypeRow{ElementType::i16, -32768, 32767, "an integer from -32768 to 32767"},
    TypeRow{ElementType::i32, -2147483648LL, 2147483647,
            "an integer from -2147483648 to 2147483647"},
    TypeRow{ElementType::f64, 0, 0, "a number"},
    TypeRow{ElementType::flag, -1, 1, "true or false"},
    TypeRow{ElementType::string, 0, 0, "a text"},
};

const TypeRow& typerow(ElementType type) {
    for (const TypeRow& row : typerows)
        if (row.type == type) return row;
    throw std::logic_error("element type without a row");
}

std::string kindname(const toml::node& node) {
    if (node.is_table()) return "a table";
    if (node.is_array()) return "an array";
    if (node.is_string()) return "a text";
    if (node.is_integer()) return "an integer";
    if (node.is_floating_point()) return "a number with a fraction";
    if (node.is_boolean()) return "true or false";
    return "a date or time";
}

// Where and how the job file is wrong.
class Complaint {
  public:
    explicit Complaint(std::filesystem::path path) : path_(std::move(path)) {}

    [[noreturn]] void raise(const std::string& key, const toml::node& node,
                            const std::string& wrong, std::string_view expected) const {
        std::string message = path_.string();
        if (node.source().begin.line != 0)
            message += ":" + std::to_string(node.source().begin.line);
        message += ": " + key + ": " + wrong;
        if (!expected.empty()) message += ", expected " + std::string(expected);
        throw HostError(exitstatus::data, message);
    }
    [[noreturn]] void wrongkind(const std::string& key, const toml::node& node,
                                std::string_view expected) const {
        raise(key, node, "is " + kindname(node), expected);
    }
    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

std::int64_t integer(const Complaint& complaint, const std::string& key, const toml::node& node,
                     std::int64_t least, std::int64_t most, std::string_view expected) {
    const auto* value = node.as_integer();
    if (value == nullptr) complaint.wrongkind(key, node, expected);
    if (value->get() < least || value->get() > most)
        complaint.raise(key, node, std::to_string(value->get()) + " is out of range", expected);
    return value->get();
}

std::string text(const Complaint& complaint, const std::string& key, const toml::node& node,
                 std::string_view expected) {
    const auto* value = node.as_string();
    if (value == nullptr) complaint.wrongkind(key, node, expected);
    return value->get();
}

SharedValue element(const Complaint& complaint, const std::string& key, const toml::node& node,
                    ElementType type) {
    const TypeRow& row = typerow(type);
    switch (type) {
        case ElementType::string:
            return utf16(text(complaint, key, node, row.expected));
        case ElementType::f64: {
            const auto value = node.value<double>();
            if (!node.is_number() || !value) complaint.wrongkind(key, node, row.expected);
            return *value;
        }
        case ElementType::flag: {
            if (const auto* flag = node.as_boolean()) return std::int64_t{flag->get() ? -1 : 0};
            const std::int64_t value =
                integer(complaint, key, node, row.least, row.most, row.expected);
            return std::int64_t{value != 0 ? -1 : 0};
        }
        default:
            return integer(complaint, key, node, row.least, row.most, row.expected);
    }
}

std::optional<std::size_t> rowof(std::string_view name) {
    for (std::size_t i = 0; i < blocktable.size(); ++i)
        if (blocktable[i].name == name) return i;
    return std::nullopt;
}

SharedSetting setting(const Complaint& complaint, std::string_view name, const toml::node& node) {
    const std::string key = "[shared] " + std::string(name);
    const auto row = rowof(name);
    if (!row) complaint.raise(key, node, "is no shared variable", "the name of one");
    const BlockRow& block = blocktable[*row];
    SharedSetting result{.row = *row, .values = {}};
    const toml::array* list = node.as_array();
    if (list == nullptr) {
        result.values.push_back(element(complaint, key, node, block.type));
        return result;
    }
    if (block.count != 0 && list->size() > block.count)
        complaint.raise(key, node, std::to_string(list->size()) + " elements",
                        "at most " + std::to_string(block.count));
    result.values.reserve(list->size());
    for (std::size_t i = 0; i < list->size(); ++i)
        result.values.push_back(
            element(complaint, key + "[" + std::to_string(i) + "]", *list->get(i), block.type));
    return result;
}

// The main buffer as a shared variable: its count is known only with buflength.
void checkbuffersetting(const Complaint& complaint, const toml::table& shared, std::int64_t size) {
    const toml::node* node = shared.get("ibuffer");
    const toml::array* list = node == nullptr ? nullptr : node->as_array();
    if (list != nullptr && static_cast<std::int64_t>(list->size()) > size)
        complaint.raise("[shared] ibuffer", *node, std::to_string(list->size()) + " elements",
                        "at most " + std::to_string(size));
}

// --- [buffer] -----------------------------------------------------------------------------------

void checkplace(const Complaint& complaint, const std::string& key, const toml::node& node,
                std::int64_t from, std::size_t length, std::int64_t size) {
    const std::int64_t end = from + static_cast<std::int64_t>(length);
    if (length == 0 || (from >= 0 && end <= size)) return;
    complaint.raise(key, node,
                    "bytes " + std::to_string(from) + " to " + std::to_string(end - 1) +
                        " lie outside the buffer",
                    "places from 0 to " + std::to_string(size - 1));
}

BufferPatch patch(const Complaint& complaint, const std::string& key, const toml::node& node) {
    constexpr std::string_view expected = "[offset, \"bytes in hexadecimal\"]";
    const toml::array* pair = node.as_array();
    if (pair == nullptr) complaint.wrongkind(key, node, expected);
    if (pair->size() != 2)
        complaint.raise(key, node, std::to_string(pair->size()) + " elements", expected);
    BufferPatch result;
    result.offset = integer(complaint, key, *pair->get(0), 0, mostbytes, "an offset from 0 on");
    const auto bytes = bytesfromhex(text(complaint, key, *pair->get(1), expected));
    if (!bytes)
        complaint.raise(key, *pair->get(1), "is no hexadecimal text", "two digits for each byte");
    result.bytes = *bytes;
    return result;
}

std::vector<BufferPatch> patches(const Complaint& complaint, const toml::node& node,
                                 std::int64_t size) {
    const toml::array* list = node.as_array();
    if (list == nullptr)
        complaint.wrongkind("[buffer] patch", node, "an array of [offset, \"bytes\"]");
    std::vector<BufferPatch> result;
    for (std::size_t i = 0; i < list->size(); ++i) {
        const std::string key = "[buffer] patch[" + std::to_string(i) + "]";
        result.push_back(patch(complaint, key, *list->get(i)));
        checkplace(complaint, key, *list->get(i), result.back().offset, result.back().bytes.size(),
                   size);
    }
    return result;
}

void readimage(const Complaint& complaint, const toml::node& node, BufferPlan& plan,
               std::int64_t size) {
    const std::string key = "[buffer] file";
    const std::string name = text(complaint, key, node, "the name of an image file");
    plan.image = loadimage(complaint.path().parent_path() / name);
    for (const Segment& segment : plan.image.segments)
        checkplace(complaint, key, node, plan.offset + segment.address, segment.bytes.size(), size);
}

BufferPlan buffer(const Complaint& complaint, const toml::table& table, std::int64_t size) {
    BufferPlan plan;
    if (const toml::node* fill = table.get("fill"))
        plan.fill = static_cast<std::uint8_t>(
            integer(complaint, "[buffer] fill", *fill, 0, 255, "an integer from 0 to 255"));
    if (const toml::node* offset = table.get("offset"))
        plan.offset = integer(complaint, "[buffer] offset", *offset, -(mostbytes * 2), mostbytes,
                              "an offset within the buffer");
    if (const toml::node* file = table.get("file")) readimage(complaint, *file, plan, size);
    if (const toml::node* list = table.get("patch")) plan.patches = patches(complaint, *list, size);
    return plan;
}

// --- [run] --------------------------------------------------------------------------------------

std::vector<JobCall> calls(const Complaint& complaint, const toml::node& node) {
    constexpr std::string_view expected = "an array of calls such as \"keld2warn 0\"";
    const toml::array* list = node.as_array();
    if (list == nullptr) complaint.wrongkind("[run] calls", node, expected);
    std::vector<JobCall> result;
    for (std::size_t i = 0; i < list->size(); ++i) {
        const std::string key = "[run] calls[" + std::to_string(i) + "]";
        const std::string call = text(complaint, key, *list->get(i), "a text such as \"usercode\"");
        try {
            result.push_back(parsecall(call));
        } catch (const std::invalid_argument& wrong) {
            complaint.raise(key, *list->get(i), wrong.what(), {});
        }
    }
    return result;
}

void readrun(const Complaint& complaint, const toml::table& table, Job& job) {
    if (const toml::node* num = table.get("num"))
        job.num = static_cast<std::int16_t>(integer(complaint, "[run] num", *num, -32768, 32767,
                                                    "an integer from -32768 to 32767"));
    if (const toml::node* folder = table.get("folder")) {
        job.folder = complaint.path().parent_path() /
                     text(complaint, "[run] folder", *folder, "the name of a folder");
        if (!std::filesystem::is_directory(job.folder))
            complaint.raise("[run] folder", *folder, "there is no folder " + job.folder.string(),
                            "one relative to the job file");
    }
    if (const toml::node* list = table.get("calls")) job.calls = calls(complaint, *list);
}

// --- the whole ----------------------------------------------------------------------------------

const toml::table& section(const Complaint& complaint, const toml::table& root,
                           const std::string& name, const std::set<std::string_view>& keys,
                           const toml::table& none) {
    const toml::node* node = root.get(name);
    if (node == nullptr) return none;
    const toml::table* table = node->as_table();
    if (table == nullptr) complaint.wrongkind(name, *node, "the table [" + name + "]");
    std::string expected;
    for (const std::string_view key : keys)
        expected += (expected.empty() ? "" : ", ") + std::string(key);
    for (const auto& [key, value] : *table)
        if (!keys.empty() && !keys.contains(key.str()))
            complaint.raise("[" + name + "] " + std::string(key.str()), value, "is no key of a job",
                            "one of " + expected);
    return *table;
}

toml::table parsed(const std::filesystem::path& path) {
    try {
        return toml::parse(readtext(path), path.string());
    } catch (const toml::parse_error& error) {
        throw HostError(exitstatus::data,
                        path.string() + ":" + std::to_string(error.source().begin.line) +
                            ": is no TOML text: " + std::string(error.description()));
    }
}

}  // namespace

std::int64_t Job::buffersize() const {
    std::int64_t length = 0;
    for (const SharedSetting& one : shared)
        if (blocktable[one.row].name == "buflength" && !one.values.empty())
            length = std::get<std::int64_t>(one.values[0]);
    const std::int64_t size = length + bufferextra;
    return size > 0 && size <= mostbytes ? size : 0;
}

Job readjob(const std::filesystem::path& path) {
    const toml::table root = parsed(path);
    const Complaint complaint(path);
    for (const auto& [key, value] : root)
        if (key != "shared" && key != "buffer" && key != "run")
            complaint.raise(std::string(key.str()), value, "is no part of a job",
                            "[shared], [buffer] or [run]");
    const toml::table none;
    Job job;
    job.path = path;
    job.folder = path.has_parent_path() ? path.parent_path() : ".";
    job.calls = defaultcalls();
    const toml::table& shared = section(complaint, root, "shared", {}, none);
    for (const auto& [key, value] : shared)
        job.shared.push_back(setting(complaint, key.str(), value));
    checkbuffersetting(complaint, shared, job.buffersize());
    job.buffer = buffer(
        complaint, section(complaint, root, "buffer", {"file", "offset", "fill", "patch"}, none),
        job.buffersize());
    readrun(complaint, section(complaint, root, "run", {"num", "folder", "calls"}, none), job);
    return job;
}

}  // namespace keld2::host
