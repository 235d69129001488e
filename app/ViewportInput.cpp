// What the pointer's events and the focus mean to the input state and to the client, and which events of the
// application are a viewport's.
#include <tarvik/app/VulkanViewport.hpp>

#include "TopLevelWindow.hpp"

#include <tarvik/app/ViewportClient.hpp>
#include <tarvik/app/WaylandPointerLock.hpp>

#include <QCursor>
#include <QDropEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QScreen>
#include <QWheelEvent>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace tarvik::app {

namespace {

constexpr double kClickRadius = 4.0;   // a press that moves farther is a drag
constexpr double kLookRadius = 50.0;   // how far from the middle the hidden cursor may get
constexpr double kWarpTolerance = 1.0; // where pixels are scaled, a warp does not land to the point
constexpr float kWheelNotch = 120.0F;  // in the wheel's own unit, eighths of a degree

std::optional<MouseButton> toMouseButton(Qt::MouseButton button) {
    switch (button) {
    case Qt::LeftButton:
        return MouseButton::Left;
    case Qt::RightButton:
        return MouseButton::Right;
    case Qt::MiddleButton:
        return MouseButton::Middle;
    default:
        return std::nullopt;
    }
}

glm::vec2 toVec2(QPointF point) {
    return {static_cast<float>(point.x()), static_cast<float>(point.y())};
}

} // namespace

void VulkanViewport::setInputContainer(QWidget* widget) {
    if (container != widget) {
        releaseInput();
        updateEngagement(false, false);
    }
    container = widget;
    if (!widget)
        return;
    widget->setAcceptDrops(true);
    if (pointerLock || qEnvironmentVariableIntValue("TARVIK_POINTER_PASSTHROUGH") == 1) {
        setFlag(Qt::WindowTransparentForInput);
        widget->setMouseTracking(true);
    }
}

void VulkanViewport::releaseInput() {
    pressing = Qt::NoButton;
    inputState.releaseAll();
    stopLooking();
}

// The input's share of the window's own events; whether the event is done with.
bool VulkanViewport::takeInput(QEvent* event) {
    switch (event->type()) {
    case QEvent::Enter:
        entered();
        return false;
    case QEvent::Leave:
        left();
        return false;
    case QEvent::WindowBlocked: // by a modal dialog, which the releases do not reach either
        releaseInput();
        return false;
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        return passKeyOn(*static_cast<QKeyEvent*>(event));
    case QEvent::ShortcutOverride:
        return passKeyOn(*static_cast<QKeyEvent*>(event)) ||
               overrideShortcut(*static_cast<QKeyEvent*>(event));
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
        return handleDrag(event);
    default:
        return false;
    }
}

void VulkanViewport::focusOutEvent(QFocusEvent* event) {
    releaseInput();
    QWindow::focusOutEvent(event);
}

void VulkanViewport::mousePressEvent(QMouseEvent* event) {
    takeFocus();
    clickEngaged = true;
    // Who is told of the press may run an event loop, in which the button goes up again.
    pressing = event->button();
    Q_EMIT pointerPressed();
    const QPointF position = event->position();
    lastPos = position;
    if (event->button() == Qt::LeftButton) {
        pressPos = position;
        dragged = false;
        pressConsumed = client.mousePressed(toNdc(position), event->button(), event->modifiers());
        if (pressConsumed)
            return;
    }
    if (pressing != event->button())
        return;
    if (const auto button = toMouseButton(event->button()))
        inputState.setMouseButton(*button, true);
    if (event->button() == Qt::RightButton)
        startLooking();
}

void VulkanViewport::mouseReleaseEvent(QMouseEvent* event) {
    pressing = Qt::NoButton;
    if (const auto button = toMouseButton(event->button()))
        inputState.setMouseButton(*button, false);
    const glm::vec2 ndc = toNdc(event->position());
    client.mouseReleased(ndc, event->button());
    if (event->button() == Qt::RightButton)
        stopLooking();
    else if (event->button() == Qt::LeftButton && !std::exchange(pressConsumed, false) && !dragged &&
             width() >= 1 && height() >= 1)
        client.clicked(ndc);
}

void VulkanViewport::mouseMoveEvent(QMouseEvent* event) {
    const QPointF position = event->position();
    client.mouseMoved(toNdc(position), event->modifiers());
    const QPointF motion = motionTo(position);
    if (!pointerLock || !pointerLock->isActive())
        inputState.addMouseDelta(toVec2(motion));
    inputState.setMousePosition(toVec2(position));
    if (event->buttons().testFlag(Qt::LeftButton) && (position - pressPos).manhattanLength() > kClickRadius)
        dragged = true;
    if (looking && warpAvailable && !warpedFrom)
        warpWhenAstray(position);
}

void VulkanViewport::wheelEvent(QWheelEvent* event) {
    inputState.addScroll(static_cast<float>(event->angleDelta().y()) / kWheelNotch);
}

// Most Wayland compositors give an embedded window no keys at all, X11 gives none to a window that lets the
// pointer through. They are taken from the window around then, whose widgets must not have them typed into
// any more.
void VulkanViewport::takeFocus() {
    QWindow* around = topLevelWindow();
    if (around == this || (warpAvailable && !isPassingThrough())) {
        requestActivate();
        return;
    }
    if (!around->isActive())
        around->requestActivate();
    QWidget* focused = container ? container->window()->focusWidget() : nullptr;
    if (focused && focused != container)
        focused->clearFocus();
}

// How far the pointer came since the event before.
QPointF VulkanViewport::motionTo(QPointF position) {
    const auto distance = [position](QPointF other) {
        return (position - other).manhattanLength();
    };
    if (warpedFrom) {
        // Moves that were on their way when the cursor was warped still tell of where it was.
        if (distance(*warpedFrom) < distance(lastPos) &&
            distance(mapFromGlobal(QCursor::pos())) > kWarpTolerance)
            return position - std::exchange(*warpedFrom, position);
        warpedFrom.reset();
        // The warp's own move
        if (distance(lastPos) <= kWarpTolerance)
            lastPos = position;
    }
    return position - std::exchange(lastPos, position);
}

void VulkanViewport::warpWhenAstray(QPointF position) {
    const QPoint centre(width() / 2, height() / 2);
    if ((position - centre).manhattanLength() <= kLookRadius)
        return;
    const QPoint aim = mapToGlobal(centre);
    QCursor::setPos(aim);
    // Asking waits for the display server: a move that it learns of from here on starts at the centre. One
    // that it learnt of before the warp may be merged with the warp's own and be lost.
    static_cast<void>(QCursor::pos());
    // It lands on a whole pixel of the screen.
    const QPointF onScreen = aim - screen()->geometry().topLeft();
    const QPointF landing = QPointF((onScreen * devicePixelRatio()).toPoint()) / devicePixelRatio();
    warpedFrom = std::exchange(lastPos, centre + (landing - onScreen));
}

void VulkanViewport::startLooking() {
    looking = true;
    hideCursor();
    if (pointerLock)
        pointerLock->lock();
}

void VulkanViewport::stopLooking() {
    if (pointerLock)
        pointerLock->unlock();
    if (!std::exchange(looking, false))
        return;
    warpedFrom.reset();
    unsetCursor();
    if (container)
        container->unsetCursor();
}

void VulkanViewport::hideCursor() {
    setCursor(Qt::BlankCursor);
    if (container)
        container->setCursor(Qt::BlankCursor);
}

bool VulkanViewport::engaged() const {
    return hovered || clickEngaged || looking;
}

void VulkanViewport::updateEngagement(bool isHovered, bool isClickEngaged) {
    const bool was = engaged();
    hovered = isHovered;
    clickEngaged = isClickEngaged;
    if (was && !engaged())
        inputState.releaseAll();
}

void VulkanViewport::entered() {
    hovered = true;
    if (looking) // the window system may have forgotten
        hideCursor();
}

void VulkanViewport::left() {
    // On Wayland a held button keeps the pointer where it was pressed. When it leaves all the same, the
    // button is held no more, and no release will say so.
    constexpr std::array buttons{MouseButton::Left, MouseButton::Right, MouseButton::Middle};
    if (!warpAvailable &&
        std::ranges::any_of(buttons, [this](MouseButton button) { return inputState.isHeld(button); }))
        releaseInput();
    updateEngagement(false, clickEngaged);
}

// Runs for every event of the application: what is none of this viewport's business leaves at once.
bool VulkanViewport::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::FocusOut:
    case QEvent::ApplicationDeactivate:
    case QEvent::Expose:
        break;
    default:
        if (watched != container)
            return QWindow::eventFilter(watched, event);
    }
    const QPointer<VulkanViewport> self(this);
    try {
        return (watched == container && takeFromContainer(event)) || takeFromApplication(watched, event);
    } catch (...) {
        if (self)
            fail(std::current_exception());
        return true;
    }
}

bool VulkanViewport::takeFromApplication(QObject* watched, QEvent* event) {
    const bool otherWindow = watched != this && watched->isWindowType();
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        if (otherWindow && clickEngaged)
            updateEngagement(hovered, false);
        return false;
    case QEvent::MouseButtonRelease:
        if (otherWindow)
            releaseElsewhere(static_cast<QMouseEvent*>(event)->button());
        return false;
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
        return otherWindow && takeKeyFrom(watched, *static_cast<QKeyEvent*>(event));
    case QEvent::FocusOut:
        // The window that takes over gets the releases, too.
        if (isAround(watched) && QGuiApplication::focusWindow() != this)
            releaseInput();
        return false;
    case QEvent::ApplicationDeactivate:
        releaseInput();
        return false;
    case QEvent::Expose:
        if (!warpAvailable && isAround(watched))
            wakeWhenNotExposed();
        return false;
    default:
        return false;
    }
}

// A menu that opens while a button is down gets its release.
void VulkanViewport::releaseElsewhere(Qt::MouseButton button) {
    pressing = Qt::NoButton;
    if (const auto known = toMouseButton(button))
        inputState.setMouseButton(*known, false);
    if (button == Qt::RightButton)
        stopLooking();
}

bool VulkanViewport::isPassingThrough() const {
    return flags().testFlag(Qt::WindowTransparentForInput);
}

// What the container gets in the viewport's place; whether the event is done with.
bool VulkanViewport::takeFromContainer(QEvent* event) {
    const bool passedThrough = isPassingThrough();
    switch (event->type()) {
    case QEvent::Show:
        if (!warpAvailable)
            wakeWhenNotExposed();
        return false;
    case QEvent::Hide:
        releaseInput();
        updateEngagement(false, false);
        releaseWindow();
        return false;
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
        return handleDrag(event);
    case QEvent::Enter:
        if (passedThrough)
            entered();
        return false;
    case QEvent::Leave:
        if (passedThrough)
            left();
        return false;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        if (passedThrough)
            mousePressEvent(static_cast<QMouseEvent*>(event));
        return passedThrough;
    case QEvent::MouseButtonRelease:
        if (passedThrough)
            mouseReleaseEvent(static_cast<QMouseEvent*>(event));
        return passedThrough;
    case QEvent::MouseMove:
        if (passedThrough)
            mouseMoveEvent(static_cast<QMouseEvent*>(event));
        return passedThrough;
    case QEvent::Wheel:
        if (passedThrough)
            wheelEvent(static_cast<QWheelEvent*>(event));
        return passedThrough;
    default:
        return false;
    }
}

bool VulkanViewport::handleDrag(QEvent* event) {
    auto* drop = static_cast<QDropEvent*>(event); // the base of all three
    if (!drop->mimeData() || !drop->mimeData()->hasUrls())
        return false;
    const QList<QUrl> urls = drop->mimeData()->urls();
    bool accepted = true;
    if (drop->type() == QEvent::Drop)
        client.dropped(urls, toNdc(drop->position()));
    else
        accepted = client.canDrop(urls);
    if (accepted)
        drop->setDropAction(Qt::CopyAction);
    drop->setAccepted(accepted);
    return true;
}

glm::vec2 VulkanViewport::toNdc(QPointF position) const {
    return {2.0F * static_cast<float>(position.x() / std::max(width(), 1)) - 1.0F,
            2.0F * static_cast<float>(position.y() / std::max(height(), 1)) - 1.0F};
}

QWindow* VulkanViewport::topLevelWindow() {
    return &topLevelOf(*this);
}

// Whether it is the window that this one is embedded in.
bool VulkanViewport::isAround(const QObject* object) {
    return object != this && object == topLevelWindow();
}

} // namespace tarvik::app
