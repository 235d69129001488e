#include "WindowLayout.hpp"

#include <QAction>
#include <QDockWidget>
#include <QMainWindow>
#include <QSet>
#include <QSettings>
#include <QTabBar>
#include <QTimer>
#include <QToolBar>

#include <algorithm>

namespace tarvik::editor {
namespace {

constexpr int kVersion = 2;
const char* const kGeometryKey = "mainWindow/geometry";
const char* const kLayoutKey = "mainWindow/layout";

// Those of a single panel are not.
bool areShown(const QTabBar& tabs, const QList<QDockWidget*>& docks) {
    QSet<QString> titles;
    for (int i = 0; i < tabs.count(); ++i)
        titles += tabs.tabText(i);
    return std::ranges::count_if(docks, [&titles](const QDockWidget* dock) {
               return !dock->isHidden() && !dock->isFloating() && titles.contains(dock->windowTitle());
           }) > 1;
}

// Qt puts the panel behind another one, and the tabs of panels that are all hidden, outside of the window:
// the Tab key would lead out of sight.
void keepFocusInSight(QMainWindow& window) {
    const auto docks = window.findChildren<QDockWidget*>();
    // Once the window is laid out.
    auto* later = new QTimer(&window);
    later->setSingleShot(true);
    later->callOnTimeout(&window, [&window, docks] {
        for (QTabBar* tabs : window.findChildren<QTabBar*>(Qt::FindDirectChildrenOnly))
            tabs->setEnabled(areShown(*tabs, docks));
    });
    for (const QDockWidget* dock : docks) {
        QObject::connect(dock, &QDockWidget::visibilityChanged, dock->widget(),
                         [dock, &window](bool visible) {
                             // A minimised window keeps the focus where it was.
                             dock->widget()->setEnabled(visible || window.isMinimized());
                         });
        QObject::connect(dock, &QDockWidget::topLevelChanged, later, qOverload<>(&QTimer::start));
        QObject::connect(dock, &QDockWidget::dockLocationChanged, later, qOverload<>(&QTimer::start));
        QObject::connect(dock->toggleViewAction(), &QAction::toggled, later, qOverload<>(&QTimer::start));
    }
    later->start();
}

} // namespace

WindowLayout::WindowLayout(QMainWindow& window) : window_(window), standard_(window.saveState(kVersion)) {
    keepFocusInSight(window);
}

void WindowLayout::restore() {
    const QSettings settings;
    window_.restoreGeometry(settings.value(kGeometryKey).toByteArray());
    window_.restoreState(settings.value(kLayoutKey).toByteArray(), kVersion);
}

void WindowLayout::save() const {
    QSettings settings;
    settings.setValue(kGeometryKey, window_.saveGeometry());
    settings.setValue(kLayoutKey, available_ ? window_.saveState(kVersion) : arranged_);
}

void WindowLayout::reset() {
    window_.restoreState(standard_, kVersion);
}

void WindowLayout::setPanelsAvailable(bool on) {
    if (on == available_)
        return;
    available_ = on;
    if (on) {
        window_.restoreState(arranged_, kVersion);
        return;
    }
    arranged_ = window_.saveState(kVersion);
    for (QDockWidget* dock : window_.findChildren<QDockWidget*>())
        dock->hide();
    for (QToolBar* bar : window_.findChildren<QToolBar*>(Qt::FindDirectChildrenOnly))
        bar->hide();
}

} // namespace tarvik::editor
