#pragma once

#include <QDesktopServices>
#include <QObject>
#include <QUrl>

namespace tarvik::test {

// Takes what would be opened in the user's programs.
class OpenedFiles final : public QObject {
    Q_OBJECT

public:
    OpenedFiles() { QDesktopServices::setUrlHandler("file", this, "open"); }
    ~OpenedFiles() override { QDesktopServices::unsetUrlHandler("file"); }

    QStringList paths;

public Q_SLOTS:
    void open(const QUrl& url) { paths += url.toLocalFile(); }
};

} // namespace tarvik::test
