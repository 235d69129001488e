#include "GameViewClient.hpp"

#include <tarvik/app/AppOptions.hpp>

namespace tarvik::editor {

GameViewClient::GameViewClient(const app::AppOptions& options) : camera_(options) {
    settings_.grid = options.grid.value_or(false);
    settings_.finalPicture = !settings_.grid;
}

void GameViewClient::setScene(std::shared_ptr<const Scene> scene) {
    scene_ = std::move(scene);
    camera_.show(scene_.get());
}

void GameViewClient::update(float dt, const InputState&, bool) {
    camera_.advance(dt);
}

const Scene* GameViewClient::activeScene() {
    return scene_.get();
}

CameraView GameViewClient::cameraView(float aspect) {
    return camera_.view(aspect);
}

render::RenderSettings GameViewClient::renderSettings() {
    return settings_;
}

void GameViewClient::clicked(glm::vec2) {}

bool GameViewClient::mousePressed(glm::vec2, Qt::MouseButton, Qt::KeyboardModifiers) {
    return false;
}

void GameViewClient::mouseMoved(glm::vec2, Qt::KeyboardModifiers) {}

void GameViewClient::mouseReleased(glm::vec2, Qt::MouseButton) {}

bool GameViewClient::canDrop(const QList<QUrl>&) {
    return false;
}

void GameViewClient::dropped(const QList<QUrl>&, glm::vec2) {}

bool GameViewClient::keyPressed(int, Qt::KeyboardModifiers) {
    return false;
}

} // namespace tarvik::editor
