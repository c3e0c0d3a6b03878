// keld2-desktop: the program.
#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QMessageBox>
#include <QSettings>
#include <QStandardPaths>

#include "host/desktop/mainwindow.h"
#include "host/hosterror.h"
#include "host/programmer/hardware.h"
#include "host/programmer/programmer.h"

namespace {

using namespace keld2;

// The simulated chip of each device is kept from one run to the next, as a real one would be.
host::ProgrammerChoice choicefor(const QString& wish, const host::Device& device) {
    host::ProgrammerChoice choice = host::parseprogrammer(wish.toStdString());
    if (choice.image) return choice;
    const QDir folder(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + "/chips");
    folder.mkpath(".");
    choice.image = folder.filePath(QString::fromStdString(device.name) + ".chip").toStdString();
    return choice;
}

int runwindow(const QCommandLineParser& options, const QString& programmer) {
    QSettings settings;
    desktop::MainWindow window(
        host::Catalogue::standard(),
        [programmer](const host::Device& device) {
            return host::simulated(choicefor(programmer, device), device);
        },
        settings);
    if (options.isSet("device")) window.choose(options.value("device"));
    const QStringList files = options.positionalArguments();
    if (!files.isEmpty()) window.open(files.first());
    window.show();
    return QApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName("keld2-desktop");
    QApplication::setOrganizationName("keld2");
    QApplication::setApplicationVersion(KELD2_VERSION);
    QCommandLineParser options;
    options.setApplicationDescription("Desktop host of tq5keld2, the device-family plug-in");
    options.addHelpOption();
    options.addVersionOption();
    options.addOption({{"d", "device"}, "The device to begin with.", "NAME"});
    options.addOption({{"p", "programmer"}, "The programmer (default: sim).", "PROGRAMMER", "sim"});
    options.addPositionalArgument("FILE", "A file to open.", "[FILE]");
    options.process(application);
    try {
        const std::string programmer = options.value("programmer").toStdString();
        if (!keld2::host::parseprogrammer(programmer).simulated) keld2::host::hardware();
        return runwindow(options, options.value("programmer"));
    } catch (const keld2::host::HostError& error) {
        QMessageBox::critical(nullptr, "keld2", QString::fromUtf8(error.what()));
        return error.status();
    }
}
