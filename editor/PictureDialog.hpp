#pragma once

#include <QDialog>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;

namespace tarvik::editor {

// Asks for the size and the file of a picture of the scene.
class PictureDialog final : public QDialog {
    Q_OBJECT

public:
    // Offers the size at which the scene is seen, in device pixels, and the file.
    PictureDialog(QSize seen, const QString& file, QWidget* parent = nullptr);

Q_SIGNALS:
    void pictureRequested(QSize size, const QString& file);

protected:
    void accept() override;

private:
    void takePreset();
    void showPreset();
    void chooseFile();
    void update();
    [[nodiscard]] QSize pictureSize() const;
    [[nodiscard]] QString file() const; // with ".png" at its end

    QComboBox* presets_;
    QSpinBox* width_;
    QSpinBox* height_;
    QLineEdit* file_;
    QLabel* hint_;
    QPushButton* save_;
};

} // namespace tarvik::editor
