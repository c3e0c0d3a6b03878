// The main window on the simulated programmer: what a user does, from opening a file to closing.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSettings>
#include <QTest>
#include <QTimer>

#include "common/madefolder.h"
#include "host/desktop/mainwindow.h"
#include "host/programmer/programmer.h"

namespace keld2::desktop {
namespace {

class MainWindowTest : public testing::Test {
  protected:
    MainWindowTest()
        : settings_(QString::fromStdString((folder_ / "settings.ini").string()),
                    QSettings::IniFormat) {
        settings_.setValue("device", "serial-2k");
        std::string content;
        for (int i = 0; i < 2048; ++i) content += static_cast<char>(i * 7 % 251);
        file_ = QString::fromStdString(folder_.file("firmware.bin", content).string());
        content[0x123] = '\x77';
        other_ = QString::fromStdString(folder_.file("other.bin", content).string());
    }

    std::unique_ptr<MainWindow> window(const std::vector<std::string>& faults = {}) {
        const host::ProgrammerChoice choice{.image = folder_ / "chip", .faults = faults};
        auto made = std::make_unique<MainWindow>(
            host::Catalogue(KELD2_TEST_DEVICES),
            [choice](const host::Device& device) { return host::simulated(choice, device); },
            settings_);
        made->show();
        made->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(made.get()));
        QApplication::setActiveWindow(made.get());  // without a window manager too
        return made;
    }
    // Without the mark before it.
    static std::string result(MainWindow& window) {
        return window.findChild<QLabel*>("result")->text().mid(3).toStdString();
    }
    static QString log(MainWindow& window) {
        return window.findChild<QPlainTextEdit*>("log")->toPlainText();
    }
    static void click(MainWindow& window, const char* name) {
        QTest::mouseClick(window.findChild<QPushButton*>(name), Qt::LeftButton);
    }
    // Answers the boxes that open, one after the other.
    static void answer(const std::vector<QMessageBox::StandardButton>& answers) {
        auto* timer = new QTimer(qApp);
        QObject::connect(
            timer, &QTimer::timeout, [timer, answers, next = std::size_t{0}]() mutable {
                auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
                if (box == nullptr) return;
                QTest::mouseClick(box->button(answers.at(next++)), Qt::LeftButton);
                if (next == answers.size()) timer->deleteLater();
            });
        timer->start(5);
    }

    test::MadeFolder folder_;
    QSettings settings_;
    QString file_, other_;
};

TEST_F(MainWindowTest, ProgramsVerifiesComparesAndReads) {
    const auto w = window();
    w->open(file_);
    EXPECT_TRUE(w->findChild<QLabel*>("file")->text().startsWith(
        "firmware.bin: raw bytes, 2048 bytes at 0000 to 07FF, sum "));
    click(*w, "program");
    EXPECT_EQ(result(*w), "Program ended well") << log(*w).toStdString();
    EXPECT_TRUE(log(*w).contains("Program"));
    click(*w, "verify");
    EXPECT_EQ(result(*w), "Verify ended well");
    w->open(other_);
    click(*w, "verify");
    EXPECT_EQ(result(*w), "Failed in verify at 98 %: at 000123 the chip holds 1D, the file 77");
    click(*w, "compare");
    EXPECT_TRUE(log(*w).contains(">> 000123")) << log(*w).toStdString();
    click(*w, "config");
    EXPECT_NE(result(*w).find("other.bin: gives no byte for address 0820"), std::string::npos);
    click(*w, "read");
    EXPECT_EQ(w->workspace().buffer()[0x123], 0x123 * 7 % 251);
    w->save(QString::fromStdString((folder_ / "out.hex").string()));
    w->open(QString::fromStdString((folder_ / "out.hex").string()));
    EXPECT_EQ(w->workspace().buffer()[0x123], 0x123 * 7 % 251);
}

TEST_F(MainWindowTest, SequenceRunsTheMarkedSteps) {
    const auto w = window();
    w->open(file_);
    QTest::keyClick(w.get(), Qt::Key_Return, Qt::ControlModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return result(*w) != "Ready"; }));  // the button goes down
    EXPECT_EQ(result(*w), "Auto sequence ended well") << log(*w).toStdString();
    for (const char* step : {"Erase", "Blank Check", "Program", "Verify"})
        EXPECT_TRUE(log(*w).contains(step)) << step;
}

TEST_F(MainWindowTest, WorksEveryKindOfDevice) {
    const auto w = window();
    for (const char* device :
         {"serial-4k", "parallel-byte-64k", "logic-17200-c", "logic-8160", "arm-a-64k"}) {
        std::filesystem::remove(folder_ / "chip");
        w->choose(device);
        click(*w, "blank");
        EXPECT_TRUE(result(*w).starts_with("Blank Check ended well"))
            << device << log(*w).toStdString();
    }
}

TEST_F(MainWindowTest, FailedTextIsExplainedByItsFuses) {
    const auto w = window();
    w->choose("logic-8160");
    const std::string map =
        "\x02*QF8160*F0*\x03"
        "0000\n";
    w->open(QString::fromStdString(folder_.file("map.jed", map).string()));
    click(*w, "verify");
    EXPECT_EQ(
        result(*w),
        "Failed in verify at 98 %: at 000000 the chip holds 1, the file 0; 8160 differences seen");
    EXPECT_TRUE(log(*w).contains("row 3, bit 5: expected 0, read 1 (fuse 165)"))
        << log(*w).toStdString();
    EXPECT_TRUE(log(*w).endsWith("more bits")) << "a blank chip, of which 256 are named";
}

TEST_F(MainWindowTest, StopInTheMiddle) {
    const auto w = window();
    w->open(file_);
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        if (!w->running()) return;
        EXPECT_FALSE(w->findChild<QPushButton*>("erase")->isEnabled());
        click(*w, "stop");
    });
    poll.start(0);
    click(*w, "program");
    EXPECT_EQ(result(*w), "Stopped in program at 98 %") << log(*w).toStdString();
    EXPECT_TRUE(w->findChild<QPushButton*>("erase")->isEnabled());
}

TEST_F(MainWindowTest, WrongIdIsAskedAgainAndAborted) {
    const auto w = window({"wrongid"});
    answer({QMessageBox::Retry, QMessageBox::Abort});
    click(*w, "blank");
    EXPECT_EQ(result(*w), "Wrong chip: its id is 5A DB01, expected 5A 24");
}

TEST_F(MainWindowTest, ClosingDuringARunAsksFirst) {
    const auto w = window();
    w->open(file_);
    answer({QMessageBox::Yes});
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        if (!w->running()) return;
        poll.stop();
        w->close();
        EXPECT_TRUE(w->isVisible()) << "the run goes on until its next stop";
    });
    poll.start(0);
    click(*w, "program");
    EXPECT_FALSE(w->isVisible());
}

TEST_F(MainWindowTest, EditorChangesTheBuffer) {
    const auto w = window();
    auto* timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, [timer] {
        QWidget* editor = QApplication::activeModalWidget();
        if (editor == nullptr) return;
        timer->deleteLater();
        QTest::keyClick(editor->findChild<QComboBox*>("Combo1(0)"), Qt::Key_Up);
        QTest::mouseClick(editor->findChild<QPushButton*>("OKButton"), Qt::LeftButton);
    });
    timer->start(5);
    w->edit(host::Editor::config);
    EXPECT_EQ(w->workspace().buffer()[2080], 0x0E);
    w->edit(host::Editor::usercode);
    EXPECT_EQ(result(*w), "serial-2k has nothing that this editor could edit");
}

TEST_F(MainWindowTest, WhatCannotBeUsedIsSaid) {
    const auto w = window();
    click(*w, "program");
    EXPECT_EQ(result(*w), "Program needs data: open a file or read a chip first");
    w->open(QString::fromStdString(folder_.file("bad.hex", ":00").string()));
    EXPECT_NE(result(*w).find("bad.hex:1"), std::string::npos) << result(*w);
    QTest::keyClick(w.get(), Qt::Key_Escape);
    EXPECT_FALSE(w->running());
}

TEST_F(MainWindowTest, SearchHidesTheOtherDevices) {
    const auto w = window();
    auto* list = w->findChild<QListWidget*>("devices");
    QTest::keyClicks(w->findChild<QLineEdit*>("search"), "4096 SERIAL");
    for (int row = 0; row < list->count(); ++row)
        EXPECT_EQ(list->item(row)->isHidden(), list->item(row)->text() != "serial-4k")
            << list->item(row)->text().toStdString();
}

TEST_F(MainWindowTest, SettingsAreKept) {
    {
        const auto w = window();
        w->choose("serial-4k");
        w->close();
    }
    EXPECT_EQ(window()->workspace().device().name, "serial-4k");
}

}  // namespace
}  // namespace keld2::desktop
