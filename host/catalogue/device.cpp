#include "host/catalogue/device.h"

#include <algorithm>

#include "host/files/textrecords.h"

namespace keld2::host {

namespace {

constexpr std::int64_t mostbytes = 0x7FFFFFFF;

std::string requiredtext(const TomlFile& source, const std::string& key,
                         std::string_view expected) {
    const toml::node* node = source.root().get(key);
    if (node == nullptr) source.missing(key, expected);
    return source.text(key, *node, expected);
}

Content contentof(const TomlFile& source) {
    constexpr std::string_view expected = "\"bytes\" or \"fuses\"";
    const toml::node* node = source.root().get("content");
    if (node == nullptr) return Content::bytes;
    const std::string value = source.text("content", *node, expected);
    if (value == "bytes") return Content::bytes;
    if (value == "fuses") return Content::fuses;
    source.raise("content", *node, "is \"" + value + "\"", expected);
}

std::vector<const Operation*> operationlist(const TomlFile& source, const std::string& key) {
    const std::string expected = "an array of some of " + operationnames();
    const toml::node* node = source.root().get(key);
    if (node == nullptr) source.missing(key, expected);
    std::vector<const Operation*> list;
    for (const toml::node& item : source.array(key, *node, expected)) {
        const std::string name = source.text(key, item, "the name of an operation");
        const Operation* operation = operationnamed(name);
        if (operation == nullptr)
            source.raise(key, item, "\"" + name + "\" is no operation",
                         "one of " + operationnames());
        list.push_back(operation);
    }
    return list;
}

// Integers of a [[range]] table.
std::int64_t place(const TomlFile& source, const toml::table& table, const std::string& key,
                   const char* name, std::int64_t least) {
    const std::string full = key + " " + name;
    const std::string expected = "an integer from " + std::to_string(least) + " on";
    const toml::node* node = table.get(name);
    if (node == nullptr) source.raise(full, table, "is missing", expected);
    return source.integer(full, *node, least, mostbytes, expected);
}

DeviceRange range(const TomlFile& source, const std::string& key, const toml::node& node) {
    const toml::table& table = source.table(key, node);
    source.allowonly("range", table, {"buffer", "file", "length", "name", "written"}, "a range");
    DeviceRange result;
    const toml::node* name = table.get("name");
    if (name == nullptr) source.raise(key + " name", table, "is missing", "what the range holds");
    result.name = source.text(key + " name", *name, "a text");
    result.file = place(source, table, key, "file", 0);
    result.buffer = place(source, table, key, "buffer", 0);
    result.length = place(source, table, key, "length", 1);
    if (const toml::node* written = table.get("written")) {
        constexpr std::string_view expected = "\"program\" or \"config\"";
        result.writtenby = source.text(key + " written", *written, expected);
        if (result.writtenby != "program" && result.writtenby != "config")
            source.raise(key + " written", *written, "is \"" + result.writtenby + "\"", expected);
    }
    return result;
}

void checkrange(const TomlFile& source, const std::string& key, const toml::node& node,
                const std::vector<DeviceRange>& before, const DeviceRange& range,
                std::int64_t buffersize) {
    if (!before.empty() && range.file < before.back().fileend())
        source.raise(key + " file", node,
                     "address " + std::to_string(range.file) + " lies before the end of \"" +
                         before.back().name + "\"",
                     std::to_string(before.back().fileend()) + " or more");
    if (range.buffer + range.length > buffersize)
        source.raise(key + " buffer", node,
                     "ends behind the main buffer of " + counted(std::uint64_t(buffersize), "byte"),
                     "places below buflength + " + std::to_string(bufferextra));
}

std::vector<DeviceRange> rangelist(const TomlFile& source, std::int64_t buffersize) {
    constexpr std::string_view expected = "one table [[range]] or more";
    const toml::node* node = source.root().get("range");
    if (node == nullptr) source.missing("range", expected);
    const toml::array& array = source.array("range", *node, expected);
    std::vector<DeviceRange> ranges;
    for (const toml::node& item : array) {
        const std::string key = "range[" + std::to_string(ranges.size()) + "]";
        const DeviceRange one = range(source, key, item);
        checkrange(source, key, item, ranges, one, buffersize);
        ranges.push_back(one);
    }
    return ranges;
}

void checkauto(const TomlFile& source, const Device& device) {
    for (const Operation* step : device.autosteps)
        if (!device.has(*step))
            source.raise("auto", *source.root().get("auto"),
                         "\"" + std::string(step->name) + "\" is none of the device's operations",
                         "some of " + device.operationlist());
}

}  // namespace

bool Device::has(const Operation& operation) const {
    return std::find(operations.begin(), operations.end(), &operation) != operations.end();
}

std::string Device::operationlist() const {
    std::string names;
    for (const Operation* one : operations)
        names += (names.empty() ? "" : ", ") + std::string(one->name);
    return names;
}

std::int64_t Device::fileend() const { return ranges.empty() ? 0 : ranges.back().fileend(); }

std::int64_t Device::buffersize() const { return value("buflength") + bufferextra; }

Device readdevice(const std::filesystem::path& path) {
    const TomlFile source(path);
    source.allowsections({"description", "content", "operations", "auto", "shared", "range", "sim"},
                         "a device");
    Device device;
    device.name = path.stem().string();
    device.path = path;
    device.description = requiredtext(source, "description", "one line of text");
    device.content = contentof(source);
    device.shared = sharedsettings(source);
    device.operations = operationlist(source, "operations");
    device.autosteps = operationlist(source, "auto");
    checkauto(source, device);
    device.ranges = rangelist(source, device.buffersize());
    device.sim = source.section("sim");
    return device;
}

}  // namespace keld2::host
