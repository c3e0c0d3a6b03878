// StepList: the auto sequence. Steps are switched on and off by their mark and reordered by
// dragging or with Alt+Up and Alt+Down.
#pragma once

#include <QListWidget>
#include <QStringList>

namespace keld2::desktop {

class StepList final : public QListWidget {
    Q_OBJECT

  public:
    explicit StepList(QWidget* parent = nullptr);

    // All steps that can be made, in the order in which they stand; those of on are switched on.
    void setsteps(const QStringList& all, const QStringList& on);
    QStringList all() const;
    QStringList on() const;

  signals:
    void changed();

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void dropEvent(QDropEvent* event) override;

  private:
    void move(int by);  // the current step, by rows
};

}  // namespace keld2::desktop
