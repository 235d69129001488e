#include "GameViewClient.hpp"

#include "Game.hpp"

#include <tarvik/app/AppOptions.hpp>

namespace tarvik::editor {

GameViewClient::GameViewClient(const app::AppOptions& options)
    : camera_(options),
      ownCamera_(options.cameraEye.isEmpty() && options.cameraTarget.isEmpty()) {
    settings_.grid = options.grid.value_or(false);
    settings_.finalPicture = !settings_.grid;
}

void GameViewClient::setGame(Game* game) {
    game_ = game;
    camera_.show(activeScene());
}

void GameViewClient::update(float dt, const InputState& input, bool) {
    if (game_)
        game_->update(dt, input);
    camera_.advance(dt);
}

const Scene* GameViewClient::activeScene() {
    return game_ ? &game_->scene() : nullptr;
}

CameraView GameViewClient::cameraView(float aspect) {
    const auto own = game_ && ownCamera_ ? game_->view(aspect) : std::nullopt;
    return own ? *own : camera_.view(aspect);
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
