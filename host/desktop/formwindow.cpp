#include "host/desktop/formwindow.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <algorithm>
#include <utility>

namespace keld2::desktop {

namespace {

// What a window's frame and title take of its size, in twips.
constexpr int framewidth = 120, titleheight = 510;

QString textof(const std::u16string& text) { return QString::fromStdU16String(text); }

// One visible character for each code: a control code has none of its own.
QString shown(const std::u16string& codes) {
    constexpr char16_t controlpictures = 0x2400;
    QString text;
    for (const char16_t code : codes) {
        const bool high = code >= 127 && code < 160;
        text += QChar(code < 32 ? static_cast<char16_t>(controlpictures + code)
                      : high    ? u'\u00B7'
                                : code);
    }
    return text;
}

// The key code of the keys that work in a box, 0 for the others.
int keycode(int key) {
    switch (key) {
        case Qt::Key_Delete:
            return keys::del;
        case Qt::Key_Home:
            return keys::home;
        case Qt::Key_End:
            return keys::end;
        case Qt::Key_Left:
            return keys::left;
        case Qt::Key_Right:
            return keys::right;
        default:
            return 0;
    }
}

// Width that a control's longest text takes beside its own parts, in pixels.
int wantedwidth(const Control& control, const QFontMetrics& font) {
    std::u16string longest = control.text;
    for (const std::u16string& entry : control.entries)
        if (entry.size() > longest.size()) longest = entry;
    constexpr int extra[]{24, 4, 36, 16, 28, 24};  // by kind: border, arrow, mark
    return font.horizontalAdvance(textof(longest)) + extra[static_cast<int>(control.kind)];
}

}  // namespace

FormWindow::FormWindow(Form& form, QWidget* parent) : QDialog(parent), form_(form) {
    setWindowTitle(textof(form.caption()));
    setObjectName(QString::fromStdString(form.name()));
    build();
    placeall();
    refresh();
}

void FormWindow::build() {
    for (const Control& control : form_.controls()) {
        QWidget* parent = control.container.empty() ? this : widgets_.at(control.container);
        QWidget* made = make(control, parent);
        made->setObjectName(QString::fromStdString(control.name));
        widgets_[control.name] = made;
    }
}

QWidget* FormWindow::make(const Control& control, QWidget* parent) {
    const std::string& name = control.name;
    switch (control.kind) {
        case ControlKind::frame:
            return new QGroupBox(parent);
        case ControlKind::label:
            return new QLabel(parent);
        case ControlKind::combo: {
            auto* combo = new QComboBox(parent);
            for (const std::u16string& entry : control.entries) combo->addItem(textof(entry));
            connect(combo, &QComboBox::activated, this, [this, name](int index) {
                form_.choose(name, index);
                refresh();
            });
            return combo;
        }
        case ControlKind::text: {
            auto* box = new QLineEdit(parent);
            box->setContextMenuPolicy(Qt::NoContextMenu);
            box->setAttribute(Qt::WA_InputMethodEnabled, false);
            box->setAcceptDrops(false);
            box->installEventFilter(this);
            return box;
        }
        case ControlKind::option: {
            auto* option = new QRadioButton(parent);
            option->setAutoExclusive(false);  // the form says what is selected
            connect(option, &QRadioButton::clicked, this, [this, name] { act(name); });
            return option;
        }
        case ControlKind::button:
            break;
    }
    auto* button = new QPushButton(parent);
    connect(button, &QPushButton::clicked, this, [this, name] { act(name); });
    return button;
}

double FormWindow::pixelsatwip() const {
    double scale = 1.0 / twipsperpixel;
    const QFontMetrics font = fontMetrics();
    for (const Control& control : form_.controls())
        if (control.width > 0)
            scale =
                std::max(scale, static_cast<double>(wantedwidth(control, font)) / control.width);
    return scale;
}

void FormWindow::placeall() {
    const double scale = pixelsatwip();
    const auto pixels = [scale](int twips) { return static_cast<int>(twips * scale); };
    setFixedSize(pixels(form_.width() - framewidth), pixels(form_.height() - titleheight));
    for (const Control& control : form_.controls())
        widgets_.at(control.name)
            ->setGeometry(pixels(control.left), pixels(control.top), pixels(control.width),
                          pixels(control.height));
}

void FormWindow::refresh() {
    if (form_.closed()) return QDialog::done(0);
    showing_ = true;
    for (const Control& control : form_.controls()) show(control);
    showing_ = false;
}

void FormWindow::show(const Control& control) {
    QWidget* widget = widgets_.at(control.name);
    widget->setEnabled(control.enabled);
    widget->setVisible(control.visible);
    if (auto* frame = qobject_cast<QGroupBox*>(widget)) frame->setTitle(textof(control.text));
    if (auto* label = qobject_cast<QLabel*>(widget)) label->setText(textof(control.text));
    if (auto* button = qobject_cast<QAbstractButton*>(widget)) {
        button->setText(textof(control.text).replace('&', "&&"));
        if (auto* option = qobject_cast<QRadioButton*>(button))
            option->setChecked(control.selected);
    }
    if (auto* combo = qobject_cast<QComboBox*>(widget)) combo->setCurrentIndex(control.index);
    if (auto* box = qobject_cast<QLineEdit*>(widget)) showtext(*box, control);
}

void FormWindow::showtext(QLineEdit& box, const Control& control) {
    box.setText(shown(control.text));
    const int caret = static_cast<int>(control.caret);
    if (control.selection == 0)
        box.setCursorPosition(caret);
    else
        box.setSelection(caret, static_cast<int>(control.selection));
}

void FormWindow::act(const std::string& name) {
    form_.click(name);
    refresh();
}

void FormWindow::reject() {
    form_.dismiss();
    QDialog::reject();
}

bool FormWindow::eventFilter(QObject* object, QEvent* event) {
    auto* box = qobject_cast<QLineEdit*>(object);
    if (box != nullptr && event->type() == QEvent::KeyPress)
        return key(*box, static_cast<QKeyEvent&>(*event));
    return QDialog::eventFilter(object, event);
}

void FormWindow::takecaret(const QLineEdit& box) {
    const bool selected = box.hasSelectedText();
    form_.setselection(
        box.objectName().toStdString(),
        static_cast<std::size_t>(selected ? box.selectionStart() : box.cursorPosition()),
        static_cast<std::size_t>(selected ? box.selectionLength() : 0));
}

// Answers whether the event is done with; the others keep what they do in every box and dialog:
// selecting, copying, going on to the next control, closing.
bool FormWindow::key(QLineEdit& box, const QKeyEvent& event) {
    takecaret(box);
    if (event.matches(QKeySequence::Paste)) {
        press(box, QApplication::clipboard()->text());
        return true;
    }
    if (event.matches(QKeySequence::Cut) || event.matches(QKeySequence::Undo)) return true;
    if (event.key() == Qt::Key_Backspace) {
        press(box, QString(QChar(keys::backspace)));
        return true;
    }
    const int code = keycode(event.key());
    if (code != 0 && (code == keys::del || !(event.modifiers() & Qt::ShiftModifier))) {
        form_.keydown(box.objectName().toStdString(), code);
        refresh();
        return true;
    }
    const QString text = event.text();
    if (text.isEmpty() || !text[0].isPrint()) return false;
    press(box, text);
    return true;
}

void FormWindow::press(QLineEdit& box, const QString& characters) {
    const int beeps = form_.beeps();
    for (const QChar character : characters)
        form_.keypress(box.objectName().toStdString(), character.unicode());
    if (form_.beeps() != beeps) QApplication::beep();
    refresh();
}

}  // namespace keld2::desktop
