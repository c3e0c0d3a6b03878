#include "sim/chipimage.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/fault.h"
#include "sim/replacefile.h"

namespace keld2::sim {

namespace {

constexpr std::string_view firstline = "keld2 chip image 1";
constexpr std::string_view lastline = "data";

constexpr std::array<std::uint32_t, 256> crctable = [] {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t i = 0; i < table.size(); ++i) {
        table[i] = i;
        for (int bit = 0; bit < 8; ++bit)
            table[i] = (table[i] & 1) != 0 ? 0xEDB88320U ^ (table[i] >> 1) : table[i] >> 1;
    }
    return table;
}();

std::uint32_t crc32(std::span<const std::uint8_t> bytes) {
    std::uint32_t crc = 0xFFFFFFFFU;
    for (const std::uint8_t b : bytes) crc = crctable[(crc ^ b) & 255] ^ (crc >> 8);
    return ~crc;
}

std::string hexadecimal(std::uint32_t value) {
    std::string text;
    for (int shift = 28; shift >= 0; shift -= 4)
        text.push_back("0123456789abcdef"[(value >> shift) & 15]);
    return text;
}

[[noreturn]] void refuse(const std::filesystem::path& file, const std::string& what) {
    throw RunFault(what, "chip image " + file.string());
}

std::string sectionline(const StateSection& section) {
    return "section " + std::string(section.name) + " " + std::to_string(section.bytes.size()) +
           " ";
}

class ImageText {
  public:
    ImageText(const std::filesystem::path& file, std::string text)
        : file_(file), text_(std::move(text)) {}

    std::string_view line(std::string_view expected) {
        const std::string_view rest = std::string_view(text_).substr(at_);
        const std::size_t end = rest.find('\n');
        if (end == std::string_view::npos)
            refuse(file_, "ends early, expected the line '" + std::string(expected) + "'");
        at_ += end + 1;
        return rest.substr(0, end);
    }
    void expect(std::string_view expected) {
        const std::string_view found = line(expected);
        if (found != expected)
            refuse(file_, "has the line '" + std::string(found.substr(0, 80)) + "', expected '" +
                              std::string(expected) + "'");
    }
    // The line of a section; answers its checksum as it stands there.
    std::string_view section(const StateSection& section) {
        const std::string expected = sectionline(section);
        const std::string_view found = line(expected + "CRC");
        if (!found.starts_with(expected))
            refuse(file_, "has the line '" + std::string(found.substr(0, 80)) + "', expected '" +
                              expected + "CRC'");
        return found.substr(expected.size());
    }
    std::span<const std::uint8_t> data() const {
        return {reinterpret_cast<const std::uint8_t*>(text_.data()) + at_, text_.size() - at_};
    }

  private:
    const std::filesystem::path& file_;
    std::string text_;
    std::size_t at_ = 0;
};

// The sections' bytes of a file whose data must be whole and sound.
void checkdata(const std::filesystem::path& file, std::span<const std::uint8_t> data,
               std::span<const StateSection> sections, std::span<const std::string_view> crcs) {
    std::size_t wanted = 0;
    for (const StateSection& section : sections) wanted += section.bytes.size();
    if (data.size() != wanted)
        refuse(file, "has " + std::to_string(data.size()) + " bytes of data, expected " +
                         std::to_string(wanted));
    for (std::size_t i = 0; i < sections.size(); ++i) {
        const auto part = data.first(sections[i].bytes.size());
        data = data.subspan(part.size());
        if (hexadecimal(crc32(part)) != crcs[i])
            refuse(file, "is damaged: the checksum of section '" + std::string(sections[i].name) +
                             "' is " + hexadecimal(crc32(part)) + ", expected " +
                             std::string(crcs[i]));
    }
}

}  // namespace

bool loadimage(const std::filesystem::path& file, const std::string& device,
               std::span<const StateSection> sections) {
    if (!std::filesystem::exists(file)) return false;
    if (std::filesystem::is_directory(file)) refuse(file, "is a folder, expected a chip image");
    std::ifstream in(file, std::ios::binary);
    if (!in) refuse(file, "cannot be opened for reading");
    ImageText image(file, std::string(std::istreambuf_iterator<char>(in), {}));
    image.expect(firstline);
    image.expect("device " + device);
    std::vector<std::string_view> crcs;
    for (const StateSection& section : sections) crcs.push_back(image.section(section));
    image.expect(lastline);
    auto data = image.data();
    checkdata(file, data, sections, crcs);
    for (const StateSection& section : sections) {
        std::ranges::copy(data.first(section.bytes.size()), section.bytes.begin());
        data = data.subspan(section.bytes.size());
    }
    return true;
}

void saveimage(const std::filesystem::path& file, const std::string& device,
               std::span<const StateSection> sections) {
    std::string text = std::string(firstline) + "\ndevice " + device + "\n";
    for (const StateSection& section : sections)
        text += sectionline(section) + hexadecimal(crc32(section.bytes)) + "\n";
    text += std::string(lastline) + "\n";
    for (const StateSection& section : sections)
        text.append(reinterpret_cast<const char*>(section.bytes.data()), section.bytes.size());
    try {
        replacefile(file, text);
    } catch (const std::system_error& error) {
        refuse(file, "cannot be written: " + error.code().message());
    }
}

}  // namespace keld2::sim
