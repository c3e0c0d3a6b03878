// MainWindow: the desktop host. It runs the plug-in from a click's handler; during the run the
// plug-in serves the message loop, which keeps the window alive and lets Stop be clicked.
#pragma once

#include <QElapsedTimer>
#include <QMainWindow>
#include <functional>
#include <memory>

#include "host/desktop/workspace.h"
#include "host/run/editrun.h"
#include "host/verdict/verdict.h"

class QLabel;
class QPlainTextEdit;
class QSettings;
class QStackedWidget;
class QVBoxLayout;

namespace keld2::desktop {

class CataloguePanel;
class FuseView;
class HexView;
class RunPanel;
class StepList;

class MainWindow final : public QMainWindow, private host::RunListener {
    Q_OBJECT

  public:
    // Gives a simulated programmer with the device's chip in its socket; may throw HostError.
    using Programmer = std::function<host::ProgrammerFactory(const host::Device& device)>;

    // settings: what is kept between sessions; must outlive the window.
    MainWindow(host::Catalogue catalogue, Programmer programmer, QSettings& settings);

    void choose(const QString& device);
    void open(const QString& path);
    void save(const QString& path);
    void run(const host::Operation& operation);
    void runsequence();
    void edit(host::Editor editor);
    bool running() const { return running_; }
    const Workspace& workspace() const { return work_; }

  protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

  private:
    // --- of the run
    void logline(const std::string& line) override;
    void progress(int percent) override;
    void step(const std::string& caption) override;
    BoxAnswer box(const Box& box) override;
    bool stopasked() override { return stop_; }
    void runsteps(const std::vector<const host::Operation*>& steps, bool sequence,
                  const QString& what);
    host::Verdict take(const host::RunReport& report, const host::RunRequest& request);
    void telldifferences(const std::set<std::int64_t>& differences);
    bool ready(const std::vector<const host::Operation*>& steps);

    // --- of the window
    void buildpanels();
    QWidget* buildleft();
    QWidget* buildright();
    void buildmenus();
    void buildfilemenu();
    void buildlanguagemenu();
    void showdevice();
    void showoperations();
    void showbuffer(const std::set<std::int64_t>& differences = {});
    void enable(bool idle);
    void restore();
    void keep();
    // Does work and shows what was wrong with it, if anything.
    void guarded(const std::function<void()>& work);
    void servewindows();

    Workspace work_;
    Programmer programmer_;
    QSettings& settings_;
    std::int32_t language_ = 0;
    bool running_ = false, stop_ = false, closing_ = false;
    QElapsedTimer served_;

    CataloguePanel* catalogue_ = nullptr;
    QLabel* deviceline_ = nullptr;
    QLabel* fileline_ = nullptr;
    QWidget* operations_ = nullptr;
    StepList* steps_ = nullptr;
    QStackedWidget* views_ = nullptr;
    HexView* hex_ = nullptr;
    FuseView* fuses_ = nullptr;
    RunPanel* panel_ = nullptr;
    QPlainTextEdit* log_ = nullptr;
    QMenu* operationmenu_ = nullptr;
    QList<QWidget*> idle_;  // usable only while nothing runs
    QList<QAction*> idleactions_;
};

}  // namespace keld2::desktop
