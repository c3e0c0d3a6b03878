#include "host/desktop/hexview.h"

#include <QFontDatabase>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>

namespace keld2::desktop {

namespace {

constexpr int margin = 6;          // pixels
constexpr int addresscolumns = 8;  // characters of an address and the gap behind it
constexpr int bytecolumns = 3;     // characters of a byte and the gap behind it
const QColor differing(0xB0, 0x10, 0x10);
const QColor differingbackground(0xFF, 0xE0, 0xDC);

QString hexadecimal(std::int64_t value, int digits) {
    return QString("%1").arg(value, digits, 16, QLatin1Char('0')).toUpper();
}

}  // namespace

HexView::HexView(QWidget* parent) : QAbstractScrollArea(parent) {
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setMouseTracking(true);
    setAccessibleName("Main buffer");
    const int width = xofcharacter(rowbytes) + margin;
    setMinimumWidth(width + verticalScrollBar()->sizeHint().width() + 2 * frameWidth());
}

void HexView::setbytes(std::vector<std::uint8_t> bytes) {
    bytes_ = std::move(bytes);
    differences_.clear();
    updatescrollbar();
    viewport()->update();
}

void HexView::setdifferences(std::set<std::int64_t> addresses) {
    differences_ = std::move(addresses);
    viewport()->update();
}

void HexView::showaddress(std::int64_t address) {
    const std::int64_t last = std::max<std::int64_t>(rows() - 1, 0);
    const std::int64_t row = std::clamp<std::int64_t>(address / rowbytes, 0, last);
    const auto visible = static_cast<std::int64_t>(verticalScrollBar()->pageStep());
    if (row < firstrow() || row >= firstrow() + visible)
        verticalScrollBar()->setValue(static_cast<int>(row));
}

std::int64_t HexView::firstrow() const { return verticalScrollBar()->value(); }

std::int64_t HexView::rows() const {
    return (static_cast<std::int64_t>(bytes_.size()) + rowbytes - 1) / rowbytes;
}

int HexView::columnwidth() const { return fontMetrics().horizontalAdvance(QLatin1Char('0')); }

int HexView::xofbyte(std::int64_t column) const {
    return margin + columnwidth() * static_cast<int>(addresscolumns + bytecolumns * column);
}

int HexView::xofcharacter(std::int64_t column) const {
    return xofbyte(rowbytes) + columnwidth() * static_cast<int>(1 + column);
}

void HexView::updatescrollbar() {
    const int visible = std::max(viewport()->height() / fontMetrics().height(), 1);
    verticalScrollBar()->setPageStep(visible);
    verticalScrollBar()->setRange(0, std::max(static_cast<int>(rows()) - visible, 0));
}

void HexView::resizeEvent(QResizeEvent*) { updatescrollbar(); }

void HexView::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    painter.fillRect(event->rect(), palette().base());
    const int height = fontMetrics().height();
    int y = 0;
    for (std::int64_t row = firstrow(); row < rows() && y < viewport()->height(); ++row) {
        paintrow(painter, row, y);
        y += height;
    }
}

void HexView::paintrow(QPainter& painter, std::int64_t row, int y) const {
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(margin, y + fontMetrics().ascent(), hexadecimal(row * rowbytes, 6));
    const auto end =
        std::min<std::int64_t>((row + 1) * rowbytes, static_cast<std::int64_t>(bytes_.size()));
    for (std::int64_t address = row * rowbytes; address < end; ++address)
        paintbyte(painter, address, y);
}

void HexView::paintbyte(QPainter& painter, std::int64_t address, int y) const {
    const std::uint8_t byte = bytes_[static_cast<std::size_t>(address)];
    const std::int64_t column = address % rowbytes;
    const bool differs = differences_.contains(address);
    if (differs)
        painter.fillRect(xofbyte(column) - columnwidth() / 2, y, bytecolumns * columnwidth(),
                         fontMetrics().height(), differingbackground);
    painter.setPen(differs ? differing : palette().color(QPalette::Text));
    const int baseline = y + fontMetrics().ascent();
    painter.drawText(xofbyte(column), baseline, hexadecimal(byte, 2));
    const QChar shown = byte >= 32 && byte < 127 ? QChar(byte) : QChar(u'.');
    painter.drawText(xofcharacter(column), baseline, QString(shown));
}

void HexView::mouseMoveEvent(QMouseEvent* event) {
    const QPoint at = event->position().toPoint();
    const std::int64_t row = firstrow() + at.y() / fontMetrics().height();
    const std::int64_t column = (at.x() - xofbyte(0)) / (bytecolumns * columnwidth());
    const std::int64_t address = row * rowbytes + column;
    const bool there = at.x() >= xofbyte(0) && column < rowbytes && address >= 0 &&
                       address < static_cast<std::int64_t>(bytes_.size());
    emit pointed(there ? address : -1);
}

void HexView::leaveEvent(QEvent*) { emit pointed(-1); }

}  // namespace keld2::desktop
