// SIR and RUNTEST statements: what each family queues for a text, and which texts are faults.
#include <gtest/gtest.h>

#include <sstream>

#include "jtag/cases.h"
#include "jtag/lines.h"
#include "jtag/recordingdevcore.h"
#include "jtag/runtest.h"
#include "jtag/sir.h"
#include "jtag/waveform.h"
#include "platform/fault.h"

namespace keld2 {
namespace {

constexpr std::string_view statements =
#include "data/jtag/statements.txt"
    ;

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
    return testing::Waveform(levels.family().family)(devcore.calls);
}

TEST(Statements, QueueWhatTheirFamilyNeeds) {
    for (const auto& [subject, text, answer] : testing::readcases(statements))
        EXPECT_EQ(played(subject, text), answer) << text << " in family " << subject;
}

}  // namespace
}  // namespace keld2
