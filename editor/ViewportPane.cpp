#include "ViewportPane.hpp"

#include "RenderFailurePanel.hpp"

#include <tarvik/app/AppContext.hpp>
#include <tarvik/app/Snapshot.hpp>
#include <tarvik/app/VulkanViewport.hpp>

#include <QGuiApplication>
#include <QPainter>
#include <QVBoxLayout>

namespace tarvik::editor {

ViewportPane::ViewportPane(app::ViewportClient& client, QWidget* parent) : QWidget(parent), client_(client) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    setMinimumSize(160, 120);
}

ViewportPane::~ViewportPane() {
    stop();
}

app::VulkanViewport* ViewportPane::viewport() const {
    return viewport_;
}

QWidget* ViewportPane::container() const {
    return container_;
}

void ViewportPane::start(app::AppContext& context) {
    stop();
    auto viewport = std::make_unique<app::VulkanViewport>(context, client_);
    if (viewport->hasFailed()) {
        showFailure(context.rendererError());
        return;
    }
    connect(viewport.get(), &app::VulkanViewport::frameRendered, this, &ViewportPane::frameRendered);
    // Queued: the viewport must not be deleted inside its own signal. Another viewport may be there by then.
    connect(
        viewport.get(), &app::VulkanViewport::renderFailed, this,
        [this](const QString& reason) {
            if (viewport_ && viewport_->hasFailed())
                showFailure(reason);
        },
        Qt::QueuedConnection);

    viewport_ = viewport.get();
    container_ = createWindowContainer(viewport.release(), this);
    container_->setFocusPolicy(Qt::StrongFocus);
    container_->setAccessibleName(tr("Scene view"));
    viewport_->setInputContainer(container_);
    app::registerViewportContainer(container_, viewport_);
    show(container_);
}

void ViewportPane::stop() {
    delete content_;
}

void ViewportPane::showFocus() {
    layout()->setContentsMargins(1, 1, 1, 1);
    connect(qGuiApp, &QGuiApplication::focusObjectChanged, this, qOverload<>(&ViewportPane::update));
}

void ViewportPane::paintEvent(QPaintEvent*) {
    // Where the window in the container cannot have the focus, the container has it.
    const QObject* focused = QGuiApplication::focusObject();
    if (focused == nullptr || (focused != viewport_ && focused != container_))
        return;
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Link));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void ViewportPane::passFocus(Qt::FocusReason reason) {
    const bool isForward = reason == Qt::TabFocusReason;
    if (window()->focusWidget() != nullptr) {
        focusNextPrevChild(isForward);
        return;
    }
    // The focus is in a window that is no widget, of which Qt does not know the place.
    QWidget* to = container_;
    const auto takesIt = [this, &to] {
        return (to->focusPolicy() & Qt::TabFocus) != 0 && to->focusProxy() == nullptr && to->isVisible() &&
               to->isEnabled() && to->window() == window();
    };
    do {
        to = isForward ? to->nextInFocusChain() : to->previousInFocusChain();
    } while (to != container_ && !takesIt());
    to->setFocus(reason);
}

void ViewportPane::showFailure(const QString& reason) {
    auto* panel = new RenderFailurePanel(reason);
    // Queued: the restart deletes the panel with its button.
    connect(panel, &RenderFailurePanel::restartRequested, this, &ViewportPane::restartRequested,
            Qt::QueuedConnection);
    show(panel);
    Q_EMIT renderFailed(reason);
}

void ViewportPane::show(QWidget* content) {
    delete content_;
    content_ = content;
    layout()->addWidget(content);
    setFocusProxy(content);
    content->show();
}

} // namespace tarvik::editor
