#include "Game.hpp"

#include <tarvik/core/Log.hpp>

#include <utility>

namespace tarvik::editor {

Game::Game(const Scene& scene, const QString& loadDir) : world_(scene), store_(loadDir) {
    store_.sweep();
}

Game::~Game() {
    if (behaviours_)
        behaviours_->stop();
    behaviours_.reset();
    endTrial();
}

std::expected<void, Error> Game::load(const QString& library) {
    const QByteArray fingerprint = ModuleStore::fingerprint(library);
    if (!fingerprint.isEmpty() && fingerprint == loaded_)
        return {};
    const auto copy = store_.copy(library);
    if (!copy)
        return std::unexpected(copy.error());

    store_.beginTrial(fingerprint);
    onTrial_ = true;
    auto module = GameModule::load(*copy);
    const std::expected<void, Error> taken =
        module ? takeOver(*std::move(module)) : std::unexpected(module.error());
    if (!taken) {
        endTrial();
        return taken;
    }
    loaded_ = fingerprint;
    log::info("Game", "{} behaviours run", behaviours_->size());
    return {};
}

std::expected<void, Error> Game::takeOver(std::unique_ptr<GameModule> module) {
    const GameWorld::Placement before = world_.placement();
    auto next = std::make_unique<BehaviourSet>(std::move(module), world_);
    const std::size_t failures = next->start(behaviours_.get());
    if (behaviours_ && failures > 0) {
        next.reset();
        world_.restore(before);
        return makeError("{} of the new behaviours failed to start: the old ones go on", failures);
    }
    if (behaviours_) {
        const GameWorld::Placement started = world_.placement();
        behaviours_->stop();
        world_.restore(started);
    }
    behaviours_ = std::move(next);
    return {};
}

void Game::update(float dt, const InputState& input) {
    world_.setInput(input);
    if (behaviours_)
        behaviours_->update(dt);
    endTrial();
}

std::optional<CameraView> Game::view(float aspect) const {
    const Scene& scene = world_.scene();
    if (scene.cameras().empty())
        return std::nullopt;
    const auto& [entity, camera] = scene.cameras().front();
    const Transform& place = scene.transforms()[entity];
    return lookAlong(place.position, place.rotation, camera.fovY, aspect, camera.nearPlane);
}

void Game::endTrial() {
    if (std::exchange(onTrial_, false))
        store_.endTrial();
}

} // namespace tarvik::editor
