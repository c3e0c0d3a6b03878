// What both editors need of the main buffer and of hexadecimal digits.
#pragma once

#include <cstdint>
#include <optional>

#include "shared/sharedvariables.h"

namespace keld2 {

// The bytes of ibuffer counted from tlength[0]. Bytes outside the buffer are skipped: they read as
// nothing and are not written.
class ImageCells {
  public:
    explicit ImageCells(SharedVariables& s) : s_(s) {}

    std::int64_t imagelength() const { return s_.tlength[0]; }
    std::optional<std::uint8_t> read(std::int64_t offset) const {
        const std::int64_t at = imagelength() + offset;
        return s_.ibuffer.holds(at, at) ? std::optional(s_.ibuffer[at]) : std::nullopt;
    }
    void write(std::int64_t offset, std::uint8_t value) {
        const std::int64_t at = imagelength() + offset;
        if (s_.ibuffer.holds(at, at)) s_.ibuffer[at] = value;
    }

  private:
    SharedVariables& s_;
};

// The value of a hexadecimal digit of either case; nothing for any other character.
constexpr std::optional<unsigned> hexvalue(char16_t c) {
    if (c >= u'0' && c <= u'9') return static_cast<unsigned>(c - u'0');
    if (c >= u'a' && c <= u'f') return static_cast<unsigned>(c - u'a' + 10);
    if (c >= u'A' && c <= u'F') return static_cast<unsigned>(c - u'A' + 10);
    return std::nullopt;
}

}  // namespace keld2
