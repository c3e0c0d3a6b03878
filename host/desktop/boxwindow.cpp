#include "host/desktop/boxwindow.h"

#include <QMessageBox>
#include <array>

namespace keld2::desktop {

namespace {

using Buttons = QMessageBox::StandardButtons;

struct AnswerRow {
    QMessageBox::StandardButton button;
    BoxAnswer answer;
};

constexpr std::array answerrows{
    AnswerRow{QMessageBox::Ok, BoxAnswer::ok},
    AnswerRow{QMessageBox::Cancel, BoxAnswer::cancel},
    AnswerRow{QMessageBox::Abort, BoxAnswer::abort},
    AnswerRow{QMessageBox::Retry, BoxAnswer::retry},
    AnswerRow{QMessageBox::Ignore, BoxAnswer::ignore},
};

struct ButtonsRow {
    Buttons buttons;
    QMessageBox::StandardButton safe;
};

// By BoxButtons.
const std::array buttonsrows{
    ButtonsRow{QMessageBox::Ok, QMessageBox::Ok},
    ButtonsRow{QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel},
    ButtonsRow{QMessageBox::Abort | QMessageBox::Retry | QMessageBox::Ignore, QMessageBox::Abort},
};

constexpr std::array icons{QMessageBox::NoIcon, QMessageBox::Information, QMessageBox::Question,
                           QMessageBox::Warning};

}  // namespace

BoxAnswer showbox(const Box& box, QWidget* parent) {
    QString text = QString::fromStdU16String(box.text);
    text.replace('\r', '\n');
    const ButtonsRow& row = buttonsrows.at(static_cast<std::size_t>(box.buttons));
    QMessageBox window(icons.at(static_cast<std::size_t>(box.icon)),
                       QString::fromStdU16String(box.title), text, row.buttons, parent);
    window.setObjectName("messagebox");
    window.setTextFormat(Qt::PlainText);
    window.setDefaultButton(row.safe);
    window.setEscapeButton(row.safe);
    const int pressed = window.exec();
    for (const AnswerRow& answer : answerrows)
        if (answer.button == pressed) return answer.answer;
    return BoxAnswer::cancel;
}

}  // namespace keld2::desktop
