#pragma once

#include "GpuList.hpp"

#include <tarvik/app/Preferences.hpp>

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLineEdit;

namespace tarvik::editor {

// Edits the stored preferences.
class PreferencesDialog final : public QDialog {
    Q_OBJECT

public:
    explicit PreferencesDialog(const GpuList& gpus, QWidget* parent = nullptr);

protected:
    void accept() override;

private:
    void fill(const app::Preferences& preferences, const GpuList& gpus);
    void browse();
    [[nodiscard]] app::Preferences chosen() const;
    void showProblem(const QString& title, const QString& text);

    QComboBox* gpu_;
    QComboBox* validation_;
    QCheckBox* vsync_;
    QLineEdit* folder_;
};

} // namespace tarvik::editor
