#include "Client.hpp"
#include "Entities.hpp"
#include "LogCapture.hpp"
#include "Pump.hpp"

#include <tarvik/app/AppContext.hpp>
#include <tarvik/app/VulkanViewport.hpp>

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDockWidget>
#include <QImage>
#include <QMainWindow>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdlib>

namespace tarvik::app {
namespace {

using test::pumpUntil;

// A viewport as an editor has it: in a container, in a dock.
struct Dock final : QDockWidget {
    Dock(AppContext& context, test::Client& client)
        : viewport(new VulkanViewport(context, client)),
          container(createWindowContainer(viewport)) {
        viewport->setInputContainer(container);
        setWidget(container);
        QObject::connect(viewport, &VulkanViewport::frameRendered, this, [this] { ++frames; });
    }
    VulkanViewport* viewport;
    QWidget* container;
    int frames = 0;
};

class RealViewportTest : public ::testing::Test {
protected:
    RealViewportTest() {
        scene_.add(test::entityOf(Mesh::Cube, {220, 30, 30}, {}, glm::vec3(2.0F)));
        client_.scene = &scene_;
        window_->resize(640, 400);
        window_->show();
    }

    // Validation messages are log lines: there must be none, the end of everything included.
    ~RealViewportTest() override {
        window_.reset();
        context_.reset();
        EXPECT_EQ(log_.lines(LogLevel::Warn), test::Lines{});
    }

    Dock* addDock() {
        auto* dock = new Dock(*context_, client_);
        window_->addDockWidget(Qt::LeftDockWidgetArea, dock);
        return dock;
    }

    void expectFrames(const Dock& dock) {
        const int before = dock.frames;
        ASSERT_TRUE(pumpUntil([&] { return dock.frames >= before + 3; }))
            << "no frame; log: " << ::testing::PrintToString(log_.lines(LogLevel::Debug));
    }

    test::LogCapture log_;
    std::unique_ptr<AppContext> context_ = std::make_unique<AppContext>(AppOptions{.validation = true});
    Scene scene_{"Test"};
    test::Client client_;
    std::unique_ptr<QMainWindow> window_ = std::make_unique<QMainWindow>();
    Dock* dock_ = addDock();
    Dock* other_ = addDock();
};

// How many pixels of the image look like the colour.
int countLike(const QImage& image, QColor colour) {
    int count = 0;
    for (int i = 0; i < image.width() * image.height(); ++i) {
        const QColor pixel = image.pixelColor(i % image.width(), i / image.width());
        count += std::abs(pixel.red() - colour.red()) + std::abs(pixel.blue() - colour.blue()) <= 8;
    }
    return count;
}

TEST_F(RealViewportTest, TheScreenShowsWhatACaptureShows) {
    other_->hide();
    expectFrames(*dock_);
    const QTemporaryDir folder;
    const QString file = folder.path() + "/screen.png";
    QStringList tool = qEnvironmentVariable("TARVIK_TEST_SCREENSHOT", "import -window root").split(' ')
                       << file;
    const QString program = tool.takeFirst();
    int expected = 0;
    int shown = 0;
    // The compositor may still be resizing the window.
    EXPECT_TRUE(pumpUntil([&] {
        const QSize size = dock_->viewport->size() * dock_->viewport->devicePixelRatio();
        const QImage capture = dock_->viewport->captureFrame(size);
        EXPECT_EQ(capture.size(), size);
        const QColor colour = capture.pixelColor(capture.rect().center());
        EXPECT_GT(colour.red(), 4 * colour.blue());
        expected = countLike(capture, colour);
        EXPECT_GT(expected, size.width() * size.height() / 20);
        EXPECT_EQ(QProcess::execute(program, tool), 0);
        shown = countLike(QImage(file), colour);
        return std::abs(shown - expected) <= expected / 20;
    })) << shown
        << " pixels of the colour, not " << expected;
}

TEST_F(RealViewportTest, ShowsFramesAgainWhateverTheHostDoesWithItsWindows) {
    QMainWindow& window = *window_;
    Dock& dock = *dock_;
    const auto step = [&](const char* name, const std::function<void()>& act) {
        SCOPED_TRACE(name);
        if (HasFatalFailure())
            return;
        act();
        expectFrames(dock);
    };
    step("first show", [] {});
    step("resize storm", [&] {
        for (int i = 0; i < 40; ++i) {
            window.resize(300 + i * 37 % 500, 200 + i * 53 % 400);
            QCoreApplication::processEvents();
        }
    });
    step("hide and show the container", [&] { dock.container->hide(), dock.container->show(); });
    step("hide, wait and show", [&] { dock.hide(), expectFrames(*other_), dock.show(); });
    step("float", [&] { dock.setFloating(true); });
    step("hide while floating", [&] { dock.hide(), expectFrames(*other_), dock.show(); });
    step("dock again", [&] { dock.setFloating(false); });
    step("tab", [&] { window.tabifyDockWidget(other_, &dock), dock.raise(); });
    step("other tab and back", [&] { other_->raise(), expectFrames(*other_), dock.raise(); });
    step("a window of its own", [&] { dock.container->setParent(nullptr), dock.container->show(); });
    step("back into the dock", [&] { dock.setWidget(dock.container), dock.container->show(); });
    step("close and show the window",
         [&] { window.close(), QCoreApplication::processEvents(), window.show(); });
    step("replace the top level", [&] { window.setWindowFlag(Qt::WindowStaysOnTopHint), window.show(); });
    step("full screen", [&] { window.showFullScreen(), expectFrames(dock), window.showNormal(); });
}

TEST_F(RealViewportTest, TwoViewportsShareAContextWithManyEntitiesAndCaptures) {
    for (int i = 0; i < 10'000; ++i)
        scene_.add(test::entityOf(Mesh::Cube, {30, 30, 220}, {i % 100 - 50, -3, i / -100}, glm::vec3(0.6F)));
    expectFrames(*dock_);
    expectFrames(*other_);
    EXPECT_EQ(dock_->viewport->captureFrame({1920, 1080}).size(), QSize(1920, 1080));
    EXPECT_TRUE(dock_->viewport->captureFrame({1'000'000, 2}).isNull());
    delete other_;
    expectFrames(*dock_);
    EXPECT_FALSE(dock_->viewport->hasFailed());
}

} // namespace
} // namespace tarvik::app
