#include "host/map/fusepicture.h"

#include <gtest/gtest.h>

namespace keld2::host {
namespace {

TEST(FusePicture, TakesItsRowsFromTheChip) {
    EXPECT_EQ(makepicture(std::string(17200, '1'), "", 172).rows(), 100u);
    EXPECT_EQ(makepicture("111", "", 2).rows(), 2u);  // the last one is not full
    EXPECT_EQ(makepicture(std::string(12, '1'), "", 0).width, 4u);
    EXPECT_EQ(makepicture("", "", 0).rows(), 0u);
}

TEST(FusePicture, MarksWhatDiffersOrIsMissing) {
    const FusePicture picture = makepicture("1010", "100", 2);
    EXPECT_EQ(picture.differs, (std::vector<bool>{false, false, true, true}));
    EXPECT_EQ(picture.differences(), 2u);
    EXPECT_EQ(makepicture("1010", "", 2).differences(), 0u);
}

TEST(FusePicture, DrawsTextTwoRowsALine) {
    EXPECT_EQ(textof(makepicture("110100", "", 2), false), "▀█\n  \n");
    const FusePicture differing = makepicture("1111", "1101", 2);
    EXPECT_EQ(textof(differing, false), "██\nrows with differences: 1\n");
    EXPECT_EQ(textof(differing, true), "\x1b[37;41m█\x1b[0m█\n");
}

TEST(FusePicture, DrawsRunsOfOneShadeInSvg) {
    const std::string svg = svgof(makepicture("110000", "110001", 3));
    EXPECT_NE(svg.find("viewBox=\"0 0 3 2\""), std::string::npos);
    EXPECT_NE(svg.find("<rect x=\"0\" y=\"0\" width=\"2\" height=\"1\" fill=\"#e6eaf0\"/>"),
              std::string::npos);
    EXPECT_NE(svg.find("<rect x=\"2\" y=\"1\" width=\"1\" height=\"1\" fill=\"#c61a1a\"/>"),
              std::string::npos);
}

TEST(FusePicture, WritesAPngOfFourPixelsAFuse) {
    const std::string png = pngof(makepicture(std::string(50, '0'), "", 10));
    ASSERT_GT(png.size(), 33u);
    EXPECT_EQ(png.substr(1, 3), "PNG");
    EXPECT_EQ(png.substr(16, 8), std::string("\0\0\0\x28\0\0\0\x14", 8));  // 40 by 20
}

}  // namespace
}  // namespace keld2::host
