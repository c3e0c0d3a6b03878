#include "host/desktop/cataloguepanel.h"

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QScrollBar>
#include <QVBoxLayout>

#include "host/hosterror.h"

namespace keld2::desktop {

CataloguePanel::CataloguePanel(const host::Catalogue& catalogue, QWidget* parent)
    : QWidget(parent), search_(new QLineEdit(this)), list_(new QListWidget(this)) {
    for (const std::string& name : catalogue.names()) try {
            devices_.push_back(catalogue.find(name));
        } catch (const host::HostError&) {
            continue;  // a broken device file costs that device only
        }
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* label = new QLabel("&Device", this);
    label->setBuddy(search_);
    layout->addWidget(label);
    layout->addWidget(search_);
    layout->addWidget(list_);
    search_->setObjectName("search");
    search_->setPlaceholderText("Search name and description");
    search_->setClearButtonEnabled(true);
    list_->setObjectName("devices");
    for (const host::Device& device : devices_) {
        auto* item = new QListWidgetItem(QString::fromStdString(device.name), list_);
        item->setToolTip(QString::fromStdString(device.description));
    }
    // The chosen device stays in sight when the list gets another height.
    connect(list_->verticalScrollBar(), &QScrollBar::rangeChanged, this,
            [this] { list_->scrollToItem(list_->currentItem()); });
    connect(search_, &QLineEdit::textChanged, this, &CataloguePanel::filter);
    connect(list_, &QListWidget::currentTextChanged, this, &CataloguePanel::chosen);
}

void CataloguePanel::mark(const QString& name) {
    const QSignalBlocker quiet(list_);
    const auto found = list_->findItems(name, Qt::MatchExactly);
    if (!found.isEmpty()) list_->setCurrentItem(found.first());
}

void CataloguePanel::filter(const QString& text) {
    const std::string wish = text.toStdString();
    for (int row = 0; row < list_->count(); ++row)
        list_->item(row)->setHidden(
            !host::Catalogue::matches(devices_[static_cast<std::size_t>(row)], wish));
}

}  // namespace keld2::desktop
