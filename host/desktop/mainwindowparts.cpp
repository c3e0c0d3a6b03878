// The panels and menus of the main window.
#include <QActionGroup>
#include <QApplication>
#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSet>
#include <QSettings>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QVBoxLayout>

#include "host/desktop/cataloguepanel.h"
#include "host/desktop/fuseview.h"
#include "host/desktop/hexview.h"
#include "host/desktop/mainwindow.h"
#include "host/desktop/runpanel.h"
#include "host/desktop/steplist.h"
#include "plugin/texts/table.h"

namespace keld2::desktop {

namespace {

constexpr int mostloglines = 5000;
constexpr int operationcolumns = 2;

struct ShortcutRow {
    std::string_view operation;
    const char* keys;
};

constexpr std::array shortcuts{
    ShortcutRow{"read", "Ctrl+R"},    ShortcutRow{"verify", "Ctrl+Y"},
    ShortcutRow{"blank", "Ctrl+B"},   ShortcutRow{"compare", "Ctrl+M"},
    ShortcutRow{"program", "Ctrl+P"}, ShortcutRow{"erase", "Ctrl+E"},
    ShortcutRow{"config", "Ctrl+G"},  ShortcutRow{"secure", "Ctrl+U"},
};

QKeySequence keysof(const host::Operation& operation) {
    for (const ShortcutRow& row : shortcuts)
        if (row.operation == operation.name) return QKeySequence(row.keys);
    return {};
}

QString titlein(const host::Operation& operation, std::int32_t language) {
    return QString::fromStdU16String(std::u16string(text(operation.title, language)));
}

// The order that was kept for the device while it names the same steps; else the device's own
// sequence with its other operations behind it.
QStringList orderedsteps(const QStringList& sequence, const QStringList& all,
                         const QStringList& kept) {
    if (QSet<QString>(kept.begin(), kept.end()) == QSet<QString>(all.begin(), all.end()))
        return kept;
    QStringList steps = sequence;
    for (const QString& step : all)
        if (!steps.contains(step)) steps += step;
    return steps;
}

const QString filefilter = "Chip content (*.bin *.hex *.ihx *.s19 *.srec *.mot *.jed)";

}  // namespace

void MainWindow::buildpanels() {
    auto* splitter = new QSplitter(this);
    splitter->addWidget(buildleft());
    splitter->addWidget(buildright());
    splitter->setStretchFactor(1, 1);
    splitter->setChildrenCollapsible(false);
    setCentralWidget(splitter);
    resize(1000, 720);
    statusBar()->setObjectName("status");
}

QWidget* MainWindow::buildleft() {
    auto* left = new QWidget(this);
    auto* layout = new QVBoxLayout(left);
    catalogue_ = new CataloguePanel(work_.catalogue(), left);
    operations_ = new QWidget(left);
    operations_->setLayout(new QGridLayout(operations_));
    operations_->layout()->setContentsMargins(0, 0, 0, 0);
    steps_ = new StepList(left);
    auto* label = new QLabel("&Auto sequence", left);
    label->setBuddy(steps_);
    auto* start = new QPushButton("Run the sequence", left);
    start->setObjectName("runsequence");
    start->setShortcut(QKeySequence("Ctrl+Return"));
    start->setToolTip("Carries out the marked steps in turn (Ctrl+Return)");
    start->setAutoDefault(false);
    layout->addWidget(catalogue_, 3);
    layout->addWidget(operations_);
    layout->addWidget(label);
    layout->addWidget(steps_, 2);
    layout->addWidget(start);
    idle_ = {catalogue_, steps_, start};
    connect(catalogue_, &CataloguePanel::chosen, this, &MainWindow::choose);
    connect(start, &QPushButton::clicked, this, &MainWindow::runsequence);
    connect(steps_, &StepList::changed, this, [this] {
        const QString key = "steps/" + QString::fromStdString(work_.device().name);
        settings_.setValue(key + "/all", steps_->all());
        settings_.setValue(key + "/on", steps_->on());
    });
    return left;
}

QWidget* MainWindow::buildright() {
    auto* right = new QWidget(this);
    auto* layout = new QVBoxLayout(right);
    deviceline_ = new QLabel(right);
    fileline_ = new QLabel(right);
    fileline_->setObjectName("file");
    fileline_->setWordWrap(true);
    fileline_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    views_ = new QStackedWidget(right);
    hex_ = new HexView(views_);
    fuses_ = new FuseView(views_);
    views_->addWidget(hex_);
    views_->addWidget(fuses_);
    panel_ = new RunPanel(right);
    log_ = new QPlainTextEdit(right);
    log_->setObjectName("log");
    log_->setReadOnly(true);
    log_->setTabChangesFocus(true);
    log_->setMaximumBlockCount(mostloglines);
    log_->setFont(hex_->font());
    layout->addWidget(deviceline_);
    layout->addWidget(fileline_);
    layout->addWidget(views_, 3);
    layout->addWidget(panel_);
    layout->addWidget(log_, 2);
    connect(&panel_->stopbutton(), &QPushButton::clicked, this, [this] { stop_ = true; });
    connect(hex_, &HexView::pointed, this, [this](qint64 address) {
        statusBar()->showMessage(
            address < 0 ? QString()
                        : QString("Address %1").arg(address, 6, 16, QLatin1Char('0')).toUpper());
    });
    return right;
}

void MainWindow::buildmenus() {
    buildfilemenu();
    operationmenu_ = menuBar()->addMenu("&Operation");
    QMenu* editmenu = menuBar()->addMenu("&Edit");
    const auto addeditor = [&](const char* title, const char* keys, host::Editor editor) {
        idleactions_ +=
            editmenu->addAction(title, QKeySequence(keys), this, [this, editor] { edit(editor); });
    };
    addeditor("&Configuration bytes...", "Ctrl+Shift+C", host::Editor::config);
    addeditor("&User code...", "Ctrl+Shift+U", host::Editor::usercode);
    editmenu->addSeparator();
    editmenu->addAction("&Find a device", QKeySequence("Ctrl+F"), this,
                        [this] { catalogue_->search().setFocus(); });
    editmenu->addAction("C&lear the log", QKeySequence("Ctrl+L"), log_, &QPlainTextEdit::clear);
    buildlanguagemenu();
}

void MainWindow::buildfilemenu() {
    QMenu* menu = menuBar()->addMenu("&File");
    const auto folder = [this] { return settings_.value("folder").toString(); };
    idleactions_ += menu->addAction("&Open...", QKeySequence("Ctrl+O"), this, [this, folder] {
        const QString path = QFileDialog::getOpenFileName(this, "Open", folder(), filefilter);
        if (!path.isEmpty()) open(path);
    });
    idleactions_ += menu->addAction("&Save as...", QKeySequence("Ctrl+S"), this, [this, folder] {
        const QString path = QFileDialog::getSaveFileName(this, "Save as", folder(), filefilter);
        if (!path.isEmpty()) save(path);
    });
    menu->addSeparator();
    menu->addAction("&Quit", QKeySequence("Ctrl+Q"), this, &QWidget::close);
}

void MainWindow::buildlanguagemenu() {
    QMenu* menu = menuBar()->addMenu("&Language");
    auto* group = new QActionGroup(menu);
    const int kept = settings_.value("language", 0).toInt();
    for (const LanguageBlock& block : languageblocks) {
        if (block.offset != 0 && block.column == languageblocks.front().column) continue;
        const std::string name(block.name);
        QAction* action = menu->addAction(QString::fromStdString(name));
        action->setCheckable(true);
        action->setChecked(block.offset == kept);
        group->addAction(action);
        connect(action, &QAction::triggered, this, [this, offset = block.offset] {
            language_ = offset;
            settings_.setValue("language", offset);
            showoperations();
        });
        idleactions_ += action;
    }
}

void MainWindow::showoperations() {
    auto* grid = static_cast<QGridLayout*>(operations_->layout());
    qDeleteAll(operations_->findChildren<QPushButton*>());
    operationmenu_->clear();
    int count = 0;
    QStringList steps, on;
    QHash<QString, QString> titles;
    for (const host::Operation* operation : work_.device().operations) {
        const QString title = titlein(*operation, language_);
        auto* button = new QPushButton(title, operations_);
        button->setObjectName(QString::fromStdString(std::string(operation->name)));
        button->setToolTip(QString::fromStdString(std::string(operation->does)) + " (" +
                           keysof(*operation).toString() + ")");
        const auto start = [this, operation] { run(*operation); };
        connect(button, &QPushButton::clicked, this, start);
        grid->addWidget(button, count / operationcolumns, count % operationcolumns);
        operationmenu_->addAction(title, keysof(*operation), this, start);
        steps += button->objectName();
        titles.insert(button->objectName(), title);
        ++count;
    }
    for (const host::Operation* step : work_.device().autosteps)
        on += QString::fromStdString(std::string(step->name));
    const QString key = "steps/" + QString::fromStdString(work_.device().name);
    steps_->setsteps(orderedsteps(on, steps, settings_.value(key + "/all").toStringList()),
                     settings_.value(key + "/on", on).toStringList(), titles);
}

}  // namespace keld2::desktop
