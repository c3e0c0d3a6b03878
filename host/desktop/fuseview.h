// FuseView: a fuse map as a picture, one square a fuse; programmed fuses are dark, differences red.
#pragma once

#include <QImage>
#include <QWidget>
#include <cstdint>
#include <set>
#include <vector>

namespace keld2::desktop {

class FuseView final : public QWidget {
    Q_OBJECT

  public:
    explicit FuseView(QWidget* parent = nullptr);

    // cells: a character a fuse, '1' for an unprogrammed one. width: fuses a row, at least 1.
    void setfuses(const std::vector<std::uint8_t>& cells, const std::set<std::int64_t>& differences,
                  int width);
    const QImage& image() const { return image_; }
    // Fuses a row where nothing is known of the chip: the divisor of the count that gives the
    // picture the shape nearest to a square.
    static int columns(std::int64_t count);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QImage image_;
};

}  // namespace keld2::desktop
