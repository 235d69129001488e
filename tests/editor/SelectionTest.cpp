#include "Inspector.hpp"
#include "SceneTree.hpp"
#include "SceneViewClient.hpp"

#include <tarvik/app/AppOptions.hpp>

#include <gtest/gtest.h>

#include <QAccessible>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QTreeView>

#include <memory>
#include <optional>

namespace tarvik::editor {
namespace {

using Chosen = std::optional<std::size_t>;

// The list and the view of a scene with a ball in the middle and a box to its right, joined as in the window.
class SelectionTest : public testing::Test {
protected:
    SelectionTest() {
        auto scene = std::make_shared<Scene>("Main");
        scene->add({.name = "Ball", .mesh = Mesh::Sphere});
        scene->add({.name = "Box", .transform = {.position = {2.0F, 0.0F, 0.0F}}, .mesh = Mesh::Cube});
        client_.setScene(scene);
        tree_.setScene(scene);
        QObject::connect(&client_, &SceneViewClient::entityChosen, &tree_, &SceneTree::choose);
        QObject::connect(&tree_, &SceneTree::entityChosen, &client_, &SceneViewClient::select);
        client_.update(0.0F, {}, true);
        static_cast<void>(client_.cameraView(1.0F));
    }

    [[nodiscard]] QString listed() const {
        return view_->selectionModel()->selectedRows().value(0).data().toString();
    }
    Chosen tinted() { return client_.renderSettings().selected; }

    SceneViewClient client_{{.cameraEye = "0,0,10", .cameraTarget = "0,0,0", .still = true}};
    SceneTree tree_;
    QTreeView* view_ = tree_.findChild<QTreeView*>();
};

TEST_F(SelectionTest, TheListFollowsTheViewAndTheViewTheList) {
    client_.clicked({0.0F, 0.0F});
    EXPECT_EQ(tinted(), Chosen(0));
    EXPECT_EQ(listed(), "Ball");
    auto* filter = tree_.findChild<QLineEdit*>();
    filter->setText("box");
    EXPECT_EQ(tinted(), Chosen(0)) << "hidden by a filter, it stays selected";
    EXPECT_EQ(listed(), "");
    filter->clear();
    EXPECT_EQ(listed(), "Ball");
    view_->setCurrentIndex(view_->model()->index(1, 0));
    EXPECT_EQ(tinted(), Chosen(1));
    client_.clicked({0.0F, 0.8F});
    EXPECT_EQ(tinted(), std::nullopt) << "a click on nothing";
    EXPECT_EQ(listed(), "");
}

TEST(InspectorTest, ValuesAreSpokenAndALongNamePushesThemNotOutOfSight) {
    auto scene = std::make_shared<Scene>("Main");
    scene->add({.name = std::string(10'000, 'W'),
                .transform = {.position = {1.5F, 0.0F, -2.0F}},
                .mesh = Mesh::Cube});
    Inspector inspector;
    inspector.setScene(scene);
    inspector.inspect(0);
    QStringList spoken;
    for (QLabel* label : inspector.findChildren<QLabel*>())
        spoken += QAccessible::queryAccessibleInterface(label)->text(QAccessible::Name);
    EXPECT_TRUE(spoken.contains("Position: 1.5   0   -2 m")) << spoken.join('\n').toStdString();
    EXPECT_EQ(spoken.filter(QRegularExpression("^Colour: #[0-9a-f]{6}$")).size(), 1);
    EXPECT_LT(inspector.widget()->minimumSizeHint().width(), 280);
}

} // namespace
} // namespace tarvik::editor
