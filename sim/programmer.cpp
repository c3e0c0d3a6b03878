#include "sim/programmer.h"

#include <algorithm>
#include <atomic>
#include <ranges>
#include <utility>

#include "platform/fault.h"
#include "sim/armpart.h"
#include "sim/chipimage.h"
#include "sim/components.h"

namespace keld2::sim {

namespace {

// Frames to the programmer, by byte 0.
namespace framekind {
constexpr std::uint8_t readback = 10;
constexpr std::uint8_t fastblock = 11;
constexpr std::uint8_t listmode = 13;
}  // namespace framekind

constexpr std::size_t recordplace = 4;  // of the parameter record in a frame

std::vector<std::uint8_t> contents(Chip& chip) {
    std::vector<std::uint8_t> all;
    for (const StateSection& section : chip.state())
        all.insert(all.end(), section.bytes.begin(), section.bytes.end());
    return all;
}

std::uint32_t threebytes(std::span<const std::uint8_t> bytes, std::size_t at) {
    return bytes[at] | static_cast<std::uint32_t>(bytes[at + 1]) << 8 |
           static_cast<std::uint32_t>(bytes[at + 2]) << 16;
}

}  // namespace

template <typename Ask>
bool SimProgrammer::anypart(Ask ask) {
    return std::ranges::any_of(parts_ | std::views::reverse,
                               [&](const auto& part) { return ask(*part); });
}

SimProgrammer::SimProgrammer(SimSetting setting)
    : faults_(std::move(setting.faults)),
      image_(std::move(setting.image)),
      board_(std::move(setting.chip), faults_.nopower),
      bulk_(std::move(setting.wake)) {
    constexpr std::size_t usuallist = 1U << 20;  // entries
    list_.reserve(usuallist);
    if (image_ && loadimage(image_->path, image_->device, chip().state()))
        saved_ = contents(chip());
    if (DebugPort* port = chip().debugport()) addpart(makearmpart(*port, faults_));
}

SimProgrammer::~SimProgrammer() = default;

std::unique_ptr<DevCore> SimProgrammer::devcore(SharedVariables& s) {
    return std::make_unique<SimDevCore>(*this, s);
}

std::unique_ptr<UsbTransport> SimProgrammer::transport() {
    return std::make_unique<SimTransport>(*this);
}

// --- the command list ----------------------------------------------------------------------------

void SimProgrammer::runlist() {
    for (const ListEntry& entry : list_) run(entry);
    list_.clear();
}

void SimProgrammer::run(const ListEntry& entry) {
    switch (entry.kind) {
        case ListEntry::Kind::write:
            return writeregister(entry.value, entry.reg);
        case ListEntry::Kind::read:
            return readback_.append(board_.readregister(entry.reg));
        case ListEntry::Kind::pauseshort:
            return board_.pass(entry.value, microsecond);
        case ListEntry::Kind::pauselong:
            return board_.pass(entry.value, millisecond);
        case ListEntry::Kind::bus:
            return board_.movebus(entry.value, entry.reg, entry.control);
        case ListEntry::Kind::busturn:
            return board_.turnbus(entry.reg, entry.control);
    }
}

void SimProgrammer::writeregister(std::int32_t value, std::uint8_t reg) {
    if (reg < shift::first || reg > shift::last) return board_.writeregister(reg, value);
    if (const auto read = engine_.run(reg, static_cast<std::uint8_t>(value)))
        readback_.append(*read);
}

// --- frames and transfers ------------------------------------------------------------------------

int SimProgrammer::frame(std::span<const std::uint8_t> frame) {
    board_.pass(steptime::frame);
    if (frame.empty()) return 1;
    if (anypart([&](FirmwarePart& part) { return part.frame(frame); })) return 0;
    switch (frame[0]) {
        case framekind::readback:
            readbackframe(frame);
            break;
        case framekind::fastblock:
            fastblock(frame);
            break;
        case framekind::listmode:
            listframe(frame);
            break;
        default:  // nothing that this firmware knows
            break;
    }
    return 0;
}

// Bytes 1 and 2: length of a block, low byte first; 0 resets.
void SimProgrammer::readbackframe(std::span<const std::uint8_t> frame) {
    if (frame.size() < 3) return;
    requested_ = (frame[1] | frame[2]) != 0;
    if (requested_)
        readback_.arm();
    else
        readback_.clear();
}

void SimProgrammer::listframe(std::span<const std::uint8_t> frame) {
    if (frame.size() > 1) engine_.setmode(frame[1]);
    if (frame.size() >= recordplace + recordlength)
        engine_.setrecord(frame.subspan<recordplace, recordlength>());
}

// Bytes 2 to 4: first address on the bus, 5 to 7: count.
void SimProgrammer::fastblock(std::span<const std::uint8_t> frame) {
    constexpr std::uint8_t readstrobe = 249;
    constexpr std::uint8_t noread = 253;
    if (frame.size() < 8) return;
    readback_.clear();
    requested_ = true;
    const std::uint32_t first = threebytes(frame, 2);
    const std::uint32_t count = threebytes(frame, 5);
    for (std::uint32_t i = 0; i < count; ++i) {
        const auto address = static_cast<std::int32_t>(first + i);
        board_.movebus(address, 0, readstrobe);
        readback_.append(board_.readregister(0));
        board_.movebus(address, 0, noread);
    }
}

void SimProgrammer::bulkread(std::span<std::uint8_t> target, std::uint8_t* cell) {
    std::atomic_ref<std::uint8_t>(*cell).store(static_cast<std::uint8_t>(BulkState::running),
                                               std::memory_order_release);
    const bool hangs = faults_.bulkhang.strikes();
    const bool fails = faults_.bulkfail.strikes();
    if (hangs) return;
    BulkDelivery delivery{.data = {}, .target = target, .cell = cell, .end = BulkState::failed};
    if (!fails) {
        delivery.data.resize(target.size());
        delivery.end = collect(delivery.data);
        if (delivery.end != BulkState::done) delivery.data.clear();
    }
    bulk_.deliver(std::move(delivery));
}

// The bytes of a bulk read: data, and one end byte of 0.
BulkState SimProgrammer::collect(std::span<std::uint8_t> data) {
    board_.pass(data.size() * steptime::bulkbyte);
    if (anypart([&](FirmwarePart& part) { return part.bulkread(data); })) return BulkState::done;
    if (!requested_ || data.empty()) return BulkState::failed;
    const std::vector<std::uint8_t> block = readback_.next(data.size() - 1);
    std::ranges::copy(block, data.begin());
    data.back() = 0;
    readback_.pass(block.size());
    requested_ = false;
    return BulkState::done;
}

int SimProgrammer::bulkwrite(std::span<const std::uint8_t> source) {
    board_.pass(source.size() * steptime::bulkbyte);
    if (faults_.sendfail.strikes()) return 1;
    return anypart([&](FirmwarePart& part) { return part.bulkwrite(source); }) ? 0 : 1;
}

bool SimProgrammer::transferwait(std::uint8_t count, std::span<std::uint8_t> ibuf1) {
    board_.pass(steptime::frame);
    if (faults_.transferfail.strikes()) return false;
    std::optional<bool> answer;
    anypart([&](FirmwarePart& part) {
        answer = part.transferwait(count, ibuf1);
        return answer.has_value();
    });
    return answer.value_or(false);
}

void SimProgrammer::loadalgobuf(std::int32_t& length, std::span<std::uint8_t> algobuf) {
    anypart([&](FirmwarePart& part) { return part.loadalgobuf(length, algobuf); });
}

// --- power and image -----------------------------------------------------------------------------

void SimProgrammer::selectarm(ArmMode mode) {
    for (const auto& part : parts_) part->selected(mode);
}

void SimProgrammer::powerdown() {
    bulk_.drain();
    list_.clear();  // it was meant for the powered chip
    board_.powerdown();
    for (const auto& part : parts_) part->powerdown();
    try {
        save();
    } catch (const RunFault&) {  // told by the host's own save()
    }
}

void SimProgrammer::save() {
    if (!image_) return;
    std::vector<std::uint8_t> now = contents(chip());
    if (now == saved_) return;
    saveimage(image_->path, image_->device, chip().state());
    saved_ = std::move(now);
}

}  // namespace keld2::sim
