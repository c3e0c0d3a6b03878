#include "host/tell/portcommands.h"

#include <algorithm>
#include <array>
#include <utility>

#include "host/files/hexbytes.h"
#include "host/tell/words.h"

namespace keld2::host {

namespace {

constexpr int datareg = 4, directionreg = 5, controlreg = 6;
constexpr std::uint8_t deselect = 0x40, strobebit = 0x20;
constexpr std::uint8_t inward = 255;
constexpr std::uint8_t framestart = 170;
constexpr int notread = -1;

struct CommandRow {
    std::uint8_t code;
    const char* words;
    std::uint8_t addressbytes;  // of the two operands; the low byte is the last
    std::size_t operands = 2;
};

constexpr std::array commands{
    CommandRow{172, "enable programming", 0, 1},
    CommandRow{56, "read id", 0},
    CommandRow{48, "read page", 2},
    CommandRow{50, "read ID area", 1},
    CommandRow{97, "read configuration byte 0", 0},
    CommandRow{100, "read configuration byte 1", 0},
    CommandRow{81, "load page", 0},
    CommandRow{80, "write page", 2},
    CommandRow{82, "write ID area", 0},
    CommandRow{225, "configuration byte 0", 0},
    CommandRow{228, "configuration byte 1", 0},
    CommandRow{138, "erase, second step", 0, 0},
};

}  // namespace

void PortCommands::take(const TraceLine& line, const StepSink& done) {
    const bool write = line.call == Call::regwrite || line.call == Call::qregwrite;
    const bool read = line.call == Call::regread || line.call == Call::qregread;
    if (!write && !read) return other(line, done);
    if (released_) close(done);
    const int reg = write ? line.numbers[1] : line.numbers[0];
    const auto value = static_cast<std::uint8_t>(line.numbers[0]);
    if (write && reg == controlreg) return control(line, done);
    if (reg == datareg) {
        if (strobed_) endbyte();
        if (write)
            data_ = value;
        else
            sampled_ = line.call == Call::regread ? line.answernumber() : notread;
        return byte_.add(leafof(line));
    }
    if (reg == directionreg) {
        direction_ = value;
        endbyte();
    }
    other(line, done);
}

// A line that belongs to whatever has begun.
void PortCommands::other(const TraceLine& line, const StepSink& done) {
    if (!byte_.parts.empty()) return byte_.add(leafof(line));
    if (!command_.parts.empty()) return command_.add(leafof(line));
    done(leafof(line));
}

void PortCommands::control(const TraceLine& line, const StepSink& done) {
    const auto value = static_cast<std::uint8_t>(line.numbers[0]);
    const auto was = std::exchange(control_, value);
    if (((value ^ was) & strobebit) != 0) {
        byte_.add(leafof(line));
        if ((value & strobebit) != 0) strobe();
        return;
    }
    endbyte();
    command_.add(leafof(line));
    released_ = (value & deselect) != 0;
    if (released_ && sent_.empty()) close(done);
}

// A rising strobe takes the byte, or moves the chip on behind a byte that was read.
void PortCommands::strobe() {
    strobed_ = true;
    if (direction_ != inward) {
        sent_.push_back(data_);
        byte_.words = "byte out " + hexwords(data_, 2);
        return;
    }
    ++readcount_;
    byte_.words = "byte in";
    if (sampled_ == notread) return;
    read_.push_back(static_cast<std::uint8_t>(sampled_));
    byte_.words += " " + hexwords(read_.back(), 2);
}

void PortCommands::endbyte() {
    strobed_ = false;
    sampled_ = notread;
    if (byte_.parts.empty()) return;
    Step byte = std::exchange(byte_, {});
    if (byte.words.empty())
        for (Step& part : byte.parts) command_.add(std::move(part));
    else
        command_.add(std::move(byte));
}

std::string PortCommands::wordsofcommand() const {
    const auto* row = sent_.size() > 1 && sent_[0] == framestart
                          ? std::ranges::find(commands, sent_[1], &CommandRow::code)
                          : commands.end();
    const bool known = row != commands.end();
    std::string words = known           ? "command: " + std::string(row->words)
                        : sent_.empty() ? std::string("command goes on")
                                        : std::string("command: bytes");
    const std::size_t head = known ? std::min(2 + row->operands, sent_.size()) : 0;
    if (known && row->addressbytes > 0 && head == 4) {
        const unsigned address = (row->addressbytes == 2 ? sent_[2] * 256U : 0U) + sent_[3];
        words += " at " + hexwords(address, 2 * row->addressbytes);
    }
    const std::vector<std::uint8_t> data(sent_.begin() + static_cast<std::ptrdiff_t>(head),
                                         sent_.end());
    if (!data.empty()) words += ", " + counted(std::ssize(data), "byte") + " " + hexfrombytes(data);
    if (readcount_ == 0) return words;
    words += ", " + counted(readcount_, "byte") + " read";
    return words + (read_.empty() ? "" : " " + hexfrombytes(read_));
}

void PortCommands::close(const StepSink& done) {
    endbyte();
    released_ = false;
    if (command_.parts.empty()) return;
    Step command = std::exchange(command_, {});
    if (sent_.empty() && readcount_ == 0) {
        for (Step& part : command.parts) done(std::move(part));
        return;
    }
    command.words = wordsofcommand();
    sent_.clear();
    read_.clear();
    readcount_ = 0;
    done(std::move(command));
}

}  // namespace keld2::host
