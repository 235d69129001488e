#include "WindowLayout.hpp"

#include "Pump.hpp"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDockWidget>
#include <QLineEdit>
#include <QMainWindow>
#include <QSettings>
#include <QTest>
#include <QToolBar>

#include <set>

namespace tarvik::editor {

TEST(WindowLayoutTest, AHiddenToolBarStaysHiddenUntilTheUserShowsIt) {
    QSettings().clear();
    for (const bool wanted : {true, false, true}) {
        QMainWindow window;
        QToolBar* bar = window.addToolBar("Bar");
        bar->setObjectName("bar");
        WindowLayout layout(window);
        layout.restore();
        layout.setPanelsAvailable(false);
        window.show();
        EXPECT_FALSE(bar->isVisible());
        layout.setPanelsAvailable(true);
        if (bar->isVisible() != wanted)
            bar->toggleViewAction()->trigger();
        for (const bool on : {false, true}) {
            layout.setPanelsAvailable(on);
            EXPECT_EQ(bar->isVisible(), on && wanted);
        }
        layout.setPanelsAvailable(false);
        layout.save();
        QMainWindow next;
        next.addToolBar("Bar")->setObjectName("bar");
        WindowLayout(next).restore();
        EXPECT_EQ(next.findChild<QToolBar*>()->isHidden(), !wanted);
    }
}

TEST(WindowLayoutTest, TheTabKeyLeadsToNothingOutsideOfTheWindow) {
    QMainWindow window;
    window.setCentralWidget(new QLineEdit);
    QDockWidget front("front");
    QDockWidget behind("behind");
    for (QDockWidget* dock : {&front, &behind}) {
        dock->setWidget(new QLineEdit);
        window.addDockWidget(Qt::LeftDockWidgetArea, dock);
    }
    window.tabifyDockWidget(&behind, &front);
    const WindowLayout layout(window);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    const auto isRound = [&window](std::size_t stops) {
        std::set<const QWidget*> found;
        while (found.insert(QApplication::focusWidget()).second)
            QTest::keyClick(window.windowHandle(), Qt::Key_Tab);
        return found.size() == stops;
    };
    EXPECT_TRUE(test::pumpUntil([&] { return isRound(3); })) << "two fields and the tabs";
    window.setWindowState(Qt::WindowMinimized);
    EXPECT_TRUE(front.widget()->isEnabled()) << "it may have the focus when the window comes back";
    window.setWindowState(Qt::WindowNoState);
    front.hide();
    EXPECT_TRUE(test::pumpUntil([&] { return isRound(2); })) << "the field that was behind, and no tabs";
    front.show();
    EXPECT_TRUE(test::pumpUntil([&] { return isRound(3); }));
    for (QDockWidget* dock : {&front, &behind})
        dock->hide();
    EXPECT_TRUE(test::pumpUntil([&] { return isRound(1); }));
}

} // namespace tarvik::editor
