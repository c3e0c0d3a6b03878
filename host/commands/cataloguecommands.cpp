#include "host/commands/cataloguecommands.h"

#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>

#include "host/catalogue/catalogue.h"
#include "host/files/textrecords.h"
#include "host/hosterror.h"
#include "host/text/jsontext.h"

namespace keld2::host {

namespace {

using nlohmann::ordered_json;

std::string names(const std::vector<const Operation*>& operations) {
    std::string list;
    for (const Operation* one : operations)
        list += (list.empty() ? "" : ", ") + std::string(one->name);
    return list;
}

std::string addresses(std::int64_t from, std::int64_t length) {
    return hexdigits(static_cast<std::uint64_t>(from), 4) + " to " +
           hexdigits(static_cast<std::uint64_t>(from + length - 1), 4);
}

ordered_json jsonof(const Device& device) {
    ordered_json ranges = ordered_json::array();
    for (const DeviceRange& range : device.ranges)
        ranges.push_back({{"name", range.name},
                          {"file", range.file},
                          {"buffer", range.buffer},
                          {"length", range.length},
                          {"written", range.writtenby}});
    ordered_json operations = ordered_json::array(), steps = ordered_json::array();
    for (const Operation* one : device.operations) operations.push_back(one->name);
    for (const Operation* one : device.autosteps) steps.push_back(one->name);
    return {{"name", device.name},
            {"description", device.description},
            {"content", device.content == Content::fuses ? "fuses" : "bytes"},
            {"operations", operations},
            {"auto", steps},
            {"ranges", ranges},
            {"path", device.path.string()}};
}

// All devices whose files can be used; the others are told on standard error.
std::vector<Device> devices(const Catalogue& catalogue, int& status) {
    std::vector<Device> found;
    for (const std::string& name : catalogue.names()) {
        try {
            found.push_back(catalogue.find(name));
        } catch (const HostError& error) {
            std::cerr << "keld2: " << error.what() << '\n';
            status = error.status();
        }
    }
    return found;
}

int list(const std::string& text, bool json) {
    int status = exitstatus::well;
    std::vector<Device> found = devices(Catalogue::standard(), status);
    std::erase_if(found, [&](const Device& one) { return !Catalogue::matches(one, text); });
    if (json) {
        ordered_json all = ordered_json::array();
        for (const Device& device : found) all.push_back(jsonof(device));
        std::cout << jsontext(all) << '\n';
        return found.empty() && status == exitstatus::well ? exitstatus::failed : status;
    }
    std::size_t width = 0;
    for (const Device& device : found) width = std::max(width, device.name.size());
    for (const Device& device : found)
        std::cout << device.name << std::string(width + 2 - device.name.size(), ' ')
                  << device.description << '\n';
    if (!found.empty() || status != exitstatus::well) return status;
    std::cerr << "keld2: "
              << (text.empty() ? "the catalogue has no devices"
                               : "no device matches \"" + text + "\"")
              << '\n';
    return exitstatus::failed;
}

int info(const std::string& name, bool json) {
    const Device device = Catalogue::standard().find(name);
    if (json) {
        std::cout << jsontext(jsonof(device)) << '\n';
        return exitstatus::well;
    }
    std::cout << device.name << ": " << device.description << '\n'
              << "operations: " << names(device.operations) << '\n'
              << "auto: " << names(device.autosteps) << '\n'
              << "files: "
              << (device.content == Content::fuses ? ".jed" : ".bin, .hex, .ihx, .s19, .srec, .mot")
              << '\n';
    for (const DeviceRange& range : device.ranges)
        std::cout << "  " << addresses(range.file, range.length) << "  " << range.name
                  << (range.writtenby.empty() ? "" : ", written by " + range.writtenby) << '\n';
    std::cout << "file: " << device.path.string() << '\n';
    return exitstatus::well;
}

}  // namespace

void addcataloguecommands(CLI::App& program, const DeviceOptions& options, int& status) {
    const auto text = std::make_shared<std::string>();
    const auto words = std::make_shared<std::vector<std::string>>();
    CLI::App* devices = program.add_subcommand("devices", "the device catalogue");
    devices->require_subcommand(1);
    CLI::App* all = devices->add_subcommand("list", "all devices");
    all->callback([&options, &status] { status = list("", options.json); });
    CLI::App* search =
        devices->add_subcommand("search", "devices whose name or description has all words");
    search->add_option("TEXT", *words, "one or more words")->required();
    search->callback([words, &options, &status] {
        status = list(CLI::detail::join(*words, " "), options.json);
    });
    CLI::App* about = devices->add_subcommand("info", "what is known of a device");
    about->add_option("NAME", *text, "the device's name")->required();
    about->callback([text, &options, &status] { status = info(*text, options.json); });
}

}  // namespace keld2::host
