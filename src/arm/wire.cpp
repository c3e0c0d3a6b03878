#include "arm/wire.h"

#include <initializer_list>

#include "platform/numbers.h"

namespace keld2 {

namespace {

// Frame kinds: byte 0.
constexpr std::uint8_t transferkind = 0x0A;
constexpr std::uint8_t imagekind = 0x33;
constexpr std::uint8_t commandkind = 0x34;
constexpr std::uint8_t announcekind = 0x5A;
// Byte 1 of the command frames that are no operations.
constexpr std::uint8_t firmwarecommand = 0x1A;
constexpr std::uint8_t devicecodecommand = 0x1D;
constexpr std::uint8_t stopcommand = 0x1E;
// Byte 2 of image and transfer frames.
constexpr std::uint8_t towrite = 0x80;
constexpr std::uint8_t toread = 0x40;

constexpr std::uint8_t lastblockmark = 0x80;  // of the bank byte
constexpr std::uint8_t recordwait = 15;       // passed to transferwait
constexpr int readattempts = 2;

int sendframe(const ArmContext& c, std::initializer_list<std::uint8_t> head, std::size_t length) {
    auto& frame = c.s.ubuf1;
    std::int64_t at = 0;
    for (const std::uint8_t byte : head) frame[at++] = byte;
    (void)frame[static_cast<std::int64_t>(length) - 1];  // within the frame
    return c.usb.usbcomwrite({frame.data(), length});
}

constexpr std::uint8_t lowbyte(std::int32_t x) { return static_cast<std::uint8_t>(x & 255); }

// Read has no number of its own behind Auto Program and itself.
std::uint8_t operationbyte(std::uint8_t op) { return op == operation::read ? op : lowbyte(op + 1); }

std::u16string datadigits(const ArmContext& c, int low) {
    const std::u16string text = bytedigits(c.helper, c.s.ibuf1[low]);
    return c.s.wordmode[0] == 1 ? text : bytedigits(c.helper, c.s.ibuf1[low + 1]) + text;
}

void startread(const ArmContext& c, std::int16_t mode, std::int32_t address, std::int32_t length) {
    auto& target = mode == 0 ? c.s.ibuffer : c.s.ibuf2;
    const std::int64_t from = mode == 0 ? address : 0;
    (void)target[from + length - 1];  // within the block
    c.usb.usbbulkread({&target[from], static_cast<std::size_t>(length)}, &c.s.usbpip2readresult[0]);
}

}  // namespace

void sendannounce(const ArmContext& c) {
    SharedVariables& s = c.s;
    s.ubuf1[0] = announcekind;
    s.ubuf1[1] = checkedbyte(s.wsign[1] + s.wsign[2]);
    sendframe(c, {}, 8);
}

void sendimagewrite(const ArmContext& c) { sendframe(c, {imagekind, 1, towrite}, 8); }

void sendimageread(const ArmContext& c) { sendframe(c, {imagekind, 1, toread}, 8); }

void sendfirmwarequery(const ArmContext& c) {
    sendframe(c, {commandkind, firmwarecommand, 0x00, 0x10, 0x00}, 16);
}

void senddevicecode(const ArmContext& c) {
    sendframe(c, {commandkind, devicecodecommand, c.s.rambknum[0], 0}, 16);
}

void sendstop(const ArmContext& c) { sendframe(c, {commandkind, stopcommand}, 8); }

void sendoperation(const ArmContext& c, std::uint8_t op, std::int32_t block, bool mark) {
    const auto bank = static_cast<std::uint8_t>(c.s.rambknum[0] | (mark ? lastblockmark : 0));
    sendframe(c, {commandkind, operationbyte(op), bank, lowbyte(block), lowbyte(block >> 8)}, 16);
}

int sendwriteselect(const ArmContext& c, std::uint8_t side) {
    const int sent = sendframe(c, {transferkind, 0, towrite, side}, 4);
    c.s.prgresult.release(0, lowbyte(sent));
    return sent;
}

void sendreadselect(const ArmContext& c, std::int32_t bulk) {
    sendframe(c, {transferkind, lowbyte(bulk), toread, bankside(c)}, 8);
}

std::uint8_t bankside(const ArmContext& c) { return c.s.rambknum[0] == 1 ? 2 : 1; }

void clearrecord(const ArmContext& c, int last) {
    for (int i = 0; i <= last; ++i) c.s.ibuf1[i] = 0;
}

bool nextrecord(const ArmContext& c) {
    c.platform.service();
    return c.devcore.transferwait(recordwait);
}

bool stopasked(const ArmContext& c) { return c.s.prgresult.acquire(0) == result::stopped; }

bool obeysstop(const ArmJob& job) {
    const ArmContext& c = job.c;
    if (!job.profile.stopstransfers) return stopasked(c);
    if (c.s.ibuf1[1] == armstate::stopped) {
        c.s.prgresult.release(0, result::stopped);
        return true;
    }
    if (stopasked(c)) sendstop(c);
    return false;
}

std::u16string addressdigits(const ArmContext& c) { return longdigits(c, failureaddress(c)); }

std::u16string devicedata(const ArmContext& c) { return datadigits(c, 7); }

std::u16string bufferdata(const ArmContext& c) { return datadigits(c, 9); }

std::u16string longdigits(const ArmContext& c, std::uint32_t value) {
    std::u16string text;
    for (int shift = 24; shift >= 0; shift -= 8)
        text += bytedigits(c.helper, static_cast<std::uint8_t>(value >> shift));
    return text;
}

std::uint32_t failureaddress(const ArmContext& c) {
    std::uint32_t address = 0;
    for (int i = 6; i >= 3; --i) address = (address << 8) | c.s.ibuf1[i];
    return address;
}

ArmReadState readstate(const ArmContext& c) {
    const auto state = c.s.usbpip2readresult.acquire(0);
    if (state > static_cast<std::uint8_t>(BulkState::stillrunning)) return ArmReadState::failed;
    return state == static_cast<std::uint8_t>(BulkState::done) ? ArmReadState::done
                                                               : ArmReadState::running;
}

int armbulkread(const ArmContext& c, std::int16_t mode, std::int32_t address, std::int32_t length) {
    for (int attempt = 0; attempt < readattempts; ++attempt) {
        c.s.usbpip2readresult.release(0, 0);
        startread(c, mode, address, length);
        for (;;) {
            c.platform.service();
            const ArmReadState state = readstate(c);
            if (state == ArmReadState::failed) break;
            const std::uint8_t ended = c.s.prgresult.acquire(0);
            if (ended == result::stopped || ended == result::timedout) return armstatus::brokenoff;
            if (state == ArmReadState::done) return armstatus::goon;
        }
    }
    return armstatus::brokenoff;
}

int sendbulk(const ArmContext& c, const ArmBulk& bulk) {
    auto& buffer = c.s.ibuffer;
    (void)buffer[bulk.offset + bulk.length - 1];  // within the block
    const int sent =
        c.usb.usbbulkwrite({&buffer[bulk.offset], static_cast<std::size_t>(bulk.length)});
    c.s.prgresult.release(0, lowbyte(sent));
    return sent;
}

}  // namespace keld2
