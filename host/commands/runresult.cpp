#include "host/commands/runresult.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>

#include "host/files/textrecords.h"
#include "host/hosterror.h"
#include "host/text/jsontext.h"

namespace keld2::host {

namespace {

using nlohmann::ordered_json;
using Outcome = RunReport::Outcome;

std::string names(const std::vector<const Operation*>& steps, std::size_t count) {
    std::string list;
    for (std::size_t i = 0; i < count; ++i)
        list += (i == 0 ? "" : ", ") + std::string(steps[i]->name);
    return list;
}

// The step at which the run ended, with how far it came.
std::string place(const RunResult& result) {
    const std::size_t done = std::min(result.report.done, result.steps.size() - 1);
    std::string text = std::string(result.steps[done]->name) + " at " +
                       std::to_string(result.report.percent) + " %";
    if (done > 0) text += ", done: " + names(result.steps, done);
    return text;
}

std::string_view word(Outcome outcome) {
    switch (outcome) {
        case Outcome::well:
            return "well";
        case Outcome::stopped:
            return "stopped";
        case Outcome::timedout:
            return "timed out";
        case Outcome::badalgorithm:
            return "unusable algorithm file";
        case Outcome::refused:
            return "programmer not ready";
        case Outcome::modefailed:
            return "programmer not set up";
        case Outcome::incomplete:
            return "missing component";
        case Outcome::aborted:
            return "aborted";
        case Outcome::notserved:
            return "not served";
        default:
            return "failed";
    }
}

ordered_json jsonof(const Explanation& explanation) {
    ordered_json mismatches = ordered_json::array();
    for (const auto& [one, fuse] : explanation.lines) {
        ordered_json mismatch{{"line", one.line},
                              {"code", one.code},
                              {"row", one.row},
                              {"bit", one.bit},
                              {"expected", int{one.expected}},
                              {"read", int{one.read}}};
        if (fuse) mismatch["fuse"] = *fuse;
        mismatches.push_back(mismatch);
    }
    return {{"text", explanation.text}, {"count", explanation.count}, {"mismatches", mismatches}};
}

}  // namespace

std::vector<Difference> differencesin(const std::vector<std::string>& log) {
    std::vector<Difference> differences;
    for (const std::string& line : log) {
        if (!isdifference(line)) continue;
        Difference one{.line = line, .address = {}, .chip = {}, .buffer = {}};
        std::istringstream words(line.substr(2));
        words >> one.address >> one.chip >> one.buffer;
        differences.push_back(one);
    }
    return differences;
}

int RunResult::status() const {
    const int status = exitstatusof(report.outcome);
    return status == exitstatus::well && !differences.empty() ? exitstatus::failed : status;
}

std::string summaryof(const RunResult& result) {
    const std::string device = result.device.name + ": ";
    switch (result.report.outcome) {
        case Outcome::well:
            break;
        case Outcome::stopped:
            return device + "stopped in " + place(result);
        case Outcome::timedout:
            return device + "a transfer timed out in " + place(result);
        case Outcome::badalgorithm:
            return device + "the algorithm file cannot be used";
        case Outcome::refused:
            return device + "the programmer is not ready; nothing was done";
        case Outcome::modefailed:
            return device + "the programmer could not be set up; nothing was done";
        case Outcome::incomplete:
            return device + "a component of the programmer is missing; nothing was done";
        case Outcome::aborted:
            return device + "aborted before the first operation";
        case Outcome::notserved:
            return device + "the plug-in does nothing for this device";
        default:
            if (result.differences.empty()) return device + "failed in " + place(result);
            break;
    }
    if (!result.differences.empty())
        return device + counted(result.differences.size(), "difference") +
               (result.differences.size() >= 256 ? " or more" : "");
    return device + names(result.steps, result.steps.size()) + " ended well";
}

std::string jsonof(const RunResult& result) {
    ordered_json steps = ordered_json::array();
    for (const Operation* step : result.steps) steps.push_back(step->name);
    ordered_json differences = ordered_json::array();
    for (const Difference& one : result.differences)
        differences.push_back({{"address", one.address}, {"chip", one.chip}, {"file", one.buffer}});
    ordered_json json{{"device", result.device.name}, {"steps", steps},
                      {"done", result.report.done},   {"result", word(result.report.outcome)},
                      {"status", result.status()},    {"percent", result.report.percent},
                      {"file", result.file},          {"differences", differences},
                      {"log", result.report.log},     {"seconds", result.seconds}};
    if (!result.explanation.lines.empty()) json["explanation"] = jsonof(result.explanation);
    return jsontext(json);
}

}  // namespace keld2::host
