#pragma once

#include <QBasicTimer>
#include <QPlainTextEdit>

namespace tarvik::editor {

// A build's output as text. Filled piece by piece, because one of many megabytes would hold the window still.
class BuildOutputView final : public QPlainTextEdit {
    Q_OBJECT

public:
    explicit BuildOutputView(QWidget* parent = nullptr);

    void setOutput(const QString& output);

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    [[nodiscard]] QString takePiece();

    QString output_;
    qsizetype shown_ = 0;
    QBasicTimer timer_;
};

} // namespace tarvik::editor
