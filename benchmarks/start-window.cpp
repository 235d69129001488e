// Shows the editor's window on its start page, with the argument "theme" in the theme's look, and prints how
// many nanoseconds passed from the finished application object to the finished first painting.
#include "MainWindow.hpp"
#include "Session.hpp"

#include <tarvik/app/Theme.hpp>

#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>

#include <fmt/format.h>

#include <cstdio>

namespace {

class FirstPaint final : public QObject {
public:
    FirstPaint() { time_.start(); }

    bool eventFilter(QObject* window, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            window->removeEventFilter(this);
            // The window's children are painted in the same go.
            QMetaObject::invokeMethod(this, &FirstPaint::finish, Qt::QueuedConnection);
        }
        return false;
    }

private:
    void finish() {
        fmt::print("{}\n", time_.nsecsElapsed());
        std::fflush(stdout);
        QCoreApplication::quit();
    }

    QElapsedTimer time_;
};

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    FirstPaint painted;
    if (QApplication::arguments().contains(QStringLiteral("theme")))
        tarvik::app::theme::apply(application);
    tarvik::editor::Session session({}, {});
    tarvik::editor::MainWindow window(session);
    window.installEventFilter(&painted);
    window.start();
    return QApplication::exec();
}
