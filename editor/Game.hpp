#pragma once

#include "BehaviourSet.hpp"
#include "GameWorld.hpp"
#include "ModuleStore.hpp"

#include <tarvik/core/Error.hpp>
#include <tarvik/scene/CameraView.hpp>

#include <QByteArray>
#include <QString>

#include <expected>
#include <memory>
#include <optional>

namespace tarvik::editor {

// A scene that is being played: a copy of it, moved by the behaviours of a module, which newer ones replace
// while it runs.
class Game final {
public:
    // loadDir: for the copies through which modules are loaded.
    Game(const Scene& scene, const QString& loadDir);
    Game(const Game&) = delete;
    Game& operator=(const Game&) = delete;
    ~Game();

    // Between two updates: starts the module's behaviours, or lets them take over from those that run. Those
    // go on when anything about the new ones fails. A module that runs already stays as it is.
    [[nodiscard]] std::expected<void, Error> load(const QString& library);

    void update(float dt, const InputState& input);

    [[nodiscard]] const Scene& scene() const { return world_.scene(); }
    // Through the scene's first camera, where it is now; none when the scene has no camera.
    [[nodiscard]] std::optional<CameraView> view(float aspect) const;

private:
    [[nodiscard]] std::expected<void, Error> takeOver(std::unique_ptr<GameModule> module);
    void endTrial();

    GameWorld world_;
    ModuleStore store_;
    std::unique_ptr<BehaviourSet> behaviours_;
    QByteArray loaded_; // the running module's fingerprint
    bool onTrial_ = false;
};

} // namespace tarvik::editor
