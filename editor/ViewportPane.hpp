#pragma once

#include <QPointer>
#include <QWidget>

namespace tarvik::app {
class AppContext;
class ViewportClient;
class VulkanViewport;
} // namespace tarvik::app

namespace tarvik::editor {

// The place of the scene in a window: the viewport, or why there is none.
class ViewportPane final : public QWidget {
    Q_OBJECT

public:
    // The client is borrowed.
    explicit ViewportPane(app::ViewportClient& client, QWidget* parent = nullptr);
    ~ViewportPane() override;

    // The context is borrowed until stop().
    void start(app::AppContext& context);
    void stop();

    // With a frame around the viewport while the keys are its own, as other widgets have.
    void showFocus();
    // To the widget that the Tab key leads to, or back.
    void passFocus(Qt::FocusReason reason);

    // Both null while nothing is drawn.
    [[nodiscard]] app::VulkanViewport* viewport() const;
    [[nodiscard]] QWidget* container() const;

Q_SIGNALS:
    void frameRendered();
    void renderFailed(const QString& reason);
    void restartRequested();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void showFailure(const QString& reason);
    void show(QWidget* content);

    app::ViewportClient& client_;
    QPointer<QWidget> content_;
    QPointer<QWidget> container_;
    QPointer<app::VulkanViewport> viewport_; // owned by its container
};

} // namespace tarvik::editor
