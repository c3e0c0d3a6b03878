// Never a green mark on a wrong chip: what the signs of a run come to.
#include "host/verdict/verdict.h"

#include <gtest/gtest.h>

#include <functional>

#include "host/catalogue/catalogue.h"

namespace keld2::host {
namespace {

using Outcome = Verdict::Outcome;
using Mark = Verdict::Mark;

struct VerdictCase {
    const char* device;
    std::vector<const char*> steps;
    std::function<void(RunReport&)> leaves;  // beside an end in order
    Outcome outcome;
    int status;
    Mark mark;
    std::string headline;
};

Differences differing(bool listed, bool blank, Difference one, std::size_t count = 1) {
    return {.listed = listed, .againstblank = blank, .first = {one}, .count = count};
}

const Difference clearbit{.address = 0x64, .chip = 0x12, .expected = 0x02};
const Difference setbit{.address = 0x64, .chip = 0x00, .expected = 0x08};

const std::vector<VerdictCase> cases{
    {"serial-2k",
     {"erase", "program"},
     [](RunReport&) {},
     Outcome::well,
     0,
     Mark::good,
     "erase, program ended well"},
    {"serial-2k",
     {"verify"},
     [](RunReport& r) {
         r.result = 1;
         r.percent = 2;
         r.differences = differing(false, false, setbit);
     },
     Outcome::failed,
     1,
     Mark::bad,
     "failed in verify at 2 %: at 000064 the chip holds 00, the file 08"},
    {"serial-2k",
     {"program"},
     [](RunReport& r) {
         r.result = 1;
         r.differences = differing(false, false, setbit);
     },
     Outcome::failed,
     1,
     Mark::bad,
     "failed in program at 100 %: not blank at 000064; erase it first (the chip holds 00, the file "
     "08)"},
    {"serial-2k",
     {"erase", "program"},
     [](RunReport& r) {
         r.result = 1;
         r.done = 1;
         r.differences = differing(false, false, setbit);
     },
     Outcome::failed,
     1,
     Mark::bad,
     "failed in program at 100 %: at 000064 the chip holds 00, the file 08; done: erase"},
    {"serial-2k",
     {"program"},
     [](RunReport& r) {
         r.result = 1;
         r.differences = differing(false, false, clearbit);
     },
     Outcome::failed,
     1,
     Mark::bad,
     "failed in program at 100 %: at 000064 the chip holds 12, the file 02"},
    {"serial-2k",
     {"blank"},
     [](RunReport& r) {
         r.result = 1;
         r.differences = differing(false, true, clearbit);
     },
     Outcome::failed,
     1,
     Mark::bad,
     "failed in blank at 100 %: not blank at 000064, the chip holds 12"},
    // a fixed logic device ends a compare as passed, whatever it has found
    {"logic-17200-a",
     {"compare"},
     [](RunReport& r) {
         r.differences =
             differing(true, false, {.unit = CellUnit::fuse, .address = 7, .chip = 1}, 3);
     },
     Outcome::different,
     1,
     Mark::bad,
     "3 differences"},
    {"serial-2k",
     {"compare", "verify"},
     [](RunReport& r) {
         r.result = 1;
         r.differences = differing(true, false, setbit, 300);
     },
     Outcome::different,
     1,
     Mark::bad,
     "300 differences, 256 of them listed, in compare"},
    // a failed blank check that the user let pass is no difference of the run that ended well
    {"serial-2k",
     {"blank", "program"},
     [](RunReport& r) { r.differences = differing(false, true, clearbit); },
     Outcome::well,
     0,
     Mark::good,
     "blank, program ended well"},
    {"serial-2k",
     {"program"},
     [](RunReport& r) {
         r.result = 2;
         r.percent = 43;
         r.differences = differing(false, false, setbit);
     },
     Outcome::stopped,
     2,
     Mark::open,
     "stopped in program at 43 %"},
    {"serial-2k",
     {"read"},
     [](RunReport& r) {
         r.finished = false;
         r.foreignid = ForeignId{.read = "5A 5501", .ignored = false};
         r.boxended = true;
     },
     Outcome::foreignid,
     1,
     Mark::bad,
     "wrong chip: its id is 5A 5501, expected 5A 24"},
    {"serial-2k",
     {"read"},
     [](RunReport& r) {
         r.finished = false;
         r.foreignid = ForeignId{.read = "FF FFFF", .ignored = false};
     },
     Outcome::foreignid,
     1,
     Mark::bad,
     "wrong chip: its id is FF FFFF, expected 5A 24; is there a chip in the socket, and does it "
     "make "
     "contact?"},
    {"serial-2k",
     {"program"},
     [](RunReport& r) { r.foreignid = ForeignId{.read = "5A 5501", .ignored = true}; },
     Outcome::well,
     0,
     Mark::open,
     "program ended well"},
    {"arm-a-64k",
     {"erase"},
     [](RunReport& r) {
         r.result = 2;
         r.log = {">>Device Code Error!"};
     },
     Outcome::foreignid,
     2,
     Mark::bad,
     "the chip's id cannot be read, expected 1F AB"},
    {"parallel-byte-64k",
     {"blank"},
     [](RunReport& r) { r.uniform = 0xFF; },
     Outcome::well,
     0,
     Mark::open,
     "blank ended well"},
    {"parallel-byte-64k",
     {"verify"},
     [](RunReport& r) { r.uniform = 0x47; },
     Outcome::well,
     0,
     Mark::good,
     "verify ended well"},
    {"serial-2k",
     {"blank"},
     [](RunReport& r) { r.uniform = 0xFF; },
     Outcome::well,
     0,
     Mark::good,
     "blank ended well"},
    {"serial-2k",
     {"read"},
     [](RunReport& r) { std::ranges::fill(r.buffer, std::uint8_t{0}); },
     Outcome::well,
     0,
     Mark::open,
     "read ended well"},
    {"serial-2k",
     {"read"},
     [](RunReport& r) {
         r.finished = false;
         r.refused = true;
     },
     Outcome::refused,
     1,
     Mark::bad,
     "the programmer is not ready; nothing was done"},
    {"serial-2k",
     {"read"},
     [](RunReport& r) {
         r.finished = false;
         r.incomplete = true;
     },
     Outcome::incomplete,
     3,
     Mark::bad,
     "a component of the programmer is missing; nothing was done"},
    {"serial-2k",
     {"read"},
     [](RunReport& r) { r.finished = false; },
     Outcome::notserved,
     1,
     Mark::bad,
     "the plug-in does nothing for this device"},
    {"serial-2k",
     {"read"},
     [](RunReport& r) { r.result = 200; },
     Outcome::failed,
     1,
     Mark::bad,
     "failed in read at 100 %"},
};

TEST(Verdict, IsToldFromTheSignsOfTheRun) {
    const Catalogue catalogue(KELD2_TEST_DEVICES);
    for (const VerdictCase& c : cases) {
        const Device device = catalogue.find(c.device);
        std::vector<const Operation*> steps;
        for (const char* name : c.steps) steps.push_back(operationnamed(name));
        RunReport report{.result = 0, .finished = true, .percent = 100};
        for (std::int64_t i = 0; i < device.buffersize(); ++i)
            report.buffer.push_back(static_cast<std::uint8_t>('0' + i % 2));
        c.leaves(report);
        const Verdict verdict = verdictof({.device = device, .steps = steps}, report);
        EXPECT_EQ(headlineof(verdict), c.headline);
        EXPECT_EQ(wordof(verdict.outcome), wordof(c.outcome)) << c.headline;
        EXPECT_EQ(verdict.status, c.status) << c.headline;
        EXPECT_TRUE(verdict.mark() == c.mark) << c.headline;
    }
}

}  // namespace
}  // namespace keld2::host
