#pragma once

#include <QWidget>

namespace tarvik::editor {

// What a person can do about a rendering that ended with this reason, on this Qt platform plug-in.
[[nodiscard]] QString renderFailureAdvice(const QString& reason, const QString& platform);

// Stands where the scene would be: why it cannot be drawn, what to do, and a button to start afresh.
class RenderFailurePanel final : public QWidget {
    Q_OBJECT

public:
    explicit RenderFailurePanel(const QString& reason, QWidget* parent = nullptr);

Q_SIGNALS:
    void restartRequested();
};

} // namespace tarvik::editor
