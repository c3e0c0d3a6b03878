// CataloguePanel: the device catalogue with a search.
#pragma once

#include <QWidget>

#include "host/catalogue/catalogue.h"

class QLineEdit;
class QListWidget;

namespace keld2::desktop {

class CataloguePanel final : public QWidget {
    Q_OBJECT

  public:
    explicit CataloguePanel(const host::Catalogue& catalogue, QWidget* parent = nullptr);

    QLineEdit& search() { return *search_; }
    QListWidget& list() { return *list_; }
    // Marks a device without telling that it was chosen.
    void mark(const QString& name);

  signals:
    void chosen(const QString& name);

  private:
    void filter(const QString& text);

    std::vector<host::Device> devices_;
    QLineEdit* search_;
    QListWidget* list_;
};

}  // namespace keld2::desktop
