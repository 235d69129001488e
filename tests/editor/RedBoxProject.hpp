#pragma once

#include <tarvik/project/Project.hpp>
#include <tarvik/scene/SceneFile.hpp>

#include <filesystem>

namespace tarvik::test {

// A project named "Test" whose scene is one red box at the origin, with that behaviour.
inline void makeRedBoxProject(const std::filesystem::path& root, const char* behaviour = "") {
    auto project = Project::create(root, "Test").value();
    Scene scene("Main");
    scene.add({.mesh = Mesh::Cube, .colour = {220, 20, 20}, .behaviour = behaviour});
    saveScene(scene, project.contentDir() / "Main.lscene").value();
    project.setDefaultScene("Content/Main.lscene");
    project.save().value();
}

} // namespace tarvik::test
