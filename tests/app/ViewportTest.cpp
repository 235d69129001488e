#include "Script.hpp"
#include "Support.hpp"

#include <tarvik/app/AppContext.hpp>
#include <tarvik/app/VulkanViewport.hpp>
#include <tarvik/renderer/Errors.hpp>

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QHBoxLayout>
#include <QRegularExpression>
#include <QScreen>

#include <cmath>
#include <new>

namespace tarvik::app {
namespace {

using render::FrameResult;
using scripted::script;
using scripted::throwing;
using testing::Names;
using testing::pumpUntil;
using Milliseconds = std::chrono::duration<double, std::milli>;

class ViewportTest : public ::testing::Test {
protected:
    ViewportTest() { script() = {}; }

    // A viewport in a context of its own; the previous ones end.
    VulkanViewport& make(std::optional<bool> vsync = {}) {
        viewport_.reset();
        AppOptions options;
        options.vsync = vsync;
        context_ = std::make_unique<AppContext>(options);
        failures_.clear();
        viewport_ = std::make_unique<VulkanViewport>(*context_, client_);
        viewport_->resize(104, 61);
        client_.called = [](const char* operation) {
            script().note(operation);
        };
        QObject::connect(viewport_.get(), &VulkanViewport::frameRendered, viewport_.get(),
                         [this] { ++frames_; });
        QObject::connect(viewport_.get(), &VulkanViewport::renderFailed, viewport_.get(),
                         [this](const QString& message) {
                             EXPECT_TRUE(viewport_->hasFailed());
                             failures_.push_back(message.toStdString());
                         });
        return *viewport_;
    }

    void expectFrames(int count = 2) {
        const int before = frames_;
        EXPECT_TRUE(pumpUntil([&] { return frames_ >= before + count; }))
            << ::testing::PrintToString(log_.lines(LogLevel::Debug));
    }

    // Asks for frames for a while; returns what was called.
    Names callsWhileAsking(VulkanViewport& viewport, int milliseconds) {
        script().events.clear();
        const QDeadlineTimer end(milliseconds);
        EXPECT_TRUE(pumpUntil([&] {
            QEvent request(QEvent::UpdateRequest);
            QCoreApplication::sendEvent(&viewport, &request);
            return end.hasExpired();
        }));
        return script().names();
    }

    testing::DataHome home_;
    testing::LogCapture log_;
    testing::Client client_;
    std::unique_ptr<AppContext> context_;
    std::unique_ptr<VulkanViewport> viewport_;
    int frames_ = 0;
    Names failures_;
};

TEST_F(ViewportTest, ShowsFramesInTheDevicePixelsOfTheWindow) {
    VulkanViewport& viewport = make();
    script().events.clear();
    viewport.show();
    expectFrames();
    auto names = script().names();
    names.resize(8);
    EXPECT_EQ(names, (Names{"target+", "update", "activeScene", "resize", "renderSettings", "cameraView",
                            "render", "update"}));

    const auto width = std::lround(viewport.width() * viewport.devicePixelRatio());
    const auto height = std::lround(viewport.height() * viewport.devicePixelRatio());
    const auto extent = std::to_string(width) + "x" + std::to_string(height);
    EXPECT_EQ(script().last("target+").details, extent + " Vsync");
    EXPECT_EQ(script().last("resize").details, extent);
    EXPECT_EQ(script().last("render").details, "Empty");
    EXPECT_EQ(client_.aspect, static_cast<float>(width) / static_cast<float>(height));

    const Scene scene("Cubes");
    client_.scene = &scene;
    viewport.resize(1, 1);
    ASSERT_TRUE(pumpUntil([] { return script().last("resize").details == "1x1"; }));
    expectFrames();
    EXPECT_EQ(script().last("render").details, "Cubes");
    for (const auto& event : script().events)
        EXPECT_TRUE(event.name != "resize" || (event.details[0] != '0' && !event.details.ends_with("x0")));
}

TEST_F(ViewportTest, KeepsTheRefreshIntervalOnlyWhereVsyncDoesNotBlock) {
    constexpr int intervals = 20;
    for (const auto& [vsync, blocks] :
         {std::pair(true, false), std::pair(true, true), std::pair(false, false)}) {
        SCOPED_TRACE(::testing::Message() << "vsync " << vsync << ", blocks " << blocks);
        script() = {};
        script().presentBlocks = blocks;
        // Requests while a frame is pending must not start a second timer.
        script().on["update"] = script().on["render"] = [this] {
            QEvent request(QEvent::UpdateRequest);
            EXPECT_TRUE(QCoreApplication::sendEvent(viewport_.get(), &request));
        };
        VulkanViewport& viewport = make(vsync);
        viewport.show();
        expectFrames(intervals + 1);

        const double rate = viewport.screen()->refreshRate();
        const Milliseconds interval(1000.0 / (rate > 1.0 ? rate : 60.0));
        // The target is made just before the first frame starts.
        auto previous = script().last("target+").time;
        const Milliseconds whole = script().last("render").time - previous;
        auto shortest = Milliseconds::max();
        for (const auto& event : script().events) {
            if (event.name == "update") {
                shortest = std::min<Milliseconds>(shortest, event.time - previous);
                previous = event.time;
            }
        }
        if (vsync && !blocks)
            EXPECT_GE(whole, intervals * (interval - Milliseconds(1.5)));
        else
            EXPECT_LT(shortest, interval / 2);
    }
}

TEST_F(ViewportTest, RestsWhileHiddenAndBoundsTheStepAfterwards) {
    VulkanViewport& viewport = make();
    viewport.show();
    expectFrames();
    viewport.hide();
    EXPECT_TRUE(pumpUntil([&] { return !viewport.isExposed(); }));
    EXPECT_EQ(callsWhileAsking(viewport, 300), Names{});

    std::vector<double> steps;
    script().on["update"] = [&] {
        EXPECT_FLOAT_EQ(static_cast<float>(viewport.frameIntervalMs()), client_.dt * 1000.0F);
        steps.push_back(client_.dt);
    };
    viewport.show();
    expectFrames(30);
    EXPECT_EQ(steps.at(0), 0.25);
    EXPECT_LT(*std::ranges::min_element(steps), 0.25);
    EXPECT_GE(std::ranges::count(log_.lines(LogLevel::Debug, "Viewport"), "expose: visible"), 2);
}

TEST_F(ViewportTest, FirstFailureIsToldOnceAndStopsRendering) {
    const auto gone = throwing(rhi::DeviceLostError("Treiber zurückgesetzt"));
    const auto other = throwing(rhi::VulkanError("%1 bytes", VK_ERROR_OUT_OF_DEVICE_MEMORY));
    struct Case {
        std::string source;
        std::function<void()> error;
        std::string message;
    };
    std::vector<Case> cases = {
        {"target+", other, "Cannot create swapchain: %1 bytes"},
        {"target+", gone, "Cannot create swapchain: Treiber zurückgesetzt"},
        {"render", throwing(std::bad_alloc()), "Rendering failed: std::bad_alloc"},
        // The words are free; it must not reach the event loop.
        {"update", throwing(42), ""},
        {"cameraView", throwing(42), ""},
    };
    for (const char* source : {"resize", "render", "update", "activeScene", "cameraView", "renderSettings"}) {
        cases.push_back({source, other, "Rendering failed: %1 bytes"});
        cases.push_back(
            {source, gone,
             "The GPU device was lost (driver reset or hang). Rendering is stopped; save your work "
             "and restart Tarvik.\n\nTreiber zurückgesetzt"});
    }
    for (const Case& c : cases) {
        SCOPED_TRACE(c.source + ": " + c.message);
        script() = {};
        const testing::LogCapture log;
        VulkanViewport& viewport = make();
        if (c.source != "target+")
            viewport.show(), expectFrames(1);
        script().on[c.source] = c.error;
        viewport.show();
        ASSERT_TRUE(pumpUntil([&] { return !failures_.empty(); }));
        const int frames = frames_;
        EXPECT_EQ(callsWhileAsking(viewport, 20), Names{});
        EXPECT_EQ(frames_, frames);
        EXPECT_EQ(failures_, Names{c.message.empty() ? failures_.front() : c.message});
        EXPECT_EQ(log.lines(LogLevel::Warn), failures_);
        EXPECT_TRUE(viewport.captureFrame({8, 8}).isNull());
        viewport_.reset();
        EXPECT_EQ(script().names(), c.source == "target+" ? Names{} : (Names{"waitIdle", "target-"}));
        EXPECT_EQ(log.lines(LogLevel::Warn), failures_);
    }
}

TEST_F(ViewportTest, WithoutRendererItHasFailedSilently) {
    script().extensions.clear();
    VulkanViewport& viewport = make();
    EXPECT_TRUE(viewport.hasFailed());
    EXPECT_TRUE(viewport.captureFrame({8, 8}).isNull());
    viewport.show();
    EXPECT_EQ(callsWhileAsking(viewport, 50), Names{});
    EXPECT_TRUE(failures_.empty());
    EXPECT_EQ(log_.lines(LogLevel::Warn).size(), 1U); // the context's
}

TEST_F(ViewportTest, LostSurfaceGetsANewTargetEvenWhenIdlingFails) {
    VulkanViewport& viewport = make();
    viewport.show();
    expectFrames();
    script().events.clear();
    frames_ = 0;
    script().frameResult = FrameResult::SurfaceLost;
    script().on["waitIdle"] = throwing(std::runtime_error("busy"));
    script().on["target+"] = [this] {
        EXPECT_EQ(frames_, 0);
        script().frameResult = FrameResult::Presented;
    };
    expectFrames();
    auto names = script().names();
    names.erase(names.begin(), std::ranges::find(names, "render"));
    names.resize(5);
    EXPECT_EQ(names, (Names{"render", "waitIdle", "target-", "target+", "update"}));
    EXPECT_EQ(log_.lines(LogLevel::Warn),
              (Names{"surface lost - recreating", "waitIdle failed while releasing swapchain: busy"}));
    EXPECT_FALSE(viewport.hasFailed());
}

TEST_F(ViewportTest, EveryWayOfHidingReleasesTheTargetOnTheSpot) {
    make();
    auto owner = std::make_unique<QWidget>();
    auto* container = QWidget::createWindowContainer(viewport_.get(), owner.get());
    auto* viewport = viewport_.release(); // the container's from here on
    viewport->setInputContainer(container);
    (new QHBoxLayout(owner.get()))->addWidget(container);
    owner->resize(300, 200);
    owner->show();
    expectFrames();

    using Act = std::function<void()>;
    const Act showOwner = [&] {
        owner->show();
    };
    const Act showWindow = [&] {
        viewport->show();
    };
    const std::vector<std::pair<Act, Act>> hidings = {
        {[&] { container->hide(); },
         [&] {
             container->show();
         }},
        {[&] { owner->hide(); }, showOwner},
        {[&] { owner->close(); }, showOwner},
        {[&] { owner->setWindowFlag(Qt::WindowStaysOnTopHint); }, showOwner},
        {[&] { viewport->hide(); }, showWindow},
        {[&] { viewport->destroy(); }, showWindow},
        {[&] { owner.reset(); },
         [] {
         }},
    };
    for (const auto& [hide, show] : hidings) {
        SCOPED_TRACE(&hide - &hidings[0].first);
        script().events.clear();
        hide();
        EXPECT_EQ(script().names(), (Names{"waitIdle", "target-"}));
        show();
        if (owner)
            expectFrames();
    }
}

TEST_F(ViewportTest, MayBeDestroyedInAnyState) {
    const auto show = [this] {
        viewport_->show();
    };
    const auto run = [&] {
        show(), expectFrames();
    };
    const auto failing = [&] {
        script().on["render"] = throwing(rhi::DeviceLostError("gone"));
    };
    // By a receiver of its own signal, at once or later.
    const auto inReceiver = [&](auto signal, bool atOnce) {
        QObject::connect(viewport_.get(), signal, viewport_.get(), [this, atOnce] {
            if (atOnce)
                viewport_.reset();
            else if (viewport_)
                viewport_.release()->deleteLater();
        });
        show();
        EXPECT_TRUE(pumpUntil([&] { return script().count("target-") == 1; }));
    };
    const std::vector<std::function<void()>> states = {
        [] {},
        show,
        run,
        [&] { run(), viewport_->hide(); },
        [&] { run(), viewport_->destroy(); },
        [&] { failing(), show(), pumpUntil([&] { return viewport_->hasFailed(); }); },
        [&] { inReceiver(&VulkanViewport::frameRendered, false); },
        [&] { inReceiver(&VulkanViewport::frameRendered, true); },
        [&] { failing(), inReceiver(&VulkanViewport::renderFailed, false); },
        [&] { failing(), inReceiver(&VulkanViewport::renderFailed, true); },
    };
    for (const auto& reach : states) {
        SCOPED_TRACE(&reach - states.data());
        script() = {};
        make();
        reach();
        viewport_.reset();
        EXPECT_EQ(script().count("target+"), script().count("target-"));
        EXPECT_EQ(script().count("waitIdle"), script().count("target-"));
        context_.reset();
        EXPECT_EQ(script().names().back(), "context-");
    }
}

TEST_F(ViewportTest, VsyncReachesThePresentTargetAndTheNext) {
    VulkanViewport& viewport = make(true);
    viewport.setVsync(false);
    EXPECT_EQ(script().count("policy"), 0);
    viewport.show();
    expectFrames();
    EXPECT_TRUE(script().last("target+").details.ends_with(" NoVsync"));
    viewport.setVsync(true);
    EXPECT_EQ(script().last("policy").details, "Vsync");
    viewport.setVsync(false);
    EXPECT_EQ(script().last("policy").details, "NoVsync");
    EXPECT_EQ(script().count("target+"), 1);
    EXPECT_TRUE(make(false).captureFrame({}).isNull());
}

TEST_F(ViewportTest, CapturesTheFinalPictureWithoutTheWindow) {
    VulkanViewport& viewport = make();
    const QImage image = viewport.captureFrame({640, 360});
    EXPECT_EQ(script().last("capture").details, "Empty 640x360 final");
    EXPECT_EQ(client_.aspect, 1.7777778F);
    EXPECT_EQ(image.size(), QSize(640, 360));
    EXPECT_EQ(image.format(), QImage::Format_RGBA8888);
    constexpr int index = 200 * 640 + 300;
    EXPECT_EQ(image.pixel(300, 200), qRgb(index % 256, index / 256 % 256, 7));
    EXPECT_EQ(client_.dt, -1.0F); // no update

    script().captureError = "beyond the limit";
    for (const QSize size : {QSize(), QSize(0, 10), QSize(10, -1), QSize(10, 10)})
        EXPECT_TRUE(viewport.captureFrame(size).isNull());
    EXPECT_EQ(log_.lines(LogLevel::Info), Names{});

    for (const char* source : {"capture", "cameraView", "renderSettings", "activeScene"}) {
        SCOPED_TRACE(source);
        for (const auto& error : {throwing(rhi::DeviceLostError("gone")), throwing(42)}) {
            script() = {};
            script().on[source] = error;
            EXPECT_NO_THROW(EXPECT_TRUE(viewport.captureFrame({10, 10}).isNull()));
        }
    }
    const auto lines = log_.lines(LogLevel::Error, "Viewport");
    EXPECT_EQ(lines.size(), 8U);
    EXPECT_EQ(std::ranges::count(lines, "capture failed: gone"), 4);
    EXPECT_FALSE(viewport.hasFailed());
    EXPECT_TRUE(failures_.empty());
}

TEST_F(ViewportTest, StatisticsCountPresentedAndSkippedFrames) {
    script().on["render"] = [] {
        const bool third = script().count("render") % 3 == 0;
        script().frameResult = third ? FrameResult::Presented : FrameResult::Skipped;
    };
    make(false).show();
    static const QRegularExpression pattern(
        R"(^(\d+\.\d) frames/s presented, (\d+) skipped \(no swapchain image ready\) in (\d+\.\d) s$)");
    QRegularExpressionMatch match;
    ASSERT_TRUE(pumpUntil([&] {
        const auto lines = log_.lines(LogLevel::Debug, "Viewport");
        return std::ranges::any_of(lines, [&](const auto& line) {
            match = pattern.match(QString::fromStdString(line));
            return match.hasMatch();
        });
    }));
    const double presented = match.captured(1).toDouble() * match.captured(3).toDouble();
    const double skipped = match.captured(2).toDouble();
    EXPECT_NEAR(skipped, presented * 2, 5 + presented / 5);
    EXPECT_GE(match.captured(3).toDouble(), 1.0);
}

} // namespace
} // namespace tarvik::app
