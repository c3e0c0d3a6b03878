// FormWindow: an editor as a real window. It shows what the form says and passes on what the user
// does; every key goes through the form's own filters, a pasted text key by key.
#pragma once

#include <QDialog>
#include <map>
#include <string>

#include "platform/form.h"

class QLineEdit;
class QKeyEvent;

namespace keld2::desktop {

class FormWindow final : public QDialog {
    Q_OBJECT

  public:
    // form: loaded; must outlive the window.
    FormWindow(Form& form, QWidget* parent);

    // The widget of a control, by its name.
    QWidget* widget(const std::string& name) const { return widgets_.at(name); }
    bool eventFilter(QObject* object, QEvent* event) override;
    void reject() override;  // Escape and the frame's close button cancel

  private:
    void build();
    QWidget* make(const Control& control, QWidget* parent);
    double pixelsatwip() const;  // so that the longest caption fits
    void placeall();
    void refresh();
    void show(const Control& control);
    void showtext(QLineEdit& box, const Control& control);
    void act(const std::string& name);
    bool key(QLineEdit& box, const QKeyEvent& event);
    void press(QLineEdit& box, const QString& characters);
    void takecaret(const QLineEdit& box);

    Form& form_;
    std::map<std::string, QWidget*> widgets_;
    bool showing_ = false;  // changes come from the form, not from the user
};

}  // namespace keld2::desktop
