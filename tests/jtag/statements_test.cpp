// SIR and RUNTEST statements: what each family queues for a text, and which texts are faults.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <sstream>

#include "jtag/cases.h"
#include "jtag/lines.h"
#include "jtag/recordingdevcore.h"
#include "jtag/runtest.h"
#include "jtag/sir.h"
#include "platform/fault.h"

namespace keld2 {
namespace {

using Calls = std::vector<std::string>;

const std::string statements =
#include "data/jtag/statements.txt"
    ;

// The calls as a chip sees them: "10" is a clock with TMS 1 and TDI 0, "142:0" a shift code with
// its value, other calls stand as they are.
Calls seen(const Wiring& wiring, const Calls& calls) {
    Calls list;
    std::map<std::uint8_t, int> levels;  // by register
    const auto ishigh = [&](RegisterBits line) { return (levels[line.reg] & line.bits) != 0; };
    for (const std::string& call : calls) {
        std::istringstream in(call);
        std::string name;
        int value = 0;
        int reg = 0;
        in >> name >> value >> reg;
        const bool clocked = ishigh(wiring.tck);
        if (name != "qregwrite")
            list.push_back(call);
        else if (reg >= shiftcode::clock8)
            list.push_back(std::to_string(reg) + ":" + std::to_string(value));
        else
            levels[static_cast<std::uint8_t>(reg)] = value;
        if (!clocked && ishigh(wiring.tck))
            list.push_back({ishigh(wiring.tms) ? '1' : '0', ishigh(wiring.tdi) ? '1' : '0'});
    }
    return list;
}

// Equal neighbours as "10*5".
std::string counted(const Calls& list) {
    std::string text;
    for (auto at = list.begin(), end = at; at != list.end(); at = end) {
        end = std::find_if(at, list.end(), [at](const auto& other) { return other != *at; });
        text += (text.empty() ? "" : ", ") + *at;
        if (end - at > 1) text += "*" + std::to_string(end - at);
    }
    return text;
}

// subject: the family and pwte.
std::string played(const std::string& subject, const std::string& text) {
    std::istringstream in(subject);
    int family = 0;
    int pwte = 0;
    in >> family >> pwte;
    LineLevels levels(static_cast<std::uint8_t>(family));
    testing::RecordingDevCore devcore;
    QueuedLines lines(levels, devcore);
    try {
        if (text.starts_with("RUNTEST"))
            executeruntest(lines, devcore, readruntest(levels.family().runtest, text), pwte);
        else
            SIRdate(lines, devcore, readsir(text));
    } catch (const RunFault&) {
        return "fault";
    }
    return counted(seen(levels.family().wiring, devcore.calls));
}

TEST(Statements, QueueWhatTheirFamilyNeeds) {
    for (const auto& [subject, text, answer] : testing::readcases(statements))
        EXPECT_EQ(played(subject, text), answer) << text << " in family " << subject;
}

}  // namespace
}  // namespace keld2
