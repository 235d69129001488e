#include <tarvik/app/AppContext.hpp>
#include <tarvik/app/GamepadReader.hpp>
#include <tarvik/app/VulkanViewport.hpp>
#include <tarvik/core/Log.hpp>
#include <tarvik/scene/SceneFile.hpp>

#include <QCoreApplication>
#include <QFile>

// A line logged through the engine's library must reach the application library's bridge, and the icons come
// with that library.
int main(int argc, char* argv[]) {
    const QCoreApplication application(argc, argv);
    const tarvik::app::AppContext context({});
    if (!QFile::exists(":/icons/scene/bulb.svg")) {
        tarvik::log::error("Consumer", "the library brought no icons");
        return 1;
    }
    tarvik::log::info("Consumer", "{}", "hello");
    for (const tarvik::app::UiLogEntry& entry : context.logBridge->history()) {
        if (entry.category == "Consumer" && entry.message == "hello")
            return 0;
    }
    tarvik::log::error("Consumer", "the line did not arrive");
    return 1;
}
