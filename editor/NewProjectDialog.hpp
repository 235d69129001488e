#pragma once

#include "ProjectTemplate.hpp"

#include <QDialog>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace tarvik::editor {

// Asks for a new project's name, its place and what it starts from, and makes it. Stays open until that has
// succeeded; cancelled meanwhile, it no longer cares for what becomes of the project.
class NewProjectDialog final : public QDialog {
    Q_OBJECT

public:
    explicit NewProjectDialog(ProjectTemplate start, QWidget* parent = nullptr);

Q_SIGNALS:
    // The folder is the project's own.
    void created(const QString& folder);

protected:
    void accept() override;

private:
    void chooseParentFolder();
    void update();
    void take(const std::expected<void, Error>& made);
    void setFieldsEnabled(bool on);
    [[nodiscard]] QString folder() const;

    QLineEdit* name_;
    QLineEdit* parentFolder_;
    QPushButton* browse_;
    QComboBox* start_;
    QLabel* hint_;
    QPushButton* create_;
};

} // namespace tarvik::editor
