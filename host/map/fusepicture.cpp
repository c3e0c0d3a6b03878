#include "host/map/fusepicture.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "host/map/shades.h"

namespace keld2::host {

namespace {

std::size_t squarewidth(std::size_t count) {
    auto width = static_cast<std::size_t>(std::sqrt(static_cast<double>(count)));
    while (width > 1 && count % width != 0) --width;
    return std::max<std::size_t>(count == 0 ? 1 : count / std::max<std::size_t>(width, 1), 1);
}

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

Shade shadeof(const FusePicture& picture, std::size_t row, std::size_t column) {
    const std::size_t fuse = row * picture.width + column;
    if (fuse >= picture.cells.size()) return nothing;
    const bool differs = !picture.differs.empty() && picture.differs[fuse];
    if (picture.cells[fuse] == '0') return differs ? programmeddiffers : programmed;
    return differs ? unprogrammeddiffers : unprogrammed;
}

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
