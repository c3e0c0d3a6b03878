#include "host/desktop/steplist.h"

#include <QKeyEvent>

namespace keld2::desktop {

namespace {

constexpr int namerole = Qt::UserRole;

QString nameof(const QListWidgetItem& step) { return step.data(namerole).toString(); }

}  // namespace

StepList::StepList(QWidget* parent) : QListWidget(parent) {
    setDragDropMode(QAbstractItemView::InternalMove);
    setAccessibleName("Auto sequence");
    setToolTip("Mark the steps to make; drag them, or use Alt+Up and Alt+Down, to reorder");
    connect(this, &QListWidget::itemChanged, this, &StepList::changed);
}

void StepList::setsteps(const QStringList& all, const QStringList& on,
                        const QHash<QString, QString>& titles) {
    const QSignalBlocker quiet(this);
    clear();
    for (const QString& name : all) {
        auto* item = new QListWidgetItem(titles.value(name, name), this);
        item->setData(namerole, name);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable |
                       Qt::ItemIsDragEnabled);
        item->setCheckState(on.contains(name) ? Qt::Checked : Qt::Unchecked);
    }
    if (count() > 0) setCurrentRow(0);
}

QStringList StepList::all() const {
    QStringList names;
    for (int row = 0; row < count(); ++row) names += nameof(*item(row));
    return names;
}

QStringList StepList::on() const {
    QStringList names;
    for (int row = 0; row < count(); ++row)
        if (item(row)->checkState() == Qt::Checked) names += nameof(*item(row));
    return names;
}

void StepList::keyPressEvent(QKeyEvent* event) {
    const bool alt = event->modifiers() == Qt::AltModifier;
    if (alt && event->key() == Qt::Key_Up) return move(-1);
    if (alt && event->key() == Qt::Key_Down) return move(1);
    QListWidget::keyPressEvent(event);
}

void StepList::dropEvent(QDropEvent* event) {
    QListWidget::dropEvent(event);
    emit changed();
}

void StepList::move(int by) {
    const int from = currentRow();
    if (from < 0 || from + by < 0 || from + by >= count()) return;
    insertItem(from + by, takeItem(from));
    setCurrentRow(from + by);
    emit changed();
}

}  // namespace keld2::desktop
