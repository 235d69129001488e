#pragma once

#include <QPointer>
#include <QTimer>
#include <QWidget>

class QLabel;
class QModelIndex;
class QProgressBar;
class QPushButton;
class QTableView;
class QTabWidget;

namespace tarvik::editor {

class BuildOutputView;
class DiagnosticModel;
class ProjectBuild;

// How the build of the project's behaviours goes: its state, what the tools complain about, and their output.
class BuildPanel final : public QWidget {
    Q_OBJECT

public:
    explicit BuildPanel(QWidget* parent = nullptr);

    // Of which project; null for none. Borrowed: it may be gone before the panel.
    void watch(ProjectBuild* build);

Q_SIGNALS:
    void problemsChanged(int errors, int warnings);

private:
    [[nodiscard]] QWidget* createTools();
    [[nodiscard]] QWidget* createTabs();
    [[nodiscard]] QTableView* createTable();

    void showStarted();
    void showFinished(bool ok, const QString& output);
    void showCancelled();
    void showElapsed();
    void setBusy(bool busy);
    void setState(const QString& text);
    void setFailure(const QString& text);
    void setResult(const QString& output);
    void openFile(const QModelIndex& row);
    void copySelection();

    QPointer<ProjectBuild> build_;
    QLabel* state_ = nullptr;
    QProgressBar* progress_ = nullptr;
    QPushButton* start_ = nullptr;
    QPushButton* cancel_ = nullptr;
    QLabel* notice_ = nullptr; // about a file that could not be opened
    QTabWidget* tabs_ = nullptr;
    DiagnosticModel* model_;
    QTableView* table_ = nullptr;
    BuildOutputView* output_ = nullptr;
    QTimer elapsedTimer_;
};

} // namespace tarvik::editor
