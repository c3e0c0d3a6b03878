#include "host/desktop/mainwindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSettings>
#include <QStackedWidget>
#include <QStatusBar>

#include "host/desktop/boxwindow.h"
#include "host/desktop/cataloguepanel.h"
#include "host/desktop/formwindow.h"
#include "host/desktop/fuseview.h"
#include "host/desktop/hexview.h"
#include "host/desktop/runpanel.h"
#include "host/desktop/steplist.h"
#include "host/hosterror.h"
#include "host/svf/playedtexts.h"

namespace keld2::desktop {

namespace {

constexpr int servedevery = 15;  // ms, of a run that serves its loop more often

QString titleof(const host::Operation& operation) {
    return QString::fromStdU16String(std::u16string(text(operation.title, 0)));
}

// The editors as windows above the main one.
class EditorWindows final : public host::FormFrontEnd {
  public:
    explicit EditorWindows(QWidget* parent) : parent_(parent) {}
    void show(Form& form) override { FormWindow(form, parent_).exec(); }

  private:
    QWidget* parent_;
};

}  // namespace

MainWindow::MainWindow(host::Catalogue catalogue, Programmer programmer, QSettings& settings)
    : work_(std::move(catalogue)), programmer_(std::move(programmer)), settings_(settings) {
    setWindowTitle("keld2");
    setAcceptDrops(true);
    buildpanels();
    buildmenus();
    restore();
    enable(true);
}

// --- devices and files ---------------------------------------------------------------------------

void MainWindow::guarded(const std::function<void()>& work) {
    try {
        work();
    } catch (const std::exception& error) {
        panel_->complain(QString::fromUtf8(error.what()));
    }
}

void MainWindow::choose(const QString& device) {
    if (running_ || device.isEmpty()) return;
    guarded([&] {
        work_.choose(device.toStdString());
        catalogue_->mark(device);
        settings_.setValue("device", device);
        showdevice();
    });
}

void MainWindow::open(const QString& path) {
    if (running_ || !work_.hasdevice()) return;
    guarded([&] {
        work_.load(path.toStdString());
        settings_.setValue("folder", QFileInfo(path).absolutePath());
        showbuffer();
    });
}

void MainWindow::save(const QString& path) {
    if (running_ || !work_.hasdevice()) return;
    guarded([&] {
        work_.save(path.toStdString());
        statusBar()->showMessage(path + " has been written");
    });
}

void MainWindow::edit(host::Editor editor) {
    if (running_ || !work_.hasdevice()) return;
    if (!host::canedit(work_.device(), editor))
        return panel_->complain(QString::fromStdString(work_.device().name) +
                                " has nothing that this editor could edit");
    guarded([&] {
        EditorWindows windows(this);
        const auto edited =
            host::editbuffer(work_.device(), editor, work_.buffer(), language_, windows);
        if (!edited) return;
        work_.setbuffer(*edited);
        showbuffer();
    });
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (!running_ && event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
    const auto urls = event->mimeData()->urls();
    if (!urls.isEmpty() && urls.first().isLocalFile()) open(urls.first().toLocalFile());
}

// --- runs ----------------------------------------------------------------------------------------

void MainWindow::run(const host::Operation& operation) {
    runsteps({&operation}, false, titleof(operation));
}

void MainWindow::runsequence() {
    std::vector<const host::Operation*> steps;
    for (const QString& name : steps_->on())
        if (const auto* step = host::operationnamed(name.toStdString())) steps.push_back(step);
    runsteps(steps, true, "Auto sequence");
}

bool MainWindow::ready(const std::vector<const host::Operation*>& steps) {
    if (running_ || !work_.hasdevice()) return false;
    if (steps.empty()) {
        panel_->complain("No step of the sequence is marked");
        return false;
    }
    for (const host::Operation* step : steps) {
        if (step->needsdata && !work_.hasdata()) {
            panel_->complain(titleof(*step) + " needs data: open a file or read a chip first");
            return false;
        }
    }
    return true;
}

void MainWindow::runsteps(const std::vector<const host::Operation*>& steps, bool sequence,
                          const QString& what) {
    if (!ready(steps)) return;
    running_ = true;
    stop_ = closing_ = false;
    enable(false);
    panel_->start(what);
    served_.start();
    std::optional<host::Verdict> verdict;
    QString complaint;
    try {
        for (const std::string& notice : work_.check(steps)) logline("keld2: " + notice);
        const host::RunRequest request{
            .device = work_.device(),
            .steps = steps,
            .sequence = sequence,
            .data = work_.parts(),
            .language = language_,
            .simulated = true,
            .texts = host::playedtexts(work_.device(), steps, work_.parts())};
        const host::RunReport report =
            host::runondevice(request, programmer_(work_.device()), *this);
        verdict = take(report, request);
    } catch (const std::exception& error) {
        complaint = QString::fromUtf8(error.what());
    }
    running_ = false;
    panel_->finish();
    if (verdict) panel_->show(*verdict, what);
    if (!complaint.isEmpty()) panel_->complain(complaint);
    enable(true);
    if (closing_) close();
}

host::Verdict MainWindow::take(const host::RunReport& report, const host::RunRequest& request) {
    const host::Explanation why = host::explain(work_.device(), request.texts, report);
    host::Verdict verdict = host::verdictof(request, report, why);
    for (const host::Operation* step : request.steps)
        if (step->name == "read" && verdict.well()) work_.setbuffer(report.buffer);
    for (const std::string& notice : verdict.notices) logline("keld2: " + notice);
    if (why.count > 0) log_->appendPlainText(QString::fromStdString(host::told(why)).trimmed());
    std::set<std::int64_t> differences;
    for (const host::Difference& one : verdict.differences.first)
        for (const std::int64_t cell : host::cellsof(one)) differences.insert(cell);
    showbuffer(differences);
    if (!differences.empty()) telldifferences(differences);
    return verdict;
}

void MainWindow::telldifferences(const std::set<std::int64_t>& differences) {
    const bool fuses = work_.device().content == host::Content::fuses;
    const QString first =
        QString("%1").arg(*differences.begin(), 6, fuses ? 10 : 16, QLatin1Char('0'));
    statusBar()->showMessage(QString("%1 differences against the chip, the first at %2")
                                 .arg(differences.size())
                                 .arg(first.toUpper()));
}

void MainWindow::logline(const std::string& line) {
    log_->appendPlainText(QString::fromStdString(line));
}

void MainWindow::progress(int percent) {
    panel_->setprogress(percent);
    servewindows();
}

void MainWindow::step(const std::string& caption) {
    panel_->setstep(QString::fromStdString(caption));
}

BoxAnswer MainWindow::box(const Box& box) { return showbox(box, this); }

void MainWindow::servewindows() {
    if (served_.elapsed() < servedevery) return;
    QApplication::processEvents();
    served_.restart();
}

// --- the window ----------------------------------------------------------------------------------

void MainWindow::closeEvent(QCloseEvent* event) {
    if (!running_) {
        keep();
        return event->accept();
    }
    event->ignore();
    const auto answer =
        QMessageBox::question(this, "keld2", "A run is under way. Stop it, then close?",
                              QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
    if (answer == QMessageBox::Yes) stop_ = closing_ = true;
}

void MainWindow::enable(bool idle) {
    for (QWidget* widget : idle_) widget->setEnabled(idle);
    for (QAction* action : idleactions_) action->setEnabled(idle);
    operations_->setEnabled(idle);
    operationmenu_->setEnabled(idle);
}

void MainWindow::showdevice() {
    const host::Device& device = work_.device();
    deviceline_->setText(QString("<b>%1</b>  %2")
                             .arg(QString::fromStdString(device.name).toHtmlEscaped(),
                                  QString::fromStdString(device.description).toHtmlEscaped()));
    setWindowTitle(QString::fromStdString(device.name) + " \u2013 keld2");
    showoperations();
    showbuffer();
}

void MainWindow::showbuffer(const std::set<std::int64_t>& differences) {
    const host::Device& device = work_.device();
    const std::string& line = work_.fileline();
    fileline_->setText(line.empty() ? "No file: open one (Ctrl+O), drop it here, or read a chip"
                                    : QString::fromStdString(line));
    const bool fuses = device.content == host::Content::fuses;
    const auto shown = std::min(device.value("buflength"), std::ssize(work_.buffer()));
    hex_->setbytes({work_.buffer().begin(), work_.buffer().begin() + shown});
    hex_->setdifferences(differences);
    if (!differences.empty()) hex_->showaddress(*differences.begin());
    if (fuses) {
        const auto count = device.ranges.at(0).length;
        const int width = device.sim["width"].value_or(0);
        fuses_->setfuses({work_.buffer().begin(), work_.buffer().begin() + count}, differences,
                         width > 0 ? width : FuseView::columns(count));
    }
    views_->setCurrentWidget(fuses ? static_cast<QWidget*>(fuses_) : hex_);
}

void MainWindow::restore() {
    restoreGeometry(settings_.value("geometry").toByteArray());
    language_ = settings_.value("language", 0).toInt();
    const QString kept = settings_.value("device").toString();
    const auto& names = work_.catalogue().names();
    const bool known = std::ranges::find(names, kept.toStdString()) != names.end();
    if (known)
        choose(kept);
    else if (!names.empty())
        choose(QString::fromStdString(names.front()));
}

void MainWindow::keep() { settings_.setValue("geometry", saveGeometry()); }

}  // namespace keld2::desktop
