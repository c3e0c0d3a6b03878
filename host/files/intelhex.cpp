#include "host/files/intelhex.h"

#include <algorithm>
#include <array>
#include <numeric>

#include "host/files/textrecords.h"

namespace keld2::host {

namespace {

enum RecordType : std::uint8_t {
    datarecord = 0,
    endrecord = 1,
    segmentaddress = 2,
    segmentstart = 3,
    linearaddress = 4,
    linearstart = 5
};
constexpr std::array<int, 6> payloadlengths{-1, 0, 2, 4, 2, 4};  // in bytes; -1: any
constexpr std::size_t overhead = 5;  // length, address (2), type, checksum
constexpr std::size_t bytesperrecord = 16;
constexpr std::uint32_t segmentsize = 0x10000;

struct Record {
    std::uint16_t address = 0;
    std::uint8_t type = 0;
    std::vector<std::uint8_t> payload;
};

std::uint8_t negatedsum(const std::vector<std::uint8_t>& bytes) {
    return static_cast<std::uint8_t>(-std::accumulate(bytes.begin(), bytes.end(), 0));
}

std::uint32_t bigendian(const std::vector<std::uint8_t>& bytes) {
    std::uint32_t value = 0;
    for (const std::uint8_t b : bytes) value = value << 8 | b;
    return value;
}

class Reader {
  public:
    Reader(std::string_view text, const std::string& name)
        : lines_(textlines(text)), name_(name), builder_(name) {}

    Image read() {
        for (const TextLine& line : lines_) {
            if (ended_) refuseline(name_, line.number, "text behind the end-of-file record");
            take(line, recordof(line));
        }
        if (!ended_) refusefile(name_, "the file ends without an end-of-file record (:00000001FF)");
        image_.segments = builder_.finish();
        return std::move(image_);
    }

  private:
    Record recordof(const TextLine& line) const {
        if (line.text[0] != ':')
            refuseline(name_, line.number,
                       shown(line.text[0]) + " begins the record, expected ':'");
        std::vector<std::uint8_t> bytes = recordbytes(name_, line, 1);
        checklength(line, bytes);
        const std::uint8_t checksum = bytes.back();
        bytes.pop_back();
        if (const std::uint8_t sum = negatedsum(bytes); sum != checksum)
            refuseline(name_, line.number,
                       "checksum is " + hexdigits(checksum, 2) + ", expected " + hexdigits(sum, 2));
        return {static_cast<std::uint16_t>(bytes[1] << 8 | bytes[2]),
                bytes[3],
                {bytes.begin() + 4, bytes.end()}};
    }

    void checklength(const TextLine& line, const std::vector<std::uint8_t>& bytes) const {
        if (bytes.size() < overhead)
            refuseline(name_, line.number,
                       "record has " + counted(bytes.size(), "byte") + ", expected at least 5");
        if (bytes.size() != bytes[0] + overhead)
            refuseline(name_, line.number,
                       "record holds " + counted(bytes.size() - overhead, "data byte") +
                           ", its length byte says " + std::to_string(bytes[0]));
    }

    void take(const TextLine& line, const Record& record) {
        checktype(line, record);
        switch (record.type) {
            case datarecord:
                takedata(line, record);
                break;
            case endrecord:
                ended_ = true;
                break;
            case segmentaddress:
            case linearaddress:
                linear_ = record.type == linearaddress;
                base_ = bigendian(record.payload) << (linear_ ? 16 : 4);
                break;
            case segmentstart:  // CS:IP
                image_.entry =
                    ((bigendian(record.payload) >> 16) << 4) + (bigendian(record.payload) & 0xFFFF);
                break;
            default:
                image_.entry = bigendian(record.payload);
                break;
        }
    }

    void checktype(const TextLine& line, const Record& record) const {
        if (record.type >= payloadlengths.size())
            refuseline(name_, line.number,
                       "record type " + hexdigits(record.type, 2) + ", expected 00 to 05");
        const int expected = payloadlengths[record.type];
        if (expected >= 0 && record.payload.size() != static_cast<std::size_t>(expected))
            refuseline(name_, line.number,
                       "record of type " + hexdigits(record.type, 2) + " holds " +
                           counted(record.payload.size(), "data byte") + ", expected " +
                           std::to_string(expected));
    }

    void takedata(const TextLine& line, const Record& record) {
        const std::size_t count = record.payload.size();
        const std::size_t room = segmentsize - record.address;
        const std::size_t straight = linear_ ? count : std::min(count, room);
        builder_.add(base_ + record.address, record.payload.data(), straight, line.number);
        builder_.add(base_, record.payload.data() + straight, count - straight, line.number);
    }

    std::vector<TextLine> lines_;
    const std::string& name_;
    ImageBuilder builder_;
    Image image_;
    std::uint32_t base_ = 0;
    bool linear_ = true;
    bool ended_ = false;
};

void appendrecord(std::string& out, std::uint16_t address, RecordType type,
                  std::vector<std::uint8_t> payload) {
    std::vector<std::uint8_t> bytes{static_cast<std::uint8_t>(payload.size()),
                                    static_cast<std::uint8_t>(address >> 8),
                                    static_cast<std::uint8_t>(address), type};
    bytes.insert(bytes.end(), payload.begin(), payload.end());
    bytes.push_back(negatedsum(bytes));
    out += ':';
    for (const std::uint8_t b : bytes) appendrecordbyte(out, b);
    out += '\n';
}

std::vector<std::uint8_t> bytesof(std::uint32_t value, int count) {
    std::vector<std::uint8_t> bytes;
    for (int shift = 8 * (count - 1); shift >= 0; shift -= 8)
        bytes.push_back(static_cast<std::uint8_t>(value >> shift));
    return bytes;
}

}  // namespace

Image readintelhex(std::string_view text, const std::string& name) {
    return Reader(text, name).read();
}

std::string writeintelhex(const Image& image) {
    std::string out;
    std::uint32_t upper = 0;
    for (const Segment& segment : image.segments) {
        for (std::size_t at = 0; at < segment.bytes.size();) {
            const auto address = static_cast<std::uint32_t>(segment.address + at);
            if (address >> 16 != upper) {
                upper = address >> 16;
                appendrecord(out, 0, linearaddress, bytesof(upper, 2));
            }
            const std::size_t count = std::min({bytesperrecord, segment.bytes.size() - at,
                                                std::size_t{segmentsize - (address & 0xFFFF)}});
            const auto from = segment.bytes.begin() + static_cast<std::ptrdiff_t>(at);
            appendrecord(out, static_cast<std::uint16_t>(address), datarecord,
                         {from, from + static_cast<std::ptrdiff_t>(count)});
            at += count;
        }
    }
    if (image.entry) appendrecord(out, 0, linearstart, bytesof(*image.entry, 4));
    appendrecord(out, 0, endrecord, {});
    return out;
}

}  // namespace keld2::host
