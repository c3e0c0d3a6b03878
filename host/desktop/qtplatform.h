// QtPlatform: the machine of the desktop host. The plug-in serves Qt's events from inside a run, so
// that the windows stay alive; boxes and editors are real windows.
#pragma once

#include <QPointer>
#include <QWidget>
#include <functional>
#include <string_view>

#include "platform/platformdecorator.h"

namespace keld2::desktop {

class QtPlatform final : public PlatformDecorator {
  public:
    using WindowWatcher = std::function<void(std::string_view name, const WindowChange& change)>;

    // inner: memory, strings, timers, files and clock; it must outlive the platform. onwindow: told
    // of every change of the run window.
    QtPlatform(Platform& inner, WindowWatcher onwindow)
        : PlatformDecorator(inner), onwindow_(std::move(onwindow)) {}

    // The window above which boxes and editors stand.
    void setparent(QWidget* parent) { parent_ = parent; }

    void service() override;
    BoxAnswer messagebox(const Box& box) override;
    void showform(Form& form) override;
    void window(std::string_view name, const WindowChange& change) override;

  private:
    QPointer<QWidget> parent_;
    WindowWatcher onwindow_;
};

}  // namespace keld2::desktop
