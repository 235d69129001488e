#include "Script.hpp"
#include "Support.hpp"

#include <tarvik/app/AppContext.hpp>
#include <tarvik/core/Log.hpp>
#include <tarvik/renderer/Errors.hpp>

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QMetaType>

#include <filesystem>
#include <new>

namespace tarvik::app {
namespace {

using scripted::script;
using scripted::throwing;
using testing::LogCapture;
using testing::Names;

class AppContextTest : public ::testing::Test {
protected:
    AppContextTest() { script() = {}; }

    testing::DataHome home_;
    LogCapture log_;
};

TEST_F(AppContextTest, StartsTheRendererOnFirstNeedAndEndsItBeforeTheLogIsLeft) {
    script().extensions = {"VK_KHR_xlib_surface",    "VK_EXT_debug_utils", "VK_KHR_xcb_surface",
                           "VK_KHR_surface_no_more", "VK_KHR_surface",     "VK_KHR_wayland_surface",
                           "VK_KHR_surface"};
    script().on["context-"] = [] {
        log::info("Test", "the context ends");
    };
    std::vector<QString> received;
    {
        AppOptions options;
        options.validation = true;
        options.gpu = 3;
        AppContext context(options);
        EXPECT_TRUE(QMetaType::fromName("tarvik::app::UiLogEntry").isValid());
        EXPECT_TRUE(context.validationEnabled());
        EXPECT_TRUE(context.rendererError().isEmpty());
        EXPECT_EQ(script().names(), Names{});

        const auto* instance = context.vulkanInstance();
        EXPECT_EQ(script().names(), (Names{"extensions", "context+", "renderer+"}));
        EXPECT_EQ(script().last("context+").details,
                  "VK_KHR_surface VK_KHR_wayland_surface VK_KHR_xcb_surface VK_KHR_xlib_surface "
                  "validation=true gpu=3");
        const auto* renderer = context.renderer();
        const auto* renderContext = context.renderContext();
        EXPECT_TRUE(instance && renderer && renderContext);
        EXPECT_EQ(context.vulkanInstance(), instance);
        EXPECT_EQ(context.renderer(), renderer);
        EXPECT_EQ(context.renderContext(), renderContext);
        EXPECT_TRUE(context.rendererError().isEmpty());

        script().events.clear();
        QObject::connect(context.logBridge.get(), &LogBridge::messageLogged, context.logBridge.get(),
                         [&](const UiLogEntry& entry) { received.push_back(entry.message); });
    }
    EXPECT_EQ(script().names(), (Names{"renderer-", "context-"}));
    log::info("Test", "after the end");
    EXPECT_EQ(received, std::vector<QString>{"the context ends"});
}

TEST_F(AppContextTest, FailedStartIsToldOnceAndLeavesNothingBehind) {
    struct Case {
        std::string failing; // the call that throws
        std::function<void()> error;
        Names extensions;
        std::string reason;
        Names events;
    };
    const std::array cases = {
        Case{"extensions",
             throwing(rhi::UnsupportedHardwareError("kein Gerät")),
             {},
             "kein Gerät",
             {"extensions"}},
        Case{"",
             {},
             {"VK_KHR_xcb_surface", "VK_KHR_win32_surface"},
             "the Vulkan loader offers no VK_KHR_surface; cannot present to windows",
             {"extensions"}},
        Case{"context+",
             throwing(rhi::VulkanError("no GPU 7", VK_ERROR_DEVICE_LOST)),
             {"VK_KHR_win32_surface", "VK_KHR_surface"},
             "no GPU 7",
             {"extensions", "context+"}},
        Case{"renderer+",
             throwing(std::bad_alloc()),
             {"VK_KHR_surface"},
             "std::bad_alloc",
             {"extensions", "context+", "renderer+", "context-"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.reason);
        script() = {};
        script().extensions = c.extensions;
        script().on[c.failing] = c.error;
        const LogCapture log;
        AppContext context({});
        EXPECT_EQ(context.renderer(), nullptr);
        EXPECT_EQ(context.renderContext(), nullptr);
        EXPECT_EQ(context.vulkanInstance(), nullptr);
        EXPECT_FALSE(context.validationEnabled());
        EXPECT_EQ(context.rendererError().toStdString(), c.reason);
        EXPECT_EQ(log.lines(LogLevel::Error), Names{"Vulkan initialisation failed: " + c.reason});
        EXPECT_EQ(context.logBridge->history().back().category, "Renderer");
        EXPECT_EQ(script().names(), c.events);
        if (c.failing == "context+") {
            EXPECT_EQ(script().last("context+").details,
                      "VK_KHR_surface VK_KHR_win32_surface validation=false gpu=any");
        }
    }
}

// The platform plug-in "offscreen" has no Vulkan; without drivers the others cannot make an instance either.
TEST_F(AppContextTest, WindowSystemThatRefusesTheInstanceIsAFailedStart) {
    const QByteArray drivers = qgetenv("VK_DRIVER_FILES");
    qputenv("VK_DRIVER_FILES", "/no/driver.json");
    AppContext context({});
    EXPECT_EQ(context.renderer(), nullptr);
    qputenv("VK_DRIVER_FILES", drivers);
    EXPECT_EQ(context.rendererError(), "QVulkanInstance could not adopt the Vulkan instance");
    EXPECT_EQ(script().names(), (Names{"extensions", "context+", "renderer+", "renderer-", "context-"}));
    EXPECT_EQ(log_.lines(LogLevel::Error, "Renderer").size(), 1U);
}

TEST_F(AppContextTest, RecentProjectsAreSavedOnRequestOnlyAndTheirFailuresLogged) {
    const auto file = ProjectRegistry::defaultStorageFile();
    {
        AppContext context({});
        context.registry.touch("/projects/one", "One");
    }
    EXPECT_FALSE(std::filesystem::exists(file));
    {
        AppContext context({});
        context.registry.touch("/projects/one", "One");
        context.saveRecentProjects();
    }
    ASSERT_TRUE(std::filesystem::exists(file));
    EXPECT_EQ(AppContext({}).registry.projects().size(), 1U);
    EXPECT_EQ(log_.lines(LogLevel::Warn), Names{});

    QFile stored(file);
    ASSERT_TRUE(stored.open(QFile::WriteOnly | QFile::Truncate) && stored.write("{ nonsense") > 0);
    stored.close();
    AppContext context({});
    const auto history = context.logBridge->history();
    ASSERT_FALSE(history.empty());
    EXPECT_EQ(history.back().category, "Hub");
    EXPECT_EQ(history.back().level, LogLevel::Warn);
    EXPECT_TRUE(history.back().message.contains(QString::fromStdString(file.filename().string())));

    // A file where the folder should be.
    std::filesystem::remove_all(file.parent_path());
    ASSERT_TRUE(QFile(file.parent_path()).open(QFile::WriteOnly));
    context.registry.touch("/projects/two", "Two");
    context.saveRecentProjects();
    EXPECT_TRUE(log_.lines(LogLevel::Warn, "Hub").back().starts_with("could not save recent projects: "));
}

} // namespace
} // namespace tarvik::app
