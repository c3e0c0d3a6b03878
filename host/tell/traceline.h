// A trace as values: one line of the text is one call with its arguments and its answer.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace keld2::host {

enum class Call : std::uint8_t {
    setvcc,
    setvpp,
    setgndpin,
    setvccpin,
    setvpppin,
    drivercommit,
    powerdown,
    signalpass,
    signalfail,
    readycheck,
    readyfail,
    modeselect,
    modeselect2,
    modeselect3,
    armready,
    regwrite,
    qregwrite,
    regread,
    qregread,
    waitshort,
    qwaitshort,
    waitlong,
    qwaitlong,
    qrun,
    buswrite,
    qbuswrite,
    busconfig,
    qbusconfig,
    checkbyte,
    checkword,
    transferwait,
    loadalgobuf,
    usbcomwrite,
    usbbulkwrite,
    usbbulkread,
    messagebox,
    window,
    progress
};

// The views live as long as the text that was parsed.
struct TraceLine {
    std::int64_t number = 0;  // of the line in its file, from 1
    std::string_view text;    // the whole line
    Call call = Call::qrun;
    std::array<std::int32_t, 5> numbers{};  // the integers among the arguments, in their order
    std::string_view word;                  // the bytes, place or name among the arguments
    std::string_view rest;                  // of a window or box: all behind the word
    std::string_view answer;                // behind "->"; empty where a call has none

    int answernumber() const;  // of a call that answers a number
};

// Throws HostError (65) that says where, what is wrong and what was expected. file is for messages.
TraceLine parsetraceline(std::string_view text, std::int64_t number, const std::string& file);

// Whether a call goes into the command list.
bool isqueued(Call call);

// The lines of a trace file, one after the other.
class TraceReader {
  public:
    // Throws HostError (66) when the file cannot be opened.
    explicit TraceReader(const std::filesystem::path& path);

    // The next line, valid until the next call; nullptr behind the last. Throws as parsetraceline.
    const TraceLine* next();

  private:
    std::string name_;
    std::ifstream file_;
    std::string text_;
    TraceLine line_;
};

}  // namespace keld2::host
