#include "host/files/srecord.h"

#include <algorithm>
#include <array>
#include <numeric>

#include "host/files/textrecords.h"

namespace keld2::host {

namespace {

enum class Role { header, data, reserved, count, end };

struct RecordRow {
    Role role;
    std::size_t addresslength;  // bytes of the address or count field
};

// By the digit behind the S.
constexpr std::array<RecordRow, 10> recordrows{{{Role::header, 2},
                                                {Role::data, 2},
                                                {Role::data, 3},
                                                {Role::data, 4},
                                                {Role::reserved, 0},
                                                {Role::count, 2},
                                                {Role::count, 3},
                                                {Role::end, 4},
                                                {Role::end, 3},
                                                {Role::end, 2}}};
constexpr std::size_t bytesperrecord = 16;

std::uint8_t invertedsum(const std::vector<std::uint8_t>& bytes) {
    return static_cast<std::uint8_t>(~std::accumulate(bytes.begin(), bytes.end(), 0));
}

class Reader {
  public:
    Reader(std::string_view text, const std::string& name)
        : lines_(textlines(text)), name_(name), builder_(name) {}

    Image read() {
        for (const TextLine& line : lines_) {
            if (ended_) refuseline(name_, line.number, "text behind the end record");
            take(line);
        }
        if (!ended_ && !counted_)
            refusefile(name_,
                       "the file ends without an end record (S7, S8, S9) or a count (S5, S6)");
        image_.segments = builder_.finish();
        return std::move(image_);
    }

  private:
    const RecordRow& rowof(const TextLine& line) const {
        if (line.text[0] != 'S')
            refuseline(name_, line.number,
                       shown(line.text[0]) + " begins the record, expected 'S'");
        const char type = line.text.size() > 1 ? line.text[1] : ' ';
        if (type < '0' || type > '9' || recordrows[std::size_t(type - '0')].role == Role::reserved)
            refuseline(name_, line.number,
                       "record type S" + std::string(1, type) + ", expected S0 to S3 or S5 to S9");
        return recordrows[std::size_t(type - '0')];
    }

    void take(const TextLine& line) {
        const RecordRow& row = rowof(line);
        std::vector<std::uint8_t> bytes = recordbytes(name_, line, 2);
        checkrecord(line, row, bytes);
        std::uint32_t address = 0;
        for (std::size_t i = 1; i <= row.addresslength; ++i) address = address << 8 | bytes[i];
        const std::uint8_t* payload = bytes.data() + 1 + row.addresslength;
        const std::size_t count = bytes.size() - row.addresslength - 2;
        switch (row.role) {
            case Role::header:
                image_.header.assign(payload, payload + count);
                break;
            case Role::data:
                builder_.add(address, payload, count, line.number);
                ++datarecords_;
                counted_ = false;
                break;
            case Role::count:
                takecount(line, address);
                break;
            default:
                ended_ = true;
                image_.entry = address;
                break;
        }
    }

    void checkrecord(const TextLine& line, const RecordRow& row,
                     std::vector<std::uint8_t>& bytes) const {
        const std::size_t least = row.addresslength + 2;
        if (bytes.size() < least)
            refuseline(name_, line.number,
                       "record has " + counted(bytes.size(), "byte") + ", expected at least " +
                           std::to_string(least));
        if (bytes.size() - 1 != bytes[0])
            refuseline(name_, line.number,
                       "record holds " + counted(bytes.size() - 1, "byte") +
                           " behind its length byte, which says " + std::to_string(bytes[0]));
        const std::uint8_t checksum = bytes.back();
        const std::uint8_t sum = invertedsum({bytes.begin(), bytes.end() - 1});
        if (sum != checksum)
            refuseline(name_, line.number,
                       "checksum is " + hexdigits(checksum, 2) + ", expected " + hexdigits(sum, 2));
        const bool mayhavedata = row.role == Role::header || row.role == Role::data;
        if (!mayhavedata && bytes.size() != least)
            refuseline(name_, line.number,
                       "record of type " + std::string(line.text.substr(0, 2)) + " holds " +
                           counted(bytes.size() - least, "data byte") + ", expected 0");
    }

    void takecount(const TextLine& line, std::uint32_t count) {
        if (count != datarecords_)
            refuseline(name_, line.number,
                       "count record says " + counted(count, "data record") + ", the file has " +
                           std::to_string(datarecords_) + " before it");
        counted_ = true;
    }

    std::vector<TextLine> lines_;
    const std::string& name_;
    ImageBuilder builder_;
    Image image_;
    std::uint32_t datarecords_ = 0;
    bool counted_ = false;  // a count stands behind the last data record
    bool ended_ = false;
};

void appendrecord(std::string& out, char type, std::uint32_t address, const std::uint8_t* data,
                  std::size_t count) {
    const std::size_t addresslength = recordrows[std::size_t(type - '0')].addresslength;
    std::vector<std::uint8_t> bytes{static_cast<std::uint8_t>(addresslength + count + 1)};
    for (std::size_t i = addresslength; i > 0; --i)
        bytes.push_back(static_cast<std::uint8_t>(address >> (8 * (i - 1))));
    bytes.insert(bytes.end(), data, data + count);
    bytes.push_back(invertedsum(bytes));
    out += 'S';
    out += type;
    for (const std::uint8_t b : bytes) appendrecordbyte(out, b);
    out += '\n';
}

// '1', '2' or '3': the data records whose addresses reach the image's last byte and its entry.
char datatype(const Image& image) {
    std::uint64_t highest = image.entry.value_or(0);
    if (!image.segments.empty()) highest = std::max(highest, image.segments.back().end() - 1);
    return highest > 0xFFFFFF ? '3' : highest > 0xFFFF ? '2' : '1';
}

}  // namespace

Image readsrecord(std::string_view text, const std::string& name) {
    return Reader(text, name).read();
}

std::string writesrecord(const Image& image) {
    constexpr std::size_t longestheader = 252;  // length byte 255, address 2, checksum 1
    std::string out;
    const std::vector<std::uint8_t> header(image.header.begin(), image.header.end());
    appendrecord(out, '0', 0, header.data(), std::min(header.size(), longestheader));
    const char type = datatype(image);
    std::uint32_t records = 0;
    for (const Segment& segment : image.segments)
        for (std::size_t at = 0; at < segment.bytes.size(); at += bytesperrecord, ++records)
            appendrecord(out, type, static_cast<std::uint32_t>(segment.address + at),
                         segment.bytes.data() + at,
                         std::min(bytesperrecord, segment.bytes.size() - at));
    if (records <= 0xFFFFFF) appendrecord(out, records > 0xFFFF ? '6' : '5', records, nullptr, 0);
    appendrecord(out, static_cast<char>('0' + 10 - (type - '0')), image.entry.value_or(0), nullptr,
                 0);
    return out;
}

}  // namespace keld2::host
