#include "Script.hpp"
#include "Support.hpp"

#include <tarvik/app/AppContext.hpp>
#include <tarvik/core/Log.hpp>
#include <tarvik/renderer/Errors.hpp>

#include <gtest/gtest.h>

#include <QMetaType>

#include <filesystem>
#include <fstream>
#include <new>

namespace tarvik::app {
namespace {

using scripted::script;
using scripted::throwing;
using testing::Names;

class AppContextTest : public ::testing::Test {
protected:
    AppContextTest() { script() = {}; }

    testing::LogCapture log_;
};

TEST_F(AppContextTest, StartsTheRendererOnFirstNeedAndEndsItBeforeTheLogIsLeft) {
    script().extensions = {"VK_KHR_xlib_surface", "VK_EXT_debug_utils", "VK_KHR_xcb_surface",
                           "VK_KHR_surface2",     "VK_KHR_surface",     "VK_KHR_surface"};
    script().on["context-"] = [] {
        log::info("Test", "the context ends");
    };
    Names received;
    {
        AppOptions options;
        options.validation = true;
        options.gpu = 3;
        AppContext context(options);
        EXPECT_TRUE(QMetaType::fromName("tarvik::app::UiLogEntry").isValid());
        EXPECT_TRUE(context.validationEnabled());
        EXPECT_EQ(script().calls(), "");

        const auto* instance = context.vulkanInstance();
        const auto* renderer = context.renderer();
        const auto* renderContext = context.renderContext();
        EXPECT_TRUE(instance && renderer && renderContext);
        EXPECT_EQ(script().details("context+"),
                  "VK_KHR_surface VK_KHR_xcb_surface VK_KHR_xlib_surface validation=true gpu=3");
        EXPECT_EQ(context.vulkanInstance(), instance);
        EXPECT_EQ(context.renderer(), renderer);
        EXPECT_EQ(context.renderContext(), renderContext);
        EXPECT_TRUE(context.rendererError().isEmpty());
        QObject::connect(context.logBridge.get(), &LogBridge::messageLogged, context.logBridge.get(),
                         [&](const UiLogEntry& entry) { received.push_back(entry.message.toStdString()); });
    }
    EXPECT_EQ(script().calls(), "extensions context+ renderer+ renderer- context-");
    log::info("Test", "after the end");
    EXPECT_EQ(received, Names{"the context ends"});
}

TEST_F(AppContextTest, FailedStartIsToldOnceAndLeavesNothingBehind) {
    struct Case {
        std::string failing; // the call that throws
        std::function<void()> error;
        std::string reason;
        std::string calls;
    };
    const std::vector<Case> cases = {
        {"extensions", throwing(rhi::UnsupportedHardwareError("kein Gerät")), "kein Gerät", "extensions"},
        {"extensions",
         [] {
             script().extensions = {"VK_KHR_xcb_surface", "VK_KHR_win32_surface"};
         },
         "the Vulkan loader offers no VK_KHR_surface; cannot present to windows", "extensions"},
        {"context+", throwing(rhi::VulkanError("no GPU 7", VK_ERROR_DEVICE_LOST)), "no GPU 7",
         "extensions context+"},
        {"renderer+", throwing(std::bad_alloc()), "std::bad_alloc", "extensions context+ renderer+ context-"},
        // Qt makes an instance of its own here, and cannot without a driver.
        {"renderer+", [] { qputenv("VK_DRIVER_FILES", "/no/driver.json"); },
         "QVulkanInstance could not adopt the Vulkan instance",
         "extensions context+ renderer+ renderer- context-"},
    };
    const QByteArray drivers = qgetenv("VK_DRIVER_FILES");
    for (const Case& c : cases) {
        SCOPED_TRACE(c.reason);
        script() = {};
        script().on[c.failing] = c.error;
        const testing::LogCapture log;
        AppContext context({});
        EXPECT_EQ(context.renderer(), nullptr);
        EXPECT_EQ(context.renderContext(), nullptr);
        EXPECT_EQ(context.vulkanInstance(), nullptr);
        EXPECT_EQ(context.rendererError().toStdString(), c.reason);
        EXPECT_EQ(log.lines(LogLevel::Error), Names{"Vulkan initialisation failed: " + c.reason});
        EXPECT_EQ(context.logBridge->history().back().category, "Renderer");
        EXPECT_EQ(script().calls(), c.calls);
        EXPECT_TRUE(script().count("context+") == 0 ||
                    script().details("context+") ==
                        "VK_KHR_surface VK_KHR_xcb_surface validation=false gpu=any");
        qputenv("VK_DRIVER_FILES", drivers);
    }
}

TEST_F(AppContextTest, RecentProjectsAreSavedOnRequestOnlyAndTheirFailuresLogged) {
    const auto file = ProjectRegistry::defaultStorageFile();
    std::filesystem::remove_all(file.parent_path());
    AppContext({}).registry.touch("/projects/one", "One");
    EXPECT_FALSE(std::filesystem::exists(file));
    {
        AppContext context({});
        context.registry.touch("/projects/one", "One");
        context.saveRecentProjects();
    }
    EXPECT_EQ(AppContext({}).registry.projects().size(), 1U);
    EXPECT_EQ(log_.lines(LogLevel::Warn), Names{});

    std::ofstream(file) << "{ nonsense";
    AppContext context({});
    const auto history = context.logBridge->history();
    ASSERT_FALSE(history.empty());
    EXPECT_EQ(history.back().category, "Hub");
    EXPECT_EQ(history.back().level, LogLevel::Warn);
    EXPECT_TRUE(history.back().message.contains(QString::fromStdString(file.string())));

    // A file where the folder should be.
    std::filesystem::remove_all(file.parent_path());
    std::ofstream(file.parent_path()) << "x";
    context.registry.touch("/projects/two", "Two");
    context.saveRecentProjects();
    EXPECT_TRUE(log_.lines(LogLevel::Warn, "Hub").back().starts_with("could not save recent projects: "));
    std::filesystem::remove(file.parent_path());
}

} // namespace
} // namespace tarvik::app
