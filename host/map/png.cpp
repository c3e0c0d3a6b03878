#include <png.h>

#include <array>
#include <vector>

#include "host/hosterror.h"
#include "host/map/shades.h"

namespace keld2::host {

namespace {

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

}  // namespace

std::string pngof(const FusePicture& picture) { return PngWriter().write(picture); }

}  // namespace keld2::host
