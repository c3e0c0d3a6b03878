#include "host/map/fusepicture.h"

#include <png.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <set>

#include "host/hosterror.h"

namespace keld2::host {

namespace {

constexpr std::size_t pixels = 4;  // of a fuse, each way

// What a place of the picture shows; the order is that of the palette.
enum Shade : std::size_t {
    programmed,
    unprogrammed,
    programmeddiffers,
    unprogrammeddiffers,
    nothing
};

struct Colour {
    png_byte red, green, blue;
    std::string_view name;
};

constexpr std::array<Colour, 5> palette{{{0x22, 0x2B, 0x3A, "#222b3a"},
                                         {0xE6, 0xEA, 0xF0, "#e6eaf0"},
                                         {0xC6, 0x1A, 0x1A, "#c61a1a"},
                                         {0xFF, 0x9A, 0x3C, "#ff9a3c"},
                                         {0xFF, 0xFF, 0xFF, "#ffffff"}}};

Shade shadeof(const FusePicture& picture, std::size_t row, std::size_t column) {
    const std::size_t fuse = row * picture.width + column;
    if (fuse >= picture.cells.size()) return nothing;
    const bool differs = !picture.differs.empty() && picture.differs[fuse];
    if (picture.cells[fuse] == '0') return differs ? programmeddiffers : programmed;
    return differs ? unprogrammeddiffers : unprogrammed;
}

std::size_t squarewidth(std::size_t count) {
    auto width = static_cast<std::size_t>(std::sqrt(static_cast<double>(count)));
    while (width > 1 && count % width != 0) --width;
    return std::max<std::size_t>(count == 0 ? 1 : count / std::max<std::size_t>(width, 1), 1);
}

// libpng's writer for the time of one picture.
class PngWriter {
  public:
    PngWriter() {
        png_ = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, &PngWriter::fail, nullptr);
        info_ = png_create_info_struct(png_);
        png_set_write_fn(png_, &bytes_, &PngWriter::append, nullptr);
    }
    ~PngWriter() { png_destroy_write_struct(&png_, &info_); }
    PngWriter(const PngWriter&) = delete;
    PngWriter& operator=(const PngWriter&) = delete;

    std::string write(const FusePicture& picture) {
        const std::size_t width = picture.width * pixels;
        png_set_IHDR(png_, info_, static_cast<png_uint_32>(width),
                     static_cast<png_uint_32>(picture.rows() * pixels), 8, PNG_COLOR_TYPE_PALETTE,
                     PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        std::array<png_color, palette.size()> colours{};
        for (std::size_t i = 0; i < palette.size(); ++i)
            colours[i] = {palette[i].red, palette[i].green, palette[i].blue};
        png_set_PLTE(png_, info_, colours.data(), static_cast<int>(colours.size()));
        png_write_info(png_, info_);
        std::vector<png_byte> line(width);
        for (std::size_t row = 0; row < picture.rows(); ++row) {
            for (std::size_t x = 0; x < width; ++x)
                line[x] = static_cast<png_byte>(shadeof(picture, row, x / pixels));
            for (std::size_t i = 0; i < pixels; ++i) png_write_row(png_, line.data());
        }
        png_write_end(png_, info_);
        return bytes_;
    }

  private:
    static void append(png_structp png, png_bytep data, std::size_t length) {
        static_cast<std::string*>(png_get_io_ptr(png))
            ->append(reinterpret_cast<char*>(data), length);
    }
    [[noreturn]] static void fail(png_structp, png_const_charp what) {
        throw HostError(exitstatus::programfault, std::string("picture: ") + what);
    }

    std::string bytes_;
    png_structp png_ = nullptr;
    png_infop info_ = nullptr;
};

std::string rectangle(std::size_t x, std::size_t y, std::size_t width, std::string_view colour) {
    return "<rect x=\"" + std::to_string(x) + "\" y=\"" + std::to_string(y) + "\" width=\"" +
           std::to_string(width) + "\" height=\"1\" fill=\"" + std::string(colour) + "\"/>\n";
}

// The character whose upper and lower half are light where the fuses are unprogrammed.
std::string_view halfblocks(bool upper, bool lower) {
    if (upper) return lower ? "█" : "▀";
    return lower ? "▄" : " ";
}

}  // namespace

std::size_t FusePicture::differences() const {
    return static_cast<std::size_t>(std::count(differs.begin(), differs.end(), true));
}

FusePicture makepicture(std::string_view fuses, std::string_view against, std::size_t width) {
    FusePicture picture{.width = width != 0 ? width : squarewidth(fuses.size()),
                        .cells = std::string(fuses),
                        .differs = {}};
    if (against.empty()) return picture;
    picture.differs.resize(fuses.size());
    for (std::size_t i = 0; i < fuses.size(); ++i)
        picture.differs[i] = i >= against.size() || fuses[i] != against[i];
    return picture;
}

std::string svgof(const FusePicture& picture) {
    const std::string width = std::to_string(picture.width);
    const std::string height = std::to_string(picture.rows());
    std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " + width + " " +
                      height + "\" width=\"" + std::to_string(picture.width * pixels) +
                      "\" height=\"" + std::to_string(picture.rows() * pixels) +
                      "\" shape-rendering=\"crispEdges\">\n";
    for (std::size_t row = 0; row < picture.rows(); ++row)
        for (std::size_t x = 0, next = 0; x < picture.width; x = next) {  // runs of one shade
            const Shade shade = shadeof(picture, row, x);
            next = x + 1;
            while (next < picture.width && shadeof(picture, row, next) == shade) ++next;
            svg += rectangle(x, row, next - x, palette[shade].name);
        }
    return svg + "</svg>\n";
}

std::string pngof(const FusePicture& picture) { return PngWriter().write(picture); }

std::string textof(const FusePicture& picture, bool colour) {
    std::string text;
    std::set<std::size_t> rows;
    for (std::size_t row = 0; row < picture.rows(); row += 2) {
        bool red = false;
        for (std::size_t x = 0; x < picture.width; ++x) {
            const Shade upper = shadeof(picture, row, x);
            const Shade lower = shadeof(picture, row + 1, x);
            const auto light = [](Shade s) {
                return s == unprogrammed || s == unprogrammeddiffers;
            };
            const auto differs = [](Shade s) {
                return s == programmeddiffers || s == unprogrammeddiffers;
            };
            if (differs(upper)) rows.insert(row);
            if (differs(lower)) rows.insert(row + 1);
            const bool wanted = colour && (differs(upper) || differs(lower));
            if (wanted != red) text += wanted ? "\x1b[37;41m" : "\x1b[0m";
            red = wanted;
            text += halfblocks(light(upper), light(lower));
        }
        if (red) text += "\x1b[0m";
        text += '\n';
    }
    if (colour || rows.empty()) return text;
    text += "rows with differences:";
    for (const std::size_t row : rows) text += " " + std::to_string(row);
    return text + "\n";
}

}  // namespace keld2::host
