#include "FileDialogs.hpp"

#include "Background.hpp"

#include <tarvik/app/Theme.hpp>

#include <QAbstractFileIconProvider>
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

// Instead of pictures in another style.
class Icons final : public QAbstractFileIconProvider {
public:
    [[nodiscard]] QIcon icon(IconType type) const override { return type == File ? file_ : folder_; }
    [[nodiscard]] QIcon icon(const QFileInfo& entry) const override {
        return entry.isFile() ? file_ : folder_;
    }

private:
    QIcon file_ = app::theme::icon("file");
    QIcon folder_ = app::theme::icon("folder");
};

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
QFileDialog* createDialog(QWidget* parent, const QString& title, const QString& start) {
    const QVariant lastVisited = exchangeLastVisited({});
    auto* dialog = new QFileDialog(parent, title, start);
    exchangeLastVisited(lastVisited);
    QObject::connect(dialog, &QObject::destroyed, qApp, [lastVisited] { exchangeLastVisited(lastVisited); });
    QObject::connect(dialog, &QFileDialog::finished, dialog,
                     [dialog] { dialog->setDirectoryUrl(QUrl::fromLocalFile(QDir::homePath())); });
    static Icons icons;
    dialog->setIconProvider(&icons);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    return dialog;
}

void show(QWidget* parent, const QString& title, const QString& folder,
          const std::function<void(const QString&)>& take) {
    QFileDialog* dialog = createDialog(parent, title, folder);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    QObject::connect(dialog, &QFileDialog::fileSelected, parent, take);
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

QFileDialog* createPictureDialog(QWidget* parent, const QString& title, const QString& file) {
    QFileDialog* dialog = createDialog(parent, title, file);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setNameFilter(QObject::tr("PNG pictures (*.png)"));
    dialog->setDefaultSuffix("png");
    return dialog;
}

} // namespace tarvik::editor
