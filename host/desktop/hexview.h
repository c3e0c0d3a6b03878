// HexView: bytes as hexadecimal and as characters, sixteen a row, differences marked.
#pragma once

#include <QAbstractScrollArea>
#include <cstdint>
#include <set>
#include <vector>

namespace keld2::desktop {

class HexView final : public QAbstractScrollArea {
    Q_OBJECT

  public:
    static constexpr std::int64_t rowbytes = 16;

    explicit HexView(QWidget* parent = nullptr);

    void setbytes(std::vector<std::uint8_t> bytes);
    const std::vector<std::uint8_t>& bytes() const { return bytes_; }
    // Addresses whose byte is not the chip's; shown until the bytes change.
    void setdifferences(std::set<std::int64_t> addresses);
    const std::set<std::int64_t>& differences() const { return differences_; }
    // Scrolls so that the address stands in sight; beyond the bytes: the nearest one.
    void showaddress(std::int64_t address);
    std::int64_t firstrow() const;
    std::int64_t rows() const;

  signals:
    // Where the mouse points to, for a status line; -1: nowhere.
    void pointed(qint64 address);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;

  private:
    int columnwidth() const;                 // of one character, in pixels
    int xofbyte(std::int64_t column) const;  // of its first digit
    int xofcharacter(std::int64_t column) const;
    void paintrow(QPainter& painter, std::int64_t row, int y) const;
    void paintbyte(QPainter& painter, std::int64_t address, int y) const;
    void updatescrollbar();

    std::vector<std::uint8_t> bytes_;
    std::set<std::int64_t> differences_;
};

}  // namespace keld2::desktop
