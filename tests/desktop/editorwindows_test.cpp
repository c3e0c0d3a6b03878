// The editors as real windows: keys, mouse and clipboard reach the form, and its filters hold.
#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTimer>

#include "desktop/editing.h"
#include "host/desktop/formwindow.h"
#include "plugin/texts/table.h"

namespace keld2::desktop {
namespace {

using test::Editing;

// Opens an editor as a window, lets user work on it and closes it.
void windowed(Editing& e, bool code, const std::function<void(FormWindow&)>& user) {
    const auto show = [&](Form& form) {
        FormWindow window(form, nullptr);
        QTimer::singleShot(0, &window, [&] {
            user(window);
            if (!form.closed()) window.reject();
        });
        window.exec();
        EXPECT_TRUE(form.closed());
    };
    code ? e.code(show) : e.configuration(show);
}

template <typename Widget>
Widget& find(const FormWindow& window, const char* name) {
    return *qobject_cast<Widget*>(window.widget(name));
}

void clickok(FormWindow& window) {
    QTest::mouseClick(&find<QPushButton>(window, "OKButton"), Qt::LeftButton);
}

TEST(EditorWindows, CodeViewsFollowTheKeys) {
    Editing e(41, 4112);
    windowed(e, true, [](FormWindow& window) {
        auto& bin = find<QLineEdit>(window, "Text1");
        auto& hex = find<QLineEdit>(window, "Text2");
        auto& text = find<QLineEdit>(window, "Text3");
        EXPECT_EQ(hex.text(), "00000000");
        QTest::keyClicks(&hex, "4a");
        QTest::keyClick(&hex, Qt::Key_Right);
        QTest::keyClicks(&hex, "x9");
        EXPECT_EQ(hex.text(), "4a090000");
        EXPECT_EQ(hex.cursorPosition(), 4);
        EXPECT_EQ(bin.text(), "01001010000010010000000000000000");
        EXPECT_EQ(text.text(), QString("J\u2409  "));  // code 9 as its picture
        for (const Qt::Key key : {Qt::Key_Delete, Qt::Key_Backspace}) QTest::keyClick(&hex, key);
        EXPECT_EQ(hex.text(), "4a090000");
        clickok(window);
    });
    EXPECT_EQ(e.cell(1), '1');
    EXPECT_EQ(e.cell(2), '0');
}

TEST(EditorWindows, PastedTextIsFilteredKeyByKey) {
    Editing e(1, 4112);
    windowed(e, false, [](FormWindow& window) {
        auto& box = find<QLineEdit>(window, "Text2(0)");
        QApplication::clipboard()->setText("12 zz\nabCD99 more");
        QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
        EXPECT_EQ(box.text(), "12abCD99");
        box.selectAll();
        QTest::keyClick(&box, Qt::Key_X, Qt::ControlModifier);
        EXPECT_EQ(box.text(), "12abCD99");
        clickok(window);
    });
    EXPECT_EQ(e.cell(3), 0x99);
}

TEST(EditorWindows, MouseChoosesEntriesAndOptions) {
    Editing e(21, 4112);
    windowed(e, false, [](FormWindow& window) {
        auto& combo = find<QComboBox>(window, "Combo1(2)");
        EXPECT_EQ(combo.currentText(), "Enable(0)");
        QTest::keyClick(&combo, Qt::Key_Down);
        EXPECT_EQ(combo.currentText(), "Disable(1)");
        EXPECT_FALSE(find<QGroupBox>(window, "Frame1").isVisible());
        clickok(window);
    });
    EXPECT_EQ(e.cell(-16), 4);
    Editing options(3, 262144);
    options.cell(4) = 0x20;
    windowed(options, false, [](FormWindow& window) {
        for (const char* name : {"Option2(1)", "Option2(8)"})
            QTest::mouseClick(&find<QRadioButton>(window, name), Qt::LeftButton, {}, {8, 8});
        EXPECT_TRUE(find<QRadioButton>(window, "Option2(1)").isChecked());
        EXPECT_FALSE(find<QRadioButton>(window, "Option2(0)").isChecked());
        EXPECT_TRUE(find<QRadioButton>(window, "Option2(9)").isChecked()) << "disabled group";
        clickok(window);
    });
    EXPECT_EQ(options.cell(4), 2);
}

TEST(EditorWindows, EscapeCancels) {
    Editing e(41, 4112);
    e.cell(0) = 0x77;
    windowed(e, true, [](FormWindow& window) {
        QTest::keyClicks(&find<QLineEdit>(window, "Text2"), "FFFFFFFF");
        QTest::keyClick(&window, Qt::Key_Escape);
    });
    EXPECT_EQ(e.cell(0), 0x77);
}

// Nothing is cut off or laid over something else, in the longest language too.
TEST(EditorWindows, CaptionsFitInEveryLanguage) {
    for (const LanguageBlock& block : languageblocks)
        for (const std::uint8_t mode : std::array<std::uint8_t, 2>{1, 21}) {
            Editing e(mode, 4112);
            e.s.Language[0] = block.offset;
            windowed(e, false, [&](FormWindow& window) {
                for (const QWidget* widget : window.findChildren<QWidget*>()) {
                    if (qobject_cast<const QAbstractButton*>(widget) == nullptr &&
                        qobject_cast<const QLabel*>(widget) == nullptr)
                        continue;
                    if (!widget->isVisible() || widget->visibleRegion().isEmpty()) continue;
                    EXPECT_GE(widget->width(), widget->minimumSizeHint().width())
                        << widget->objectName().toStdString() << " in " << block.name;
                }
            });
        }
}

}  // namespace
}  // namespace keld2::desktop
