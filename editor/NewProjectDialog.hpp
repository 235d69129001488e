#pragma once

#include <QDialog>

class QLabel;
class QLineEdit;
class QPushButton;

namespace tarvik::editor {

// Asks for a new project's name and place.
class NewProjectDialog final : public QDialog {
    Q_OBJECT

public:
    explicit NewProjectDialog(QWidget* parent = nullptr);

Q_SIGNALS:
    // The folder is the project's own.
    void projectRequested(const QString& folder, const QString& name);

protected:
    void accept() override;

private:
    void chooseParentFolder();
    void update();
    [[nodiscard]] QString folder() const;

    QLineEdit* name_;
    QLineEdit* parentFolder_;
    QLabel* hint_;
    QPushButton* create_;
};

} // namespace tarvik::editor
