#pragma once

#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <memory>

class QLineEdit;
class QCheckBox;
class QTableView;

namespace tarvik::app {
class LogBridge;
}

namespace tarvik::editor {

class LogFilter;
class LogInbox;
class LogModel;

// The log as a table with filters. New lines are fetched in batches while the panel is visible, so that a
// flood of them costs the window little.
class LogPanel final : public QWidget {
    Q_OBJECT

public:
    explicit LogPanel(QWidget* parent = nullptr);
    ~LogPanel() override;

    // Shows the bridge's history and what it announces from now on, after the lines that are there already.
    // The bridge is borrowed and must stay until another is attached or the panel is gone.
    void attach(app::LogBridge& bridge);
    void detach();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void fetch();
    void clear();
    void copySelection();
    void followIfAtEnd();
    [[nodiscard]] QWidget* createTools();
    void createTable();

    QPointer<app::LogBridge> bridge_;
    std::shared_ptr<LogInbox> inbox_;
    LogModel* model_;
    LogFilter* filter_;
    QTableView* table_ = nullptr;
    QCheckBox* follow_ = nullptr;
    QTimer fetchTimer_;
};

} // namespace tarvik::editor
