// RunPanel: how a run goes: what it does, progress, elapsed and remaining time, Stop, and its end
// in plain words.
#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

#include "host/verdict/verdict.h"

class QLabel;
class QProgressBar;
class QPushButton;

namespace keld2::desktop {

class RunPanel final : public QWidget {
    Q_OBJECT

  public:
    explicit RunPanel(QWidget* parent = nullptr);

    void start(const QString& what);
    void setstep(const QString& caption);
    void setprogress(int percent);
    void finish();
    // What came of it, in the verdict's words.
    void show(const host::Verdict& verdict, const QString& what);
    // A run that could not be made at all, or a file that could not be used.
    void complain(const QString& what);
    QPushButton& stopbutton() { return *stop_; }
    QString resulttext() const;

    // "0:07", "12:30", "1:00:05"
    static QString timetext(qint64 milliseconds);
    // Milliseconds that are left by the pace so far; -1: too early to say.
    static qint64 remaining(qint64 elapsed, int percent);

  private:
    void showresult(const QString& mark, const QString& words, const char* background);
    void showtimes();

    QLabel* result_;
    QLabel* step_;
    QProgressBar* progress_;
    QLabel* times_;
    QPushButton* stop_;
    QElapsedTimer clock_;
    QTimer tick_;
};

}  // namespace keld2::desktop
