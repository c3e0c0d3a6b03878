// StepList: the auto sequence. Steps are switched on and off by their mark and reordered by
// dragging or with Alt+Up and Alt+Down.
#pragma once

#include <QHash>
#include <QListWidget>
#include <QStringList>

namespace keld2::desktop {

class StepList final : public QListWidget {
    Q_OBJECT

  public:
    explicit StepList(QWidget* parent = nullptr);

    // All steps that can be made, by name and in the order in which they stand; those of on are
    // switched on. A step is shown by its title, one without a title by its name.
    void setsteps(const QStringList& all, const QStringList& on,
                  const QHash<QString, QString>& titles = {});
    QStringList all() const;  // the names
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
