// The desktop host's own widgets.
#include <gtest/gtest.h>

#include <QAction>
#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>

#include "host/desktop/fuseview.h"
#include "host/desktop/hexview.h"
#include "host/desktop/runpanel.h"
#include "host/desktop/steplist.h"
#include "host/desktop/workspace.h"

namespace keld2::desktop {
namespace {

TEST(StepList, KeysReorderAndSwitch) {
    StepList steps;
    steps.setsteps({"erase", "blank", "program"}, {"erase", "program"}, {{"erase", "Wissen"}});
    EXPECT_EQ(steps.item(0)->text(), "Wissen");
    EXPECT_EQ(steps.item(1)->text(), "blank");
    int changes = 0;
    QObject::connect(&steps, &StepList::changed, [&] { ++changes; });
    QTest::keyClick(&steps, Qt::Key_Up, Qt::AltModifier);  // the first one stays
    EXPECT_EQ(changes, 0);
    QTest::keyClick(&steps, Qt::Key_Down, Qt::AltModifier);
    QTest::keyClick(&steps, Qt::Key_Down, Qt::AltModifier);
    QTest::keyClick(&steps, Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(steps.all(), (QStringList{"blank", "program", "erase"}));
    EXPECT_EQ(steps.on(), (QStringList{"program", "erase"}));
    QTest::keyClick(&steps, Qt::Key_Space);
    EXPECT_EQ(steps.on(), QStringList{"program"});
    EXPECT_EQ(changes, 3);
}

TEST(RunPanel, Times) {
    struct Case {
        qint64 milliseconds;
        const char* text;
    };
    for (const Case& c : {Case{0, "0:00"}, Case{59999, "0:59"}, Case{60000, "1:00"},
                          Case{3599000, "59:59"}, Case{3605000, "1:00:05"}, Case{-5, "0:00"}})
        EXPECT_EQ(RunPanel::timetext(c.milliseconds), c.text);
    EXPECT_EQ(RunPanel::remaining(10000, 4), -1);
    EXPECT_EQ(RunPanel::remaining(10000, 50), 10000);
    EXPECT_EQ(RunPanel::remaining(10000, 100), 0);
    EXPECT_EQ(RunPanel::remaining(10000, 200), 0);
}

TEST(RunPanel, StopIsThereWhileItRuns) {
    using Outcome = host::Verdict::Outcome;
    RunPanel panel;
    EXPECT_FALSE(panel.stopbutton().isEnabled());
    QStringList texts;
    for (const Outcome outcome :
         {Outcome::well, Outcome::different, Outcome::failed, Outcome::stopped, Outcome::timedout,
          Outcome::badalgorithm, Outcome::foreignid, Outcome::refused, Outcome::modefailed,
          Outcome::incomplete, Outcome::aborted, Outcome::notserved}) {
        panel.start("Program");
        EXPECT_TRUE(panel.stopbutton().isEnabled());
        EXPECT_TRUE(panel.resulttext().contains("Program is running"));
        panel.finish();
        panel.show({.outcome = outcome,
                    .steps = {host::operationnamed("program")},
                    .foreignid = host::ForeignId{},
                    .expectedid = {}},
                   "Program");
        EXPECT_FALSE(panel.stopbutton().isEnabled());
        EXPECT_FALSE(texts.contains(panel.resulttext())) << panel.resulttext().toStdString();
        texts += panel.resulttext();
    }
}

TEST(FuseView, PictureHasAPixelForEachFuse) {
    struct Case {
        std::int64_t count;
        int columns;
    };
    for (const Case& c : {Case{0, 1}, Case{1, 1}, Case{64, 8}, Case{1728, 48}, Case{33440, 190}})
        EXPECT_EQ(FuseView::columns(c.count), c.columns) << c.count;
    FuseView view;
    view.setfuses({'1', '0', '1', '1', '0', '1'}, {3}, 3);
    ASSERT_EQ(view.image().size(), QSize(3, 2));
    const QRgb blank = view.image().pixel(0, 0), programmed = view.image().pixel(1, 0);
    EXPECT_NE(blank, programmed);
    EXPECT_EQ(view.image().pixel(2, 0), blank);
    EXPECT_EQ(view.image().pixel(1, 1), programmed);
    EXPECT_NE(view.image().pixel(0, 1), blank);
    EXPECT_NE(view.image().pixel(0, 1), programmed);
}

// Pixels of a view that are not those of its background.
int redpixels(const QImage& image) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QColor colour(image.pixel(x, y));
            count +=
                colour.red() > colour.green() + 25 && colour.red() > colour.blue() + 25 ? 1 : 0;
        }
    return count;
}

TEST(HexView, MarksDifferencesAndScrollsToThem) {
    HexView view;
    view.resize(700, 200);
    view.show();
    view.setbytes(std::vector<std::uint8_t>(0x1001, 0x41));
    EXPECT_EQ(view.rows(), 0x101);
    EXPECT_EQ(redpixels(view.grab().toImage()), 0);
    view.setdifferences({0x805});
    EXPECT_EQ(redpixels(view.grab().toImage()), 0) << "out of sight";
    view.showaddress(0x805);
    EXPECT_EQ(view.firstrow(), 0x80);
    EXPECT_GT(redpixels(view.grab().toImage()), 0);
    view.showaddress(0x9999999);
    EXPECT_GT(view.firstrow(), 0xE0);
    view.setbytes({1, 2, 3});
    EXPECT_EQ(view.firstrow(), 0);
    EXPECT_TRUE(view.differences().empty());
}

TEST(HexView, TellsTheAddressUnderTheMouse) {
    HexView view;
    view.resize(700, 200);
    view.show();
    view.setbytes(std::vector<std::uint8_t>(40, 0));
    std::set<qint64> seen;
    QObject::connect(&view, &HexView::pointed, [&](qint64 address) { seen.insert(address); });
    for (int y = 0; y < 150; y += 3)
        for (int x = 0; x < 690; x += 3) QTest::mouseMove(view.viewport(), {x, y});
    std::set<qint64> expected{-1};
    for (qint64 address = 0; address < 40; ++address) expected.insert(address);
    EXPECT_EQ(seen, expected);
}

}  // namespace
}  // namespace keld2::desktop
