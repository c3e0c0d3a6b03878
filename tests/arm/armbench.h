// ArmBench: a scripted programmer around the plug-in's class, for runs of ARM devices.
//
// Every outward call is a line of the trace. Status records come from a script; where it is used
// up the programmer answers "done", so that a run cannot hang by a short script.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "plugin/clskeld2.h"
#include "plugin/module.h"

namespace keld2::test {

using Bytes = std::vector<std::uint8_t>;
using Lines = std::vector<std::string>;

Bytes fromhex(const std::string& hex);
std::string tohex(std::span<const std::uint8_t> bytes);

// What a bulk read brings. Without any, the image is read back as it was sent, and data are 255.
struct BulkAnswer {
    std::uint8_t cell = 2;
    std::optional<Bytes> data = {};
};

class BenchMachine;

class ArmBench {
  public:
    // A device of 64 words of one byte with a RAM block of 32 KiB. Operation op.
    ArmBench(std::int16_t modeltype, std::uint8_t op);
    ~ArmBench();

    SharedVariables& s();
    std::string log();   // MainRtstr[0]; the elapsed line is ">> <TIME>Sec"
    const Lines& run();  // runs the job; the whole trace
    Lines afterimage();  // runs the job; the trace behind the image's read-back
    static Lines tail(const Lines& lines, std::size_t count);
    int count(const std::string& start) const;  // lines of the trace that begin so

    // --- script ---
    std::map<std::string, Bytes> files;                   // "algo/fam/img.bin"
    std::map<std::string, int> answers;                   // of readycheck, armready, modeselect...
    std::map<std::string, std::function<void()>> before;  // run right before a line of the trace
    std::deque<std::optional<Bytes>> records;             // none: transferwait fails
    std::deque<BulkAnswer> bulkreads;                     // the image's first, if any are given
    std::deque<int> comwrites, bulkwrites;                // results; 0 when used up
    std::deque<BoxAnswer> boxes;
    std::function<void(std::int32_t&)> onloadalgobuf;
    std::function<void(int)> onservice;  // with the number of the service
    int stopatservice = 0;               // writes 2 to prgresult[0]
    std::vector<int> percents;           // prgmode[1] at each change at a service
    std::vector<Box> shown;
    Lines trace;

    // Used by the fakes.
    void put(const std::string& line);
    void service();
    std::uint8_t* bulkcell = nullptr;

  private:
    std::unique_ptr<BenchMachine> machine_;
    std::unique_ptr<Module> module_;
    int services_ = 0;
};

constexpr std::int16_t familya = 50;  // a modeltype[0] of the last row of its start-up table
constexpr std::int16_t familyb = 80;

}  // namespace keld2::test
