#include "host/desktop/qtplatform.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <array>
#include <vector>

#include "host/desktop/formwindow.h"

namespace keld2::desktop {

namespace {

struct ButtonRow {
    QMessageBox::StandardButton button;
    BoxAnswer answer;
};

constexpr std::array buttonrows{
    ButtonRow{QMessageBox::Ok, BoxAnswer::ok},
    ButtonRow{QMessageBox::Cancel, BoxAnswer::cancel},
    ButtonRow{QMessageBox::Abort, BoxAnswer::abort},
    ButtonRow{QMessageBox::Retry, BoxAnswer::retry},
    ButtonRow{QMessageBox::Ignore, BoxAnswer::ignore},
};

QMessageBox::StandardButtons buttonsof(BoxButtons buttons) {
    switch (buttons) {
        case BoxButtons::okcancel:
            return QMessageBox::Ok | QMessageBox::Cancel;
        case BoxButtons::abortretryignore:
            return QMessageBox::Abort | QMessageBox::Retry | QMessageBox::Ignore;
        default:
            return QMessageBox::Ok;
    }
}

QMessageBox::Icon iconof(BoxIcon icon) {
    switch (icon) {
        case BoxIcon::information:
            return QMessageBox::Information;
        case BoxIcon::question:
            return QMessageBox::Question;
        case BoxIcon::exclamation:
            return QMessageBox::Warning;
        default:
            return QMessageBox::NoIcon;
    }
}

// Escape and Enter take the answer that starts nothing.
QMessageBox::StandardButton safebutton(BoxButtons buttons) {
    switch (buttons) {
        case BoxButtons::okcancel:
            return QMessageBox::Cancel;
        case BoxButtons::abortretryignore:
            return QMessageBox::Abort;
        default:
            return QMessageBox::Ok;
    }
}

}  // namespace

void QtPlatform::service() {
    QCoreApplication::processEvents();
    inner().service();
}

BoxAnswer QtPlatform::messagebox(const Box& box) {
    QString text = QString::fromStdU16String(box.text);
    text.replace('\r', '\n');
    QMessageBox window(iconof(box.icon), QString::fromStdU16String(box.title), text,
                       buttonsof(box.buttons), parent_);
    window.setObjectName("messagebox");
    window.setTextFormat(Qt::PlainText);
    window.setTextInteractionFlags(Qt::TextSelectableByMouse);
    window.setDefaultButton(safebutton(box.buttons));
    window.setEscapeButton(safebutton(box.buttons));
    const int pressed = window.exec();
    for (const ButtonRow& row : buttonrows)
        if (row.button == pressed) return row.answer;
    return BoxAnswer::cancel;
}

void QtPlatform::showform(Form& form) { FormWindow(form, parent_).exec(); }

void QtPlatform::window(std::string_view name, const WindowChange& change) {
    onwindow_(name, change);
}

}  // namespace keld2::desktop
