#include "RenderFailurePanel.hpp"

#include "DisplayText.hpp"
#include "EditorStyle.hpp"

#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace tarvik::editor {

QString renderFailureAdvice(const QString& reason, const QString& platform) {
    const auto mentions = [&reason](const char* word) {
        return reason.contains(QLatin1String(word), Qt::CaseInsensitive);
    };
    if (platform == "offscreen" || platform == "minimal") {
        return QObject::tr(
                   "The Qt platform plug-in \"%1\" has no windows that Vulkan could draw in. Start the "
                   "editor with -platform xcb or -platform wayland.")
            .arg(platform);
    }
    if (mentions("was lost") || mentions("device lost")) {
        return QObject::tr(
            "The graphics driver was reset. Start rendering again; if it happens often, update "
            "the graphics driver, or choose another GPU with --gpu.");
    }
    if (mentions("--gpu") || mentions("GPU index") || mentions("no GPU with")) {
        return QObject::tr(
            "Choose another GPU in the preferences and start the editor again. With --gpu, give a "
            "number that tarvik-editor --list-gpus shows.");
    }
    if (mentions("loader") || mentions("driver") || mentions("VK_KHR_surface")) {
        return QObject::tr("Install the Vulkan loader and a driver for your graphics card. On Debian: "
                           "sudo apt install libvulkan1 mesa-vulkan-drivers. Then start rendering again.");
    }
    return QObject::tr(
        "Start rendering again. If it fails again, update the graphics driver, and look into the "
        "log for what happened before.");
}

RenderFailurePanel::RenderFailurePanel(const QString& reason, QWidget* parent) : QWidget(parent) {
    auto* block = new QWidget(this);
    block->setMaximumWidth(560);
    auto* title = plainLabel(tr("The scene cannot be drawn"), block);
    styleText(*title, TextRole::Heading);

    auto* reasonLabel = plainLabel(reason, block);
    reasonLabel->setObjectName("reason");
    reasonLabel->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);

    auto* advice = plainLabel(renderFailureAdvice(reason, QGuiApplication::platformName()), block);
    advice->setObjectName("advice");
    advice->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    styleText(*advice, TextRole::Muted);

    auto* restart = new QPushButton(tr("&Start rendering again"), block);
    restart->setObjectName("restart");
    restart->setMinimumSize(restart->sizeHint() + QSize(24, 8));
    restart->setToolTip(tr("Starts Vulkan afresh; the project stays as it is"));
    connect(restart, &QPushButton::clicked, this, &RenderFailurePanel::restartRequested);

    auto* column = new QVBoxLayout(block);
    column->setSpacing(12);
    column->addStretch();
    for (QWidget* part : {title, reasonLabel, advice})
        column->addWidget(part);
    column->addSpacing(8);
    column->addWidget(restart, 0, Qt::AlignLeft);
    column->addStretch();

    auto* page = new QHBoxLayout(this);
    page->setContentsMargins(24, 24, 24, 24);
    page->addStretch(1);
    page->addWidget(block, 8);
    page->addStretch(1);
    setFocusProxy(restart);
}

} // namespace tarvik::editor
