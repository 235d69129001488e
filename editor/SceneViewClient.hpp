#pragma once

#include "CameraControls.hpp"
#include "SceneDrop.hpp"

#include <tarvik/app/ViewportClient.hpp>

#include <QObject>

#include <cstddef>
#include <memory>
#include <optional>

namespace tarvik::editor {

class Game;

// The scene in the editor: the user moves the camera, selects entities and drops files on it. While a game is
// played, that is seen instead, as its player would see it, and gets the input.
class SceneViewClient final : public QObject, public app::ViewportClient {
    Q_OBJECT

public:
    explicit SceneViewClient(const app::AppOptions& options);

    // Null shows an empty scene. Nothing is selected any more, without a signal.
    void setScene(std::shared_ptr<const Scene> scene, Viewpoint viewpoint = Viewpoint::New);
    // Borrowed. Null goes back to the scene.
    void setGame(Game* game) { game_ = game; }
    [[nodiscard]] bool isPlaying() const { return game_ != nullptr; }
    void setPaused(bool on) { paused_ = on; }
    void setGrid(bool on) { settings_.grid = on; }
    void select(std::optional<std::size_t> entity) { settings_.selected = entity; }
    // Looks at the selected entity, or at the whole scene when nothing is selected.
    void frameSelection();

    void update(float dt, const InputState& input, bool windowActive) override;
    const Scene* activeScene() override;
    CameraView cameraView(float aspect) override;
    render::RenderSettings renderSettings() override;
    void clicked(glm::vec2 ndc) override;
    bool mousePressed(glm::vec2 ndc, Qt::MouseButton button, Qt::KeyboardModifiers modifiers) override;
    void mouseMoved(glm::vec2 ndc, Qt::KeyboardModifiers modifiers) override;
    void mouseReleased(glm::vec2 ndc, Qt::MouseButton button) override;
    bool canDrop(const QList<QUrl>& urls) override;
    void dropped(const QList<QUrl>& urls, glm::vec2 ndc) override;
    bool keyPressed(int key, Qt::KeyboardModifiers modifiers) override;

Q_SIGNALS:
    // The user has selected another entity, or none.
    void entityChosen(std::optional<std::size_t> entity);
    // The focus is to go on from the scene, or back.
    void tabPressed(Qt::FocusReason reason);
    void projectDropped(const QString& folder);
    void sceneDropped(const QString& file);

private:
    std::shared_ptr<const Scene> scene_;
    Game* game_ = nullptr;
    bool paused_ = false; // the game
    render::RenderSettings settings_;
    CameraControls camera_;
    DragMemory drag_;
};

} // namespace tarvik::editor
