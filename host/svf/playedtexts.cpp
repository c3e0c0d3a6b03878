#include "host/svf/playedtexts.h"

#include <sstream>

#include "host/files/textrecords.h"
#include "host/hosterror.h"
#include "host/svf/svftask.h"

namespace keld2::host {

std::vector<std::string> playedtexts(const Device& device,
                                     const std::vector<const Operation*>& steps,
                                     const std::vector<BufferPart>& parts) {
    std::vector<std::string> texts;
    if (!playssvf(device)) return texts;
    const LogicDevice logic = logicdevice(device);
    const std::vector<std::uint8_t> cells = cellsfrom(parts);
    texts.reserve(steps.size());
    for (const Operation* step : steps)
        texts.push_back(makesvf(logic, tasknamed(step->name).value(), cells));
    return texts;
}

Explanation explain(const Device& device, const std::vector<std::string>& texts,
                    const RunReport& report, const std::optional<std::string>& file) {
    constexpr std::size_t mostlines = 256;
    if (report.result != exitstatus::failed || report.readbacks.empty()) return {};
    const std::size_t last = report.readbacks.size() - 1;
    const LogicDevice logic = logicdevice(device);
    Explanation explanation{.text = file.value_or("pldtmp.svf"), .lines = {}};
    const SvfExplained explained = explainsvf(logic, texts[last], report.readbacks[last]);
    explanation.code = explained.code;
    for (const SvfMismatch& one : explained.mismatches) {
        if (++explanation.count > mostlines) continue;
        const bool ofmap = !file && !one.code;
        explanation.lines.push_back({one, ofmap ? cellof(logic, one.row, one.bit) : std::nullopt});
    }
    return explanation;
}

std::string told(const Explanation& explanation) {
    std::ostringstream text;
    for (const auto& [one, fuse] : explanation.lines) {
        text << explanation.text << ':' << one.line << ": " << (one.code ? "device code, " : "")
             << "row " << one.row << ", bit " << one.bit << ": expected " << one.expected
             << ", read " << one.read;
        if (fuse) text << " (fuse " << *fuse << ')';
        text << '\n';
    }
    if (const std::size_t more = explanation.count - explanation.lines.size(); more > 0)
        text << explanation.text << ": and " << counted(more, "more bit") << '\n';
    return text.str();
}

}  // namespace keld2::host
