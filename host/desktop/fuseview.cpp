#include "host/desktop/fuseview.h"

#include <QPainter>
#include <cmath>

namespace keld2::desktop {

namespace {

constexpr QRgb unprogrammed = 0xFFE8E8E0, programmed = 0xFF204060, different = 0xFFD02020;

}  // namespace

FuseView::FuseView(QWidget* parent) : QWidget(parent) {
    setAccessibleName("Fuse map");
    setMinimumSize(200, 200);
}

int FuseView::columns(std::int64_t count) {
    auto width = static_cast<std::int64_t>(std::sqrt(static_cast<double>(count)));
    while (width > 1 && count % width != 0) --width;
    return static_cast<int>(width < 1 ? 1 : count / width);
}

void FuseView::setfuses(const std::vector<std::uint8_t>& cells,
                        const std::set<std::int64_t>& differences, int width) {
    const auto count = static_cast<std::int64_t>(cells.size());
    image_ = QImage(width, static_cast<int>((count + width - 1) / width), QImage::Format_RGB32);
    image_.fill(unprogrammed);
    for (std::int64_t i = 0; i < count; ++i) {
        const bool blank = (cells[static_cast<std::size_t>(i)] & 1) != 0;
        const QRgb colour = differences.contains(i) ? different : blank ? unprogrammed : programmed;
        image_.setPixel(static_cast<int>(i % width), static_cast<int>(i / width), colour);
    }
    update();
}

void FuseView::paintEvent(QPaintEvent*) {
    if (image_.isNull()) return;
    QPainter painter(this);
    const QSize size = image_.size().scaled(this->size(), Qt::KeepAspectRatio);
    painter.drawImage(QRect(QPoint((width() - size.width()) / 2, 0), size), image_);
}

}  // namespace keld2::desktop
