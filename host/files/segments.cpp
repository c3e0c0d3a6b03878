#include "host/files/segments.h"

#include <algorithm>

#include "host/files/textrecords.h"

namespace keld2::host {

std::uint64_t Image::size() const {
    std::uint64_t sum = 0;
    for (const Segment& segment : segments) sum += segment.bytes.size();
    return sum;
}

void ImageBuilder::add(std::uint32_t address, const std::uint8_t* bytes, std::size_t count,
                       std::size_t line) {
    if (count == 0) return;
    if (std::uint64_t{address} + count > 0x100000000)
        refuseline(name_, line,
                   "data from address " + hexdigits(address, 8) + " on go beyond FFFFFFFF");
    pieces_.push_back({{address, {bytes, bytes + count}}, line});
}

std::vector<Segment> ImageBuilder::finish() {
    if (pieces_.empty()) refusefile(name_, "the file holds no data");
    std::stable_sort(pieces_.begin(), pieces_.end(), [](const Piece& a, const Piece& b) {
        return a.segment.address < b.segment.address;
    });
    std::vector<Segment> segments;
    std::size_t line = 0;  // of the piece that reaches the highest address so far
    for (Piece& piece : pieces_) {
        if (!segments.empty()) checkoverlap(piece, line, segments.back());
        if (segments.empty() || segments.back().end() != piece.segment.address)
            segments.push_back(std::move(piece.segment));
        else
            segments.back().bytes.insert(segments.back().bytes.end(), piece.segment.bytes.begin(),
                                         piece.segment.bytes.end());
        line = piece.line;
    }
    return segments;
}

void ImageBuilder::checkoverlap(const Piece& piece, std::size_t line, const Segment& before) const {
    if (piece.segment.address >= before.end()) return;
    const auto [first, second] = std::minmax(line, piece.line);
    refuseline(name_, second,
               "address " + hexdigits(piece.segment.address, 4) + " was already given in line " +
                   std::to_string(first));
}

}  // namespace keld2::host
