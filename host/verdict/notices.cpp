#include "host/verdict/notices.h"

#include <algorithm>
#include <optional>

#include "host/files/textrecords.h"
#include "host/run/device_id.h"

namespace keld2::host {

namespace {

constexpr std::uint8_t blankbyte = 0xFF;

// The one value of all cells of the device's ranges, if they have one.
std::optional<std::uint8_t> uniformbuffer(const Device& device,
                                          const std::vector<std::uint8_t>& buffer) {
    std::optional<std::uint8_t> value;
    for (const DeviceRange& range : device.ranges) {
        if (range.writtenby != "program") continue;
        for (std::int64_t i = range.buffer; i < range.buffer + range.length; ++i) {
            const std::uint8_t cell = buffer.at(static_cast<std::size_t>(i));
            if (value.value_or(cell) != cell) return {};
            value = cell;
        }
    }
    return value;
}

std::string cause(bool blank, bool known) {
    std::string text = blank ? "the chip is blank or protected from being read"
                             : "the chip is protected from being read, or all of it is programmed";
    if (!known)
        text +=
            ", or the socket is empty or without contact: this device has no id that would tell";
    return text;
}

bool isread(const RunRequest& request) {
    return request.steps.size() == 1 && request.steps.front()->name == "read";
}

// A read tells nothing of its chip when all cells are alike.
std::string uniformread(const RunRequest& request, const RunReport& report, bool known) {
    const auto value = uniformbuffer(request.device, report.buffer);
    if (!value) return {};
    const bool fuses = request.device.content == Content::fuses;
    const bool blank = fuses ? (*value & 1) != 0 : *value == blankbyte;
    if (!blank && !fuses && *value != 0) return {};
    const std::string shown = fuses ? std::to_string(*value & 1) : hexdigits(*value, 2);
    return "every " + std::string(fuses ? "fuse" : "byte") + " reads " + shown + ": " +
           cause(blank, known);
}

std::string uniformcheck(const RunReport& report) {
    if (!report.uniform || (*report.uniform != blankbyte && *report.uniform != 0)) return {};
    return "every byte that was checked read " + hexdigits(*report.uniform, 2) +
           ": an empty socket would look the same, this device has no id that would tell";
}

}  // namespace

std::vector<std::string> noticesof(const RunRequest& request, const RunReport& report,
                                   const Verdict& verdict) {
    std::vector<std::string> notices;
    const bool ignored = verdict.foreignid && verdict.foreignid->ignored;
    if (ignored)
        notices.push_back("the chip's id is " + verdict.foreignid->read + ", not " +
                          verdict.expectedid + ": it was ignored");
    if (!verdict.well()) return notices;
    const bool known = checksid(request.device);
    const std::string uniform = isread(request) ? uniformread(request, report, known)
                                : known         ? std::string()
                                                : uniformcheck(report);
    if (!uniform.empty()) notices.push_back(uniform);
    return notices;
}

}  // namespace keld2::host
