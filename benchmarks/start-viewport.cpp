// Shows a small lit scene with the ground grid in a viewport, prints a line when its first frame is
// presented, and ends. With the argument "empty" it shows neither.
#include "IdleClient.hpp"

#include <tarvik/app/AppContext.hpp>
#include <tarvik/app/VulkanViewport.hpp>

#include <QGuiApplication>

#include <fmt/format.h>
#include <glm/trigonometric.hpp>

#include <cstdio>

namespace {

enum class Content { Empty, Scene };

class Client final : public tarvik::bench::IdleClient {
public:
    explicit Client(Content content) : content_(content) {
        tarvik::Entity cube;
        cube.mesh = tarvik::Mesh::Cube;
        scene_.add(cube);
        tarvik::Entity sun;
        sun.light = tarvik::Light{};
        scene_.add(sun);
    }
    const tarvik::Scene* activeScene() override { return content_ == Content::Scene ? &scene_ : nullptr; }
    tarvik::CameraView cameraView(float aspect) override {
        return tarvik::lookAt({4.0F, 3.0F, 5.0F}, {0.0F, 0.0F, 0.0F}, glm::radians(50.0F), aspect, 0.1F);
    }
    tarvik::render::RenderSettings renderSettings() override {
        return {.finalPicture = false, .grid = content_ == Content::Scene};
    }

private:
    Content content_;
    tarvik::Scene scene_{"small"};
};

} // namespace

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    tarvik::app::AppContext context({});
    Client client(QGuiApplication::arguments().contains(QStringLiteral("empty")) ? Content::Empty
                                                                                 : Content::Scene);
    tarvik::app::VulkanViewport viewport(context, client);
    if (viewport.hasFailed()) {
        fmt::print(stderr, "{}\n", context.rendererError().toStdString());
        return 1;
    }
    QObject::connect(&viewport, &tarvik::app::VulkanViewport::frameRendered, &application, [] {
        fmt::print("presented\n");
        std::fflush(stdout);
        QCoreApplication::quit();
    });
    QObject::connect(&viewport, &tarvik::app::VulkanViewport::renderFailed, &application,
                     [] { QCoreApplication::exit(1); });
    viewport.resize(800, 600);
    viewport.show();
    return QGuiApplication::exec();
}
