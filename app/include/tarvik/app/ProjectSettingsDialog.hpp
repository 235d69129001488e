#pragma once

#include <tarvik/app/Export.hpp>

#include <QDialog>

class QComboBox;
class QLineEdit;
class QPlainTextEdit;

namespace tarvik {
class Project;
}

namespace tarvik::app {

// Edits an open project's name, description and default scene, and shows where, by which engine version and
// when it was made. The project is borrowed. It is written to when the user presses Save with a valid name;
// after a save that failed it holds the new values, and the dialog stays open for another try.
class TARVIK_APPCOMMON_API ProjectSettingsDialog final : public QDialog {
    Q_OBJECT

public:
    ProjectSettingsDialog(Project& edited, QWidget* parent);

private:
    void accept() override;
    void fillScenes();

    Project& project;
    QLineEdit* nameEdit;
    QPlainTextEdit* descriptionEdit;
    QComboBox* sceneCombo;
};

} // namespace tarvik::app
