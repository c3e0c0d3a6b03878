#include "host/tell/words.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "host/files/hexbytes.h"

namespace keld2::host {

namespace {

std::string decimal(std::int64_t value) { return std::to_string(value); }

std::string volts(std::int32_t mv) {
    std::array<char, 24> text{};
    std::snprintf(text.data(), text.size(), "%.3f V", mv / 1000.0);
    return text.data();
}

std::string pin(const TraceLine& line, const char* supply) {
    return "pin " + decimal(line.numbers[0]) + (line.numbers[1] != 0 ? " to " : " off ") + supply;
}

// What an answer of these calls that is not as hoped for means.
std::string answered(const TraceLine& line, int bad, const char* means) {
    return line.answernumber() == bad ? std::string(": ") + means
                                      : ": well, answer " + std::string(line.answer);
}

std::string sent(const TraceLine& line) { return line.answernumber() == 0 ? "" : ": failed"; }

std::string checked(const TraceLine& line, const std::string& value, std::int32_t address,
                    int mode) {
    constexpr std::array does{"store ", "compare ", "blank check of ", "compare and report "};
    const bool known = mode >= 0 && mode < static_cast<int>(does.size());
    return (known ? does[static_cast<std::size_t>(mode)] : "check of ") + value + " at " +
           hexwords(static_cast<std::uint32_t>(address), 6) +
           (line.answernumber() == 0 ? "" : ": ended with 1");
}

// --- frames --------------------------------------------------------------------------------------

std::string operationname(std::uint8_t operationbyte) {
    switch (operationbyte) {
        case 1:
            return "Auto Program";
        case 2:
            return "Read";
        case 4:
            return "Verify";
        case 5:
            return "Blank Check";
        case 6:
            return "Compare";
        case 7:
            return "Program";
        default:
            return "number " + decimal(operationbyte - 1);
    }
}

std::string stepframe(std::span<const std::uint8_t> f) {
    constexpr std::uint8_t query = 0x1A, code = 0x1D, stop = 0x1E;
    if (f[1] == query) return "firmware query";
    if (f[1] == code) return "device code" + (f.size() > 2 ? ", bank " + decimal(f[2]) : "");
    if (f[1] == stop && f.size() <= 8) return "stop";
    if (f.size() < 5) return "step of an operation";
    constexpr std::uint8_t mark = 0x80;
    return operationname(f[1]) + ", bank " + decimal(f[2] & ~mark) + ", block " +
           decimal(f[3] + 256 * f[4]) + ((f[2] & mark) != 0 ? ", the last one" : "");
}

std::string imageframe(std::span<const std::uint8_t> f) {
    constexpr std::uint8_t write = 0x80;
    return f.size() > 2 && f[2] == write ? "image write" : "image read";
}

std::string selectframe(std::span<const std::uint8_t> f) {
    constexpr std::uint8_t write = 0x80, read = 0x40, armed = 16;
    if (f.size() < 4) return "read-back";
    if (f.size() == 4 && f[2] == write) return "write select, side " + decimal(f[3]);
    if (f[1] == armed && f[2] == read) return "read-back armed for a block";
    if (f[2] == read) return "read select " + decimal(f[1]) + ", side " + decimal(f[3]);
    return f[1] == 0 && f[2] == 0 ? "read-back reset"
                                  : "read-back of " + decimal(f[1] + 256 * f[2]) + " bytes";
}

std::string blockframe(std::span<const std::uint8_t> f) {
    if (f.size() < 8) return "fast block read";
    const auto number = [&](std::size_t at) { return f[at] | f[at + 1] << 8 | f[at + 2] << 16; };
    return "fast block read of " + counted(number(5), "byte") + " from " +
           hexwords(static_cast<std::uint32_t>(number(2)), 6);
}

}  // namespace

std::string framewords(std::span<const std::uint8_t> f) {
    if (f.size() < 2) return "frame";
    switch (f[0]) {
        case 13:
            return "list engine to mode " + decimal(f[1]);
        case 10:
            return selectframe(f);
        case 11:
            return blockframe(f);
        case 0x33:
            return imageframe(f);
        case 0x34:
            return stepframe(f);
        case 0x5A:
            return "announce, " + decimal(f[1]);
        default:
            return "frame of kind " + decimal(f[0]);
    }
}

namespace {

std::string selectmode(const TraceLine& l) {
    return "mode " + decimal(l.numbers[0]) + answered(l, 2, "failed");
}
std::string writeregister(const TraceLine& l) {
    return "register " + decimal(l.numbers[1]) + " = " + decimal(l.numbers[0]);
}
std::string pause(const TraceLine& l) { return "pause " + timewords(pauseof(l)); }
std::string buscycle(const TraceLine& l) {
    return "bus at " + hexwords(static_cast<std::uint32_t>(l.numbers[0]), 6) + ", data " +
           hexwords(static_cast<std::uint8_t>(l.numbers[1]), 2) + ", control " +
           decimal(l.numbers[2]);
}
std::string turnbus(const TraceLine& l) {
    return l.numbers[1] == 0 ? "the programmer drives the data lines"
                             : "the chip drives the data lines";
}
std::string checkbyte(const TraceLine& l) {
    const auto& n = l.numbers;
    return checked(l, hexwords(static_cast<std::uint8_t>(n[0]), 2), n[1], n[2]);
}
std::string checkword(const TraceLine& l) {
    const auto& n = l.numbers;
    return checked(l, hexwords(static_cast<std::uint16_t>(n[0] | n[1] << 8), 4), n[2], n[3]);
}
std::string frame(const TraceLine& l) {
    return "frame: " + framewords(bytesfromhex(l.word).value_or(std::vector<std::uint8_t>{})) +
           sent(l);
}
struct CallWords {
    Call call;
    std::string (*words)(const TraceLine&);
};

// In the order of Call.
constexpr std::array callwords{
    CallWords{Call::setvcc, [](const TraceLine& l) { return "VCC " + volts(l.numbers[0]); }},
    CallWords{Call::setvpp,
              [](const TraceLine& l) {
                  return "VPP " + decimal(l.numbers[1]) + " " + volts(l.numbers[0]);
              }},
    CallWords{Call::setgndpin, [](const TraceLine& l) { return pin(l, "ground"); }},
    CallWords{Call::setvccpin, [](const TraceLine& l) { return pin(l, "VCC"); }},
    CallWords{Call::setvpppin, [](const TraceLine& l) { return pin(l, "VPP"); }},
    CallWords{Call::drivercommit,
              [](const TraceLine& l) { return "pin set-up ends, record " + std::string(l.word); }},
    CallWords{Call::powerdown, [](const TraceLine&) { return std::string("power down"); }},
    CallWords{Call::signalpass, [](const TraceLine&) { return std::string("signal: passed"); }},
    CallWords{Call::signalfail, [](const TraceLine&) { return std::string("signal: failed"); }},
    CallWords{Call::readycheck,
              [](const TraceLine& l) { return "ready?" + answered(l, 1, "refused"); }},
    CallWords{Call::readyfail,
              [](const TraceLine&) { return std::string("the refusal is taken"); }},
    CallWords{Call::modeselect, selectmode},
    CallWords{Call::modeselect2, selectmode},
    CallWords{Call::modeselect3, selectmode},
    CallWords{Call::armready,
              [](const TraceLine& l) { return "ready for ARM?" + answered(l, 1, "refused"); }},
    CallWords{Call::regwrite, writeregister},
    CallWords{Call::qregwrite, writeregister},
    CallWords{Call::regread,
              [](const TraceLine& l) {
                  return "register " + decimal(l.numbers[0]) + " reads " + std::string(l.answer);
              }},
    CallWords{Call::qregread,
              [](const TraceLine& l) {
                  return "register " + decimal(l.numbers[0]) + " into the read-back";
              }},
    CallWords{Call::waitshort, pause},
    CallWords{Call::qwaitshort, pause},
    CallWords{Call::waitlong, pause},
    CallWords{Call::qwaitlong, pause},
    CallWords{Call::qrun, [](const TraceLine&) { return std::string("an empty list runs"); }},
    CallWords{Call::buswrite, buscycle},
    CallWords{Call::qbuswrite, buscycle},
    CallWords{Call::busconfig, turnbus},
    CallWords{Call::qbusconfig, turnbus},
    CallWords{Call::checkbyte, checkbyte},
    CallWords{Call::checkword, checkword},
    CallWords{Call::transferwait,
              [](const TraceLine& l) {
                  return std::string("status asked") +
                         (l.answer == "true" ? "" : ": the transfer failed");
              }},
    CallWords{Call::loadalgobuf,
              [](const TraceLine& l) {
                  return "image of " + counted(l.numbers[0], "byte") + " handed over";
              }},
    CallWords{Call::usbcomwrite, frame},
    CallWords{Call::usbbulkwrite,
              [](const TraceLine& l) {
                  return "bulk write of " + counted(l.numbers[0], "byte") + " from " +
                         std::string(l.word) + sent(l);
              }},
    CallWords{Call::usbbulkread,
              [](const TraceLine& l) {
                  return "bulk read of " + counted(l.numbers[0], "byte") + " to " +
                         std::string(l.word);
              }},
    CallWords{Call::messagebox,
              [](const TraceLine& l) {
                  return "question " + std::string(l.rest) + ": " + std::string(l.answer);
              }},
    CallWords{Call::window,
              [](const TraceLine& l) {
                  return "window " + std::string(l.word) + " " + std::string(l.rest);
              }},
    CallWords{Call::progress,
              [](const TraceLine& l) { return "progress " + decimal(l.numbers[0]) + " %"; }}};

constexpr bool inorder() {
    for (std::size_t i = 0; i < callwords.size(); ++i)
        if (static_cast<std::size_t>(callwords[i].call) != i) return false;
    return callwords.back().call == Call::progress;  // the last one
}
static_assert(inorder());

}  // namespace

std::string wordsof(const TraceLine& line) {
    return callwords[static_cast<std::size_t>(line.call)].words(line);
}

Step leafof(const TraceLine& line) {
    return {.words = line.text.empty() ? std::string() : wordsof(line),
            .first = line.number,
            .last = line.number};
}

std::string hexwords(std::uint64_t value, int digits) {
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "0x%0*llX", digits,
                  static_cast<unsigned long long>(value));
    return text.data();
}

std::string timewords(std::int64_t microseconds) {
    std::array<char, 40> text{};
    const auto value = static_cast<double>(microseconds);
    if (microseconds >= 1'000'000)
        std::snprintf(text.data(), text.size(), "%g s", value / 1e6);
    else if (microseconds >= 1000)
        std::snprintf(text.data(), text.size(), "%g ms", value / 1e3);
    else
        std::snprintf(text.data(), text.size(), "%g us", value);
    return text.data();
}

std::int64_t pauseof(const TraceLine& line) {
    const std::int64_t ticks = std::max(line.numbers[0], 0);
    switch (line.call) {
        case Call::waitshort:
        case Call::qwaitshort:
            return ticks;
        case Call::waitlong:
        case Call::qwaitlong:
            return ticks * 1000;
        default:
            return 0;
    }
}

std::string counted(std::int64_t count, const std::string& noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

}  // namespace keld2::host
