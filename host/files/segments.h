// Bytes at addresses, as the readers of image files collect them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace keld2::host {

// Bytes that stand together, from address on.
struct Segment {
    std::uint32_t address = 0;
    std::vector<std::uint8_t> bytes;

    std::uint64_t end() const { return std::uint64_t{address} + bytes.size(); }
};

// What a file says of a chip's content. Segments are in address order; none is empty, touches or
// overlaps another.
struct Image {
    std::vector<Segment> segments;
    std::optional<std::uint32_t> entry;  // start address, where the file has one
    std::string header;                  // text that goes with the file, where it has one

    std::uint64_t size() const;  // bytes in all segments
};

// Collects the data records of one file.
class ImageBuilder {
  public:
    // name: of the file, for messages.
    explicit ImageBuilder(std::string name) : name_(std::move(name)) {}

    // Bytes that stand in a line of the file. Throws HostError (65) when they go beyond the
    // address FFFFFFFF.
    void add(std::uint32_t address, const std::uint8_t* bytes, std::size_t count, std::size_t line);
    // The segments, joined. Throws HostError (65) when an address was given twice or never any.
    std::vector<Segment> finish();

  private:
    struct Piece {
        Segment segment;
        std::size_t line = 0;
    };

    void checkoverlap(const Piece& piece, std::size_t line, const Segment& before) const;

    std::string name_;
    std::vector<Piece> pieces_;
};

}  // namespace keld2::host
