#include "ModuleStore.hpp"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryFile>

namespace tarvik::editor {
namespace {

bool isWritable(const QString& folder) {
    // By trying: not every system's permissions tell it.
    return QDir().mkpath(folder) && QTemporaryFile(QDir(folder).filePath("probe")).open();
}

} // namespace

ModuleStore::ModuleStore(const QString& folder)
    : folder_(isWritable(folder)
                  ? folder
                  : QStandardPaths::writableLocation(QStandardPaths::CacheLocation) + "/loaded") {}

void ModuleStore::sweep() const {
    const QDir folder(folder_);
    for (const QString& name : folder.entryList({"game-*"}, QDir::Files))
        QFile::remove(folder.filePath(name)); // fails on Windows while a process uses it
}

std::expected<QString, Error> ModuleStore::copy(const QString& library) const {
    static int number = 0;
    const QDir folder(folder_);
    if (!folder.mkpath("."))
        return makeError("cannot create {}", folder_.toStdString());
    const QString name = QString("game-%1-%2.%3")
                             .arg(QCoreApplication::applicationPid())
                             .arg(++number)
                             .arg(QFileInfo(library).suffix());
    const QString file = folder.absoluteFilePath(name);
    QFile::remove(file); // of a process that had our number
    QFile original(library);
    if (!original.copy(file)) {
        return makeError("cannot copy {} to {}: {}", library.toStdString(), file.toStdString(),
                         original.errorString().toStdString());
    }
    return file;
}

void ModuleStore::beginTrial(const QByteArray& fingerprint) const {
    QDir(folder_).mkpath(".");
    QFile file(trialFile());
    if (file.open(QIODevice::WriteOnly))
        file.write(fingerprint);
}

void ModuleStore::endTrial() const {
    QFile::remove(trialFile());
}

bool ModuleStore::hasCrashed(const QByteArray& fingerprint) const {
    QFile file(trialFile());
    return !fingerprint.isEmpty() && file.open(QIODevice::ReadOnly) && file.readAll() == fingerprint;
}

QByteArray ModuleStore::fingerprint(const QString& library) {
    QFile file(library);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    if (!file.open(QIODevice::ReadOnly) || !hash.addData(&file))
        return {};
    return hash.result().toHex();
}

QString ModuleStore::trialFile() const {
    return QDir(folder_).filePath("trial");
}

} // namespace tarvik::editor
