// Which keys are a viewport's, and what they do to the input state and to the client.
#include <tarvik/app/VulkanViewport.hpp>

#include <tarvik/app/ViewportClient.hpp>

#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace tarvik::app {

namespace {

constexpr std::array<std::pair<Qt::Key, Key>, 49> kKeys{{
    {Qt::Key_W, Key::W},          {Qt::Key_A, Key::A},
    {Qt::Key_S, Key::S},          {Qt::Key_D, Key::D},
    {Qt::Key_Q, Key::Q},          {Qt::Key_E, Key::E},
    {Qt::Key_F, Key::F},          {Qt::Key_Up, Key::Up},
    {Qt::Key_Down, Key::Down},    {Qt::Key_Left, Key::Left},
    {Qt::Key_Right, Key::Right},  {Qt::Key_Space, Key::Space},
    {Qt::Key_Shift, Key::Shift},  {Qt::Key_Control, Key::Control},
    {Qt::Key_Alt, Key::Alt},      {Qt::Key_Escape, Key::Escape},
    {Qt::Key_Return, Key::Enter}, {Qt::Key_Enter, Key::Enter},
    {Qt::Key_Tab, Key::Tab},      {Qt::Key_Backspace, Key::Backspace},
    {Qt::Key_B, Key::B},          {Qt::Key_C, Key::C},
    {Qt::Key_G, Key::G},          {Qt::Key_H, Key::H},
    {Qt::Key_I, Key::I},          {Qt::Key_J, Key::J},
    {Qt::Key_K, Key::K},          {Qt::Key_L, Key::L},
    {Qt::Key_M, Key::M},          {Qt::Key_N, Key::N},
    {Qt::Key_O, Key::O},          {Qt::Key_P, Key::P},
    {Qt::Key_R, Key::R},          {Qt::Key_T, Key::T},
    {Qt::Key_U, Key::U},          {Qt::Key_V, Key::V},
    {Qt::Key_X, Key::X},          {Qt::Key_Y, Key::Y},
    {Qt::Key_Z, Key::Z},          {Qt::Key_0, Key::Num0},
    {Qt::Key_1, Key::Num1},       {Qt::Key_2, Key::Num2},
    {Qt::Key_3, Key::Num3},       {Qt::Key_4, Key::Num4},
    {Qt::Key_5, Key::Num5},       {Qt::Key_6, Key::Num6},
    {Qt::Key_7, Key::Num7},       {Qt::Key_8, Key::Num8},
    {Qt::Key_9, Key::Num9},
}};

std::optional<Key> toKey(int key) {
    const auto* found = std::ranges::find(kKeys, key, [](const auto& entry) { return int{entry.first}; });
    return found == kKeys.end() ? std::nullopt : std::optional(found->second);
}

// The keys that move through a scene; an engaged viewport keeps them from the widgets around it.
bool isNavigation(int key) {
    switch (key) {
    case Qt::Key_W:
    case Qt::Key_A:
    case Qt::Key_S:
    case Qt::Key_D:
    case Qt::Key_Q:
    case Qt::Key_E:
    case Qt::Key_Space:
    case Qt::Key_Left:
    case Qt::Key_Up:
    case Qt::Key_Right:
    case Qt::Key_Down:
        return true;
    default:
        return false;
    }
}

bool isTextInput(const QWidget* widget) {
    if (const auto* box = qobject_cast<const QComboBox*>(widget))
        return box->isEditable();
    return qobject_cast<const QLineEdit*>(widget) || qobject_cast<const QAbstractSpinBox*>(widget) ||
           qobject_cast<const QPlainTextEdit*>(widget) || qobject_cast<const QTextEdit*>(widget);
}

} // namespace

// A Wayland compositor that gives an embedded window the keys leaves them there when a widget of the window
// around takes the focus without a click.
bool VulkanViewport::passKeyOn(QKeyEvent& event) {
    const QWidget* focused = !warpAvailable && container ? container->window()->focusWidget() : nullptr;
    QWindow* around = topLevelWindow();
    if (!focused || focused == container || around == this)
        return false;
    QCoreApplication::sendEvent(around, &event);
    return true;
}

void VulkanViewport::keyPressEvent(QKeyEvent* event) {
    takeKey(*event);
    if (!client.keyPressed(event->key(), event->modifiers()))
        QWindow::keyPressEvent(event);
}

void VulkanViewport::keyReleaseEvent(QKeyEvent* event) {
    takeKey(*event);
}

// Whether it was the release of a held key. A key that is let go with other modifiers down than at its press
// tells another key code then, but the same scan code.
bool VulkanViewport::takeKey(const QKeyEvent& event) {
    if (event.isAutoRepeat())
        return false;
    const auto key = toKey(event.key());
    const quint32 code = event.nativeScanCode();
    if (event.type() == QEvent::KeyPress) {
        if (key) {
            inputState.setKey(*key, true);
            scanCodes.at(static_cast<std::size_t>(*key)) = code;
        }
        return false;
    }
    bool held = false;
    for (std::size_t i = 0; i < kKeyCount; ++i) {
        const auto candidate = static_cast<Key>(i);
        if (candidate == key || (code != 0 && code == scanCodes.at(i))) {
            held = held || inputState.isHeld(candidate);
            inputState.setKey(candidate, false);
        }
    }
    return held;
}

// What a window gets that is not the viewport's own; whether the event is done with. Keys reach the top level
// while the keyboard's focus is in one of its widgets, and on most Wayland compositors always.
bool VulkanViewport::takeKeyFrom(const QObject* window, QKeyEvent& event) {
    // Wherever it arrives, the key is up.
    const bool wasHeld = event.type() == QEvent::KeyRelease && takeKey(event);
    if (!isAround(window) || !hasKeys())
        return false;
    switch (event.type()) {
    case QEvent::ShortcutOverride:
        return overrideShortcut(event);
    case QEvent::KeyRelease:
        return (wasHeld || event.isAutoRepeat()) && isNavigation(event.key());
    default:
        takeKey(event);
        return isNavigation(event.key()) || client.keyPressed(event.key(), event.modifiers());
    }
}

// Whether the keys of the window around are this viewport's. A picture that broke off has nothing to move in.
bool VulkanViewport::hasKeys() const {
    if (failed && vulkanInstance() != nullptr)
        return false;
    if (isTextInput(QApplication::focusWidget()) || QApplication::activePopupWidget() != nullptr)
        return false;
    return engaged() || (!warpAvailable && container && container->hasFocus());
}

// An action on a plain letter must not fire while that letter moves through the scene.
bool VulkanViewport::overrideShortcut(QKeyEvent& event) const {
    const bool plain = !(event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
    if (!plain || !isNavigation(event.key()) || !hasKeys())
        return false;
    event.accept();
    return true;
}

} // namespace tarvik::app
