#pragma once

#include <QByteArray>

class QMainWindow;

namespace tarvik::editor {

// Where the panels of the window are and which of them are hidden, as the user has arranged them; the tool
// bar is one of them. Without a project the window has none.
class WindowLayout final {
public:
    // All panels are there, in their standard places. The window is borrowed.
    explicit WindowLayout(QMainWindow& window);

    // The window's place and its panels, from the last run to the next.
    void restore();
    void save() const;

    void reset();
    void setPanelsAvailable(bool on);

private:
    QMainWindow& window_;
    QByteArray standard_;
    QByteArray arranged_; // while the panels are not available
    bool available_ = true;
};

} // namespace tarvik::editor
