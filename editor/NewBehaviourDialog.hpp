#pragma once

#include <QDialog>
#include <QPointer>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace tarvik::editor {

class ProjectBuild;

// Asks for a new behaviour's name and writes its first source.
class NewBehaviourDialog final : public QDialog {
    Q_OBJECT

public:
    // build is borrowed; when it goes, nothing can be created any more.
    explicit NewBehaviourDialog(ProjectBuild& build, QWidget* parent = nullptr);

Q_SIGNALS:
    void created(const QString& path);

protected:
    void accept() override;

private:
    void update();
    // Empty when the name is good.
    [[nodiscard]] QString problem() const;
    [[nodiscard]] QString path() const;
    [[nodiscard]] QString shortPath() const; // within the project

    QPointer<ProjectBuild> build_;
    QLineEdit* name_;
    QCheckBox* open_;
    QLabel* hint_;
    QPushButton* create_;
};

} // namespace tarvik::editor
