#include "FolderDialog.hpp"

#include "Background.hpp"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QSettings>
#include <QTimer>
#include <QUrl>
#include <QVariant>

#include <chrono>

namespace tarvik::editor {
namespace {

using namespace std::chrono_literals;

constexpr auto kPatience = 300ms;

// The folder in which the last dialog of any Qt program was left, from the settings that they share.
QVariant exchangeLastVisited(const QVariant& folder) {
    constexpr auto key = "FileDialog/lastVisited";
    QSettings settings(QSettings::UserScope, "QtProject");
    const QVariant former = settings.value(key);
    if (folder.isValid())
        settings.setValue(key, folder);
    else
        settings.remove(key);
    return former;
}

// Before Qt's dialog goes where it is told to, it goes where the last one was left, and would wait for a
// server that is gone since. That of another program is in the settings, and put back there; that of this one
// is in memory.
void show(QWidget* parent, const QString& title, const QString& folder,
          const std::function<void(const QString&)>& take) {
    const QVariant lastVisited = exchangeLastVisited({});
    auto* dialog = new QFileDialog(parent, title, folder);
    exchangeLastVisited(lastVisited);
    QObject::connect(dialog, &QObject::destroyed, qApp, [lastVisited] { exchangeLastVisited(lastVisited); });
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(dialog, &QFileDialog::fileSelected, parent, take);
    QObject::connect(dialog, &QFileDialog::finished, dialog,
                     [dialog] { dialog->setDirectoryUrl(QUrl::fromLocalFile(QDir::homePath())); });
    dialog->open();
}

} // namespace

void askForFolder(QWidget* parent, const QString& title, const QString& start,
                  const std::function<void(const QString&)>& take) {
    auto* patience = new QTimer(parent);
    const auto open = [parent, title, take, patience](const QString& folder) {
        patience->deleteLater();
        const QWidget* modal = QApplication::activeModalWidget();
        if (modal != nullptr && modal != parent->window()) // the user has asked for something else meanwhile
            return;
        show(parent, title, folder, take);
    };
    patience->setSingleShot(true);
    QObject::connect(patience, &QTimer::timeout, parent, [open] { open(QDir::homePath()); });
    patience->start(kPatience);
    inBackground(
        patience, [start] { return QFileInfo(start).isDir(); },
        [open, patience, start](bool isThere) {
            patience->stop();
            open(isThere ? start : QDir::homePath());
        });
}

} // namespace tarvik::editor
