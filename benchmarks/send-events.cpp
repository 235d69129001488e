// send-events VIEWPORTS EVENTS: sends events that are no viewport's business through an application with that
// many viewports. What it costs, the program around it counts.
#include "IdleClient.hpp"

#include <tarvik/app/AppContext.hpp>
#include <tarvik/app/VulkanViewport.hpp>

#include <QApplication>

#include <memory>
#include <vector>

int main(int argc, char** argv) {
    using namespace tarvik;
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    app::AppContext context{app::AppOptions{}};
    bench::IdleClient client;
    std::vector<std::unique_ptr<app::VulkanViewport>> viewports;
    viewports.reserve(arguments.at(1).toUInt());
    for (int i = 0; i < arguments.at(1).toInt(); ++i)
        viewports.push_back(std::make_unique<app::VulkanViewport>(context, client));

    QObject receiver;
    for (int i = 0; i < arguments.at(2).toInt(); ++i) {
        QEvent event(QEvent::User);
        QCoreApplication::sendEvent(&receiver, &event);
    }
}
