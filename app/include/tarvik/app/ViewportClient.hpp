#pragma once

#include <tarvik/app/Export.hpp>
#include <tarvik/input/InputState.hpp>
#include <tarvik/renderer/Renderer.hpp>
#include <tarvik/scene/CameraView.hpp>
#include <tarvik/scene/Scene.hpp>

#include <QList>
#include <QUrl>
#include <Qt>

#include <glm/vec2.hpp>

namespace tarvik::app {

// The owner of a viewport. Called on the GUI thread. Positions are in normalised device coordinates: -1, -1
// is the top left corner, 1, 1 the bottom right one. An exception ends the viewport's rendering with a
// reason. Destroy the viewport from within with QObject::deleteLater() only.
class TARVIK_APPCOMMON_API ViewportClient {
public:
    ViewportClient() = default;
    ViewportClient(const ViewportClient&) = delete;
    ViewportClient& operator=(const ViewportClient&) = delete;
    virtual ~ViewportClient();

    // Once a frame, before it is drawn. dt in seconds, 0.25 at most.
    virtual void update(float dt, const InputState& input, bool windowActive) = 0;
    // What to draw; null draws an empty scene. Must stay as it is until the next update.
    virtual const Scene* activeScene() = 0;
    // aspect: width divided by height of what is drawn.
    virtual CameraView cameraView(float aspect) = 0;
    virtual render::RenderSettings renderSettings() = 0;

    // A left press and release that neither was consumed nor became a drag.
    virtual void clicked(glm::vec2 ndc) = 0;
    // True consumes the press.
    virtual bool mousePressed(glm::vec2 ndc, Qt::MouseButton button, Qt::KeyboardModifiers modifiers) = 0;
    virtual void mouseMoved(glm::vec2 ndc, Qt::KeyboardModifiers modifiers) = 0;
    virtual void mouseReleased(glm::vec2 ndc, Qt::MouseButton button) = 0;
    virtual bool canDrop(const QList<QUrl>& urls) = 0;
    virtual void dropped(const QList<QUrl>& urls, glm::vec2 ndc) = 0;
    // True when the key was handled.
    virtual bool keyPressed(int key, Qt::KeyboardModifiers modifiers) = 0;
};

} // namespace tarvik::app
