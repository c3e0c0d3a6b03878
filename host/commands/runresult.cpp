#include "host/commands/runresult.h"

#include <nlohmann/json.hpp>

#include "host/text/jsontext.h"

namespace keld2::host {

namespace {

using nlohmann::ordered_json;

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

// What the file holds, or what a blank chip would.
ordered_json jsonof(const Differences& differences) {
    const char* const other = differences.againstblank ? "blank" : "file";
    ordered_json list = ordered_json::array();
    for (const Difference& one : differences.first)
        list.push_back({{"address", addressdigits(one)},
                        {"chip", valuedigits(one.unit, one.chip)},
                        {other, valuedigits(one.unit, one.expected)}});
    return list;
}

ordered_json idof(const Verdict& verdict) {
    return {{"read", verdict.foreignid->read},
            {"expected", verdict.expectedid},
            {"ignored", verdict.foreignid->ignored}};
}

}  // namespace

std::string jsonof(const RunResult& result) {
    const Verdict& verdict = result.verdict;
    ordered_json steps = ordered_json::array();
    for (const Operation* step : verdict.steps) steps.push_back(step->name);
    ordered_json json{{"device", result.device.name},
                      {"steps", steps},
                      {"done", verdict.done},
                      {"result", wordof(verdict.outcome)},
                      {"status", verdict.status},
                      {"message", headlineof(verdict)},
                      {"percent", verdict.percent},
                      {"file", result.file},
                      {"differences", jsonof(verdict.differences)},
                      {"differing", verdict.differences.count},
                      {"notices", verdict.notices},
                      {"log", result.log},
                      {"seconds", result.seconds}};
    if (verdict.foreignid) json["id"] = idof(verdict);
    if (!result.explanation.lines.empty()) json["explanation"] = jsonof(result.explanation);
    return jsontext(json);
}

}  // namespace keld2::host
