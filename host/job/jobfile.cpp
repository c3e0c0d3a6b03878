#include "host/job/jobfile.h"

#include <limits>

#include "host/files/files.h"
#include "host/files/hexbytes.h"
#include "host/toml/tomlfile.h"

namespace keld2::host {

namespace {

constexpr std::int64_t mostbytes = std::numeric_limits<std::int32_t>::max();

// The main buffer as a shared variable: its count is known only with buflength.
void checkbuffersetting(const TomlFile& source, const toml::table& shared, std::int64_t size) {
    const toml::node* node = shared.get("ibuffer");
    const toml::array* list = node == nullptr ? nullptr : node->as_array();
    if (list != nullptr && static_cast<std::int64_t>(list->size()) > size)
        source.raise("[shared] ibuffer", *node, std::to_string(list->size()) + " elements",
                     "at most " + std::to_string(size));
}

// --- [buffer] -----------------------------------------------------------------------------------

void checkplace(const TomlFile& source, const std::string& key, const toml::node& node,
                std::int64_t from, std::size_t length, std::int64_t size) {
    const std::int64_t end = from + static_cast<std::int64_t>(length);
    if (length == 0 || (from >= 0 && end <= size)) return;
    source.raise(key, node,
                 "bytes " + std::to_string(from) + " to " + std::to_string(end - 1) +
                     " lie outside the buffer",
                 "places from 0 to " + std::to_string(size - 1));
}

BufferPatch patch(const TomlFile& source, const std::string& key, const toml::node& node) {
    constexpr std::string_view expected = "[offset, \"bytes in hexadecimal\"]";
    const toml::array* pair = node.as_array();
    if (pair == nullptr) source.wrongkind(key, node, expected);
    if (pair->size() != 2)
        source.raise(key, node, std::to_string(pair->size()) + " elements", expected);
    BufferPatch result;
    result.offset = source.integer(key, *pair->get(0), 0, mostbytes, "an offset from 0 on");
    const auto bytes = bytesfromhex(source.text(key, *pair->get(1), expected));
    if (!bytes)
        source.raise(key, *pair->get(1), "is no hexadecimal text", "two digits for each byte");
    result.bytes = *bytes;
    return result;
}

std::vector<BufferPatch> patches(const TomlFile& source, const toml::node& node,
                                 std::int64_t size) {
    const toml::array* list = node.as_array();
    if (list == nullptr)
        source.wrongkind("[buffer] patch", node, "an array of [offset, \"bytes\"]");
    std::vector<BufferPatch> result;
    for (std::size_t i = 0; i < list->size(); ++i) {
        const std::string key = "[buffer] patch[" + std::to_string(i) + "]";
        result.push_back(patch(source, key, *list->get(i)));
        checkplace(source, key, *list->get(i), result.back().offset, result.back().bytes.size(),
                   size);
    }
    return result;
}

void readimage(const TomlFile& source, const toml::node& node, BufferPlan& plan,
               std::int64_t size) {
    const std::string key = "[buffer] file";
    const std::string name = source.text(key, node, "the name of an image file");
    plan.image = loadimage(source.path().parent_path() / filenamed(name));
    for (const Segment& segment : plan.image.segments)
        checkplace(source, key, node, plan.offset + segment.address, segment.bytes.size(), size);
}

BufferPlan buffer(const TomlFile& source, const toml::table& table, std::int64_t size) {
    BufferPlan plan;
    if (const toml::node* fill = table.get("fill"))
        plan.fill = static_cast<std::uint8_t>(
            source.integer("[buffer] fill", *fill, 0, 255, "an integer from 0 to 255"));
    if (const toml::node* offset = table.get("offset"))
        plan.offset = source.integer("[buffer] offset", *offset, -(mostbytes * 2), mostbytes,
                                     "an offset within the buffer");
    if (const toml::node* file = table.get("file")) readimage(source, *file, plan, size);
    if (const toml::node* list = table.get("patch")) plan.patches = patches(source, *list, size);
    return plan;
}

// --- [run] --------------------------------------------------------------------------------------

std::vector<JobCall> calls(const TomlFile& source, const toml::node& node) {
    constexpr std::string_view expected = "an array of calls such as \"keld2warn 0\"";
    const toml::array* list = node.as_array();
    if (list == nullptr) source.wrongkind("[run] calls", node, expected);
    std::vector<JobCall> result;
    for (std::size_t i = 0; i < list->size(); ++i) {
        const std::string key = "[run] calls[" + std::to_string(i) + "]";
        const std::string call = source.text(key, *list->get(i), "a text such as \"usercode\"");
        try {
            result.push_back(parsecall(call));
        } catch (const std::invalid_argument& wrong) {
            source.raise(key, *list->get(i), wrong.what(), {});
        }
    }
    return result;
}

void readrun(const TomlFile& source, const toml::table& table, Job& job) {
    if (const toml::node* num = table.get("num"))
        job.num = static_cast<std::int16_t>(
            source.integer("[run] num", *num, -32768, 32767, "an integer from -32768 to 32767"));
    if (const toml::node* folder = table.get("folder")) {
        job.folder = source.path().parent_path() /
                     filenamed(source.text("[run] folder", *folder, "the name of a folder"));
        if (!std::filesystem::is_directory(job.folder))
            source.raise("[run] folder", *folder, "there is no folder " + job.folder.string(),
                         "one relative to the job file");
    }
    if (const toml::node* list = table.get("calls")) job.calls = calls(source, *list);
}

}  // namespace

std::int64_t Job::buffersize() const {
    const std::int64_t size = settingof(shared, "buflength") + bufferextra;
    return size > 0 && size <= mostbytes ? size : 0;
}

Job readjob(const std::filesystem::path& path) {
    const TomlFile source(path);
    source.allowsections({"shared", "buffer", "run"}, "a job");
    const toml::table& plan = source.section("buffer");
    source.allowonly("buffer", plan, {"file", "fill", "offset", "patch"}, "a job");
    const toml::table& run = source.section("run");
    source.allowonly("run", run, {"calls", "folder", "num"}, "a job");
    Job job;
    job.path = path;
    job.folder = path.has_parent_path() ? path.parent_path() : ".";
    job.calls = defaultcalls();
    job.shared = sharedsettings(source);
    checkbuffersetting(source, source.section("shared"), job.buffersize());
    job.buffer = buffer(source, plan, job.buffersize());
    readrun(source, run, job);
    return job;
}

}  // namespace keld2::host
