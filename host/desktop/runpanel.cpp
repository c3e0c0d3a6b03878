#include "host/desktop/runpanel.h"

#include <QGridLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <algorithm>
#include <array>

namespace keld2::desktop {

namespace {

constexpr const char* bad = "#F8D8D4";

struct MarkRow {
    host::Verdict::Mark mark;
    const char* sign;
    const char* background;
};

constexpr std::array rows{
    MarkRow{host::Verdict::Mark::good, "\u2714", "#D8F0D8"},
    MarkRow{host::Verdict::Mark::bad, "\u2718", bad},
    MarkRow{host::Verdict::Mark::open, "\u25A0", "#F8ECC8"},
};

}  // namespace

RunPanel::RunPanel(QWidget* parent)
    : QWidget(parent),
      result_(new QLabel(this)),
      step_(new QLabel(this)),
      progress_(new QProgressBar(this)),
      times_(new QLabel(this)),
      stop_(new QPushButton("&Stop", this)) {
    result_->setObjectName("result");
    result_->setContentsMargins(8, 6, 8, 6);
    result_->setWordWrap(true);
    progress_->setRange(0, 100);
    stop_->setObjectName("stop");
    stop_->setShortcut(QKeySequence("Ctrl+."));
    stop_->setToolTip("Ends the run at the next place where it can be ended (Ctrl+.)");
    stop_->setEnabled(false);
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->addWidget(result_, 0, 0, 1, 3);
    grid->addWidget(step_, 1, 0, 1, 3);
    grid->addWidget(progress_, 2, 0);
    grid->addWidget(times_, 2, 1);
    grid->addWidget(stop_, 2, 2);
    grid->setColumnStretch(0, 1);
    tick_.setInterval(250);
    connect(&tick_, &QTimer::timeout, this, &RunPanel::showtimes);
    showresult("\u2022", "Ready", "#E8E8E8");
}

void RunPanel::start(const QString& what) {
    showresult("\u25B6", what + " is running", "#D8E4F4");
    setprogress(0);
    clock_.start();
    tick_.start();
    stop_->setEnabled(true);
    showtimes();
}

void RunPanel::setstep(const QString& caption) { step_->setText(caption); }

void RunPanel::setprogress(int percent) { progress_->setValue(std::clamp(percent, 0, 100)); }

void RunPanel::finish() {
    tick_.stop();
    stop_->setEnabled(false);
    step_->clear();
    times_->setText(timetext(clock_.elapsed()));
}

void RunPanel::show(const host::Verdict& verdict, const QString& what) {
    setprogress(verdict.percent);
    QString words = QString::fromStdString(headlineof(verdict));
    words = verdict.well() ? what + " ended well" : words.left(1).toUpper() + words.mid(1);
    for (const std::string& notice : verdict.notices)
        words += "\n" + QString::fromStdString(notice);
    for (const MarkRow& row : rows)
        if (row.mark == verdict.mark()) showresult(row.sign, words, row.background);
}

void RunPanel::complain(const QString& what) { showresult("\u2718", what, bad); }

QString RunPanel::resulttext() const { return result_->text(); }

QString RunPanel::timetext(qint64 milliseconds) {
    const qint64 seconds = std::max<qint64>(milliseconds, 0) / 1000;
    const auto two = [](qint64 value) { return QString("%1").arg(value, 2, 10, QLatin1Char('0')); };
    const QString last = two(seconds % 60);
    if (seconds < 3600) return QString::number(seconds / 60) + ":" + last;
    return QString::number(seconds / 3600) + ":" + two(seconds / 60 % 60) + ":" + last;
}

qint64 RunPanel::remaining(qint64 elapsed, int percent) {
    constexpr int enough = 5;  // percent that tell a pace
    if (percent < enough) return -1;
    return elapsed * (100 - std::min(percent, 100)) / percent;
}

void RunPanel::showresult(const QString& mark, const QString& words, const char* background) {
    result_->setText(mark + "  " + words);
    result_->setStyleSheet(QString("background: %1; color: black; border-radius: 4px;")
                               .arg(QLatin1String(background)));
}

void RunPanel::showtimes() {
    const qint64 elapsed = clock_.elapsed();
    const qint64 left = remaining(elapsed, progress_->value());
    times_->setText(timetext(elapsed) + (left < 0 ? QString() : ", " + timetext(left) + " left"));
}

}  // namespace keld2::desktop
