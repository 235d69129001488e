#include "SceneViewClient.hpp"

#include "Game.hpp"

#include <tarvik/app/AppOptions.hpp>
#include <tarvik/scene/Picking.hpp>

namespace tarvik::editor {

SceneViewClient::SceneViewClient(const app::AppOptions& options) : camera_(options) {
    settings_.grid = options.grid.value_or(true);
}

void SceneViewClient::setScene(std::shared_ptr<const Scene> scene, Viewpoint viewpoint) {
    scene_ = std::move(scene);
    settings_.selected.reset();
    camera_.show(scene_.get(), viewpoint);
}

void SceneViewClient::frameSelection() {
    if (scene_)
        camera_.frame(settings_.selected ? boundsOf(*scene_, *settings_.selected) : boundsOf(*scene_));
}

void SceneViewClient::update(float dt, const InputState& input, bool windowActive) {
    if (game_ && !paused_)
        game_->update(dt, input);
    if (!game_ || game_->scene().cameras().empty())
        camera_.update(dt, input, windowActive);
}

const Scene* SceneViewClient::activeScene() {
    return game_ ? &game_->scene() : scene_.get();
}

CameraView SceneViewClient::cameraView(float aspect) {
    const auto own = game_ ? game_->view(aspect) : std::nullopt;
    return own ? *own : camera_.view(aspect);
}

render::RenderSettings SceneViewClient::renderSettings() {
    if (!game_)
        return settings_;
    render::RenderSettings played;
    played.grid = false;
    played.finalPicture = true;
    return played;
}

void SceneViewClient::clicked(glm::vec2 ndc) {
    if (!scene_ || game_ || camera_.ownsLeftButton())
        return;
    const auto hit = pick(*scene_, rayThrough(camera_.seen(), ndc));
    if (hit == settings_.selected)
        return;
    select(hit);
    Q_EMIT entityChosen(hit);
}

bool SceneViewClient::mousePressed(glm::vec2 ndc, Qt::MouseButton, Qt::KeyboardModifiers modifiers) {
    camera_.pointerAt(ndc, modifiers);
    return false;
}

void SceneViewClient::mouseMoved(glm::vec2 ndc, Qt::KeyboardModifiers modifiers) {
    camera_.pointerAt(ndc, modifiers);
}

void SceneViewClient::mouseReleased(glm::vec2, Qt::MouseButton) {}

bool SceneViewClient::canDrop(const QList<QUrl>& urls) {
    return drag_.dragged(urls).kind != DropKind::Nothing;
}

void SceneViewClient::dropped(const QList<QUrl>& urls, glm::vec2) {
    const SceneDrop drop = drag_.dropped(urls);
    if (drop.kind == DropKind::Project)
        Q_EMIT projectDropped(drop.path);
    else if (drop.kind == DropKind::Scene)
        Q_EMIT sceneDropped(drop.path);
}

bool SceneViewClient::keyPressed(int key, Qt::KeyboardModifiers modifiers) {
    if (game_)
        return false;
    // A window that is no widget keeps these keys, and the keyboard's focus with them.
    if (key == Qt::Key_Backtab || (key == Qt::Key_Tab && modifiers == Qt::NoModifier)) {
        Q_EMIT tabPressed(key == Qt::Key_Tab ? Qt::TabFocusReason : Qt::BacktabFocusReason);
        return true;
    }
    if (key != Qt::Key_F || modifiers != Qt::NoModifier)
        return false;
    frameSelection();
    return true;
}

} // namespace tarvik::editor
