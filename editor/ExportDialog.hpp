#pragma once

#include "Exporter.hpp"

#include <QDialog>
#include <QPointer>

class QComboBox;
class QDialogButtonBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;

namespace tarvik::editor {

class ProjectBuild;

// Asks for the platform, the name and the folder of an exported game, builds what it needs, exports it, and
// shows how that goes and what has come of it.
class ExportDialog final : public QDialog {
    Q_OBJECT

public:
    // build is borrowed; when it goes, nothing can be exported any more.
    ExportDialog(ProjectBuild& build, const QString& name, QWidget* parent = nullptr);

protected:
    void accept() override;
    // Cancels what goes on first; once more closes.
    void reject() override;

private:
    enum class Stage : std::uint8_t { Asking, Building, Exporting, Exported };

    void enter(Stage stage, const QString& message);
    void update();
    // Empty when the fields are good.
    [[nodiscard]] QString problem() const;
    [[nodiscard]] QString destination() const;
    void chooseFolder();
    void build();
    void takeBuild(bool ok);
    void startExport();
    void showProgress(quint64 done, quint64 total);
    void takeOutcome(const ExportOutcome& outcome);

    QPointer<ProjectBuild> build_;
    Exporter exporter_;
    Stage stage_ = Stage::Asking;
    int buildsAwaited_ = 0;
    QString launcher_;

    QComboBox* platform_;
    QLineEdit* name_;
    QLineEdit* folder_;
    QPushButton* browse_;
    QProgressBar* progress_;
    QLabel* message_;
    QPushButton* export_;
    QPushButton* open_;
    QPushButton* close_;
};

} // namespace tarvik::editor
