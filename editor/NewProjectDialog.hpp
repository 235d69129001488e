#pragma once

#include "ProjectTemplate.hpp"

#include <QDialog>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace tarvik::editor {

// Asks for a new project's name, its place and what it starts from.
class NewProjectDialog final : public QDialog {
    Q_OBJECT

public:
    explicit NewProjectDialog(ProjectTemplate start, QWidget* parent = nullptr);

Q_SIGNALS:
    // The folder is the project's own.
    void projectRequested(const QString& folder, const QString& name, tarvik::editor::ProjectTemplate start);

protected:
    void accept() override;

private:
    void chooseParentFolder();
    void update();
    [[nodiscard]] QString folder() const;

    QLineEdit* name_;
    QLineEdit* parentFolder_;
    QComboBox* start_;
    QLabel* hint_;
    QPushButton* create_;
};

} // namespace tarvik::editor
