#include "Support.hpp"

#include <tarvik/app/AppContext.hpp>
#include <tarvik/app/VulkanViewport.hpp>

#include <gtest/gtest.h>

#include <QDockWidget>
#include <QGuiApplication>
#include <QImage>
#include <QMainWindow>
#include <QProcess>
#include <QTemporaryDir>

#include <array>
#include <cstdlib>

namespace tarvik::app {
namespace {

using testing::Names;
using testing::pumpUntil;

AppOptions withValidation() {
    AppOptions options;
    options.validation = true;
    return options;
}

// A viewport as an editor has it: in a container, in a dock.
struct Dock final : QDockWidget {
    Dock(AppContext& context, testing::Client& client)
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
        addBox({220, 30, 30}, glm::vec3(0.0F), 2.0F);
        client_.scene = &scene_;
        client_.settings.grid = false;
        window_->setCentralWidget(new QWidget);
        window_->resize(640, 400);
        dock_ = addDock();
        other_ = addDock();
        window_->show();
    }

    // Validation messages are log lines: there must be none, the end of everything included.
    ~RealViewportTest() override {
        window_.reset();
        context_.reset();
        EXPECT_EQ(log_.lines(LogLevel::Warn), Names{});
    }

    void addBox(Colour colour, glm::vec3 position, float size) {
        Entity box;
        box.transform.position = position;
        box.transform.scale = glm::vec3(size);
        box.mesh = Mesh::Cube;
        box.colour = colour;
        scene_.add(box);
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

    testing::LogCapture log_;
    std::unique_ptr<AppContext> context_ = std::make_unique<AppContext>(withValidation());
    Scene scene_{"Test"};
    testing::Client client_;
    std::unique_ptr<QMainWindow> window_ = std::make_unique<QMainWindow>();
    Dock* dock_ = nullptr;
    Dock* other_ = nullptr;
};

// How many pixels of the image look like the colour.
int countLike(const QImage& image, QColor colour) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            count += std::abs(pixel.red() - colour.red()) <= 4 &&
                     std::abs(pixel.green() - colour.green()) <= 4 &&
                     std::abs(pixel.blue() - colour.blue()) <= 4;
        }
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
    struct Step {
        const char* name;
        std::function<void()> act;
    };
    QMainWindow& window = *window_;
    Dock& dock = *dock_;
    std::vector<Step> steps = {
        {"first show",
         [] {
         }},
        {"resize storm",
         [&] {
             for (int i = 0; i < 40; ++i) {
                 window.resize(300 + i * 37 % 500, 200 + i * 53 % 400);
                 QCoreApplication::processEvents();
             }
         }},
        {"hide and show the container",
         [&] {
             dock.container->hide(), dock.container->show();
         }},
        {"hide, wait and show the container",
         [&] {
             dock.container->hide();
             expectFrames(*other_);
             dock.container->show();
         }},
        {"hide the dock",
         [&] {
             dock.hide(), expectFrames(*other_), dock.show();
         }},
        {"float",
         [&] {
             dock.setFloating(true);
         }},
        {"hide while floating",
         [&] {
             dock.hide(), expectFrames(*other_), dock.show();
         }},
        {"dock again",
         [&] {
             dock.setFloating(false);
         }},
        {"move",
         [&] {
             window.addDockWidget(Qt::RightDockWidgetArea, &dock);
         }},
        {"tab",
         [&] {
             window.tabifyDockWidget(other_, &dock), dock.raise();
         }},
        {"other tab and back",
         [&] {
             other_->raise(), expectFrames(*other_), dock.raise();
         }},
        {"a window of its own",
         [&] {
             dock.container->setParent(nullptr), dock.container->show();
         }},
        {"back into the dock",
         [&] {
             dock.setWidget(dock.container), dock.container->show();
         }},
        {"hide and show the window",
         [&] {
             window.hide(), QCoreApplication::processEvents(), window.show();
         }},
        {"close and show the window",
         [&] {
             window.close(), QCoreApplication::processEvents(), window.show();
         }},
        {"replace the top level",
         [&] {
             window.setWindowFlag(Qt::WindowStaysOnTopHint), window.show();
         }},
        {"full screen",
         [&] {
             window.showFullScreen(), expectFrames(dock), window.showNormal();
         }},
        {"float, hide the window, show it",
         [&] {
             dock.setFloating(true), window.hide(), window.show();
         }},
    };
    // A Wayland client cannot bring itself back.
    if (QGuiApplication::platformName() == "xcb")
        steps.push_back({"minimise", [&] {
                             window.showMinimized(), QCoreApplication::processEvents(), window.showNormal();
                         }});
    for (const Step& step : steps) {
        SCOPED_TRACE(step.name);
        step.act();
        expectFrames(dock);
        if (HasFatalFailure())
            return;
    }
}

TEST_F(RealViewportTest, TwoViewportsShareAContextWithManyEntitiesAndCaptures) {
    for (int i = 0; i < 10'000; ++i)
        addBox({30, 30, 220}, glm::vec3(i % 100 - 50, -3, i / -100), 0.6F);
    expectFrames(*dock_);
    expectFrames(*other_);
    QColor colour;
    for (const QSize size : {QSize(640, 360), QSize(1, 1), QSize(17, 33), QSize(1920, 1080)}) {
        const QImage image = dock_->viewport->captureFrame(size);
        ASSERT_EQ(image.size(), size);
        if (!colour.isValid())
            colour = image.pixelColor(image.rect().center());
        EXPECT_GE(countLike(image, colour), size.width() * size.height() / 50) << size.width();
    }
    EXPECT_TRUE(dock_->viewport->captureFrame({1'000'000, 2}).isNull());
    expectFrames(*dock_);
    delete other_;
    expectFrames(*dock_);
    EXPECT_FALSE(dock_->viewport->hasFailed());
}

} // namespace
} // namespace tarvik::app
