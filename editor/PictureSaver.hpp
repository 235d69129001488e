#pragma once

#include <QObject>

class QWidget;

namespace tarvik::editor {

class ViewportPane;

// Pictures of a window and of the scene in it, saved where the user says.
class PictureSaver final : public QObject {
    Q_OBJECT

public:
    // The window owns it; the pane is part of the window.
    PictureSaver(QWidget& window, ViewportPane& pane);

    // The name is proposed for the file, without a folder and a suffix.
    void askForScene(const QString& name);
    void askForWindow(const QString& name);

Q_SIGNALS:
    // With the file in the problem.
    void failed(const QString& problem);

private:
    void saveScene(QSize size, const QString& file);
    void saveWindow(const QString& file);
    void save(const QImage& picture, const QString& file);

    QWidget& window_;
    ViewportPane& pane_;
};

} // namespace tarvik::editor
