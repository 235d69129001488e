#include <tarvik/app/AppContext.hpp>
#include <tarvik/app/GamepadReader.hpp>
#include <tarvik/app/VulkanViewport.hpp>
#include <tarvik/core/Log.hpp>
#include <tarvik/scene/SceneFile.hpp>

#include <QCoreApplication>

// A line logged through the engine's library must reach the application library's bridge.
int main(int argc, char* argv[]) {
    const QCoreApplication application(argc, argv);
    const tarvik::app::AppContext context({});
    tarvik::log::info("Consumer", "{}", "hello");
    for (const tarvik::app::UiLogEntry& entry : context.logBridge->history()) {
        if (entry.category == "Consumer" && entry.message == "hello")
            return 0;
    }
    tarvik::log::error("Consumer", "the line did not arrive");
    return 1;
}
