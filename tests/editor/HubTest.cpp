#include "Hub.hpp"
#include "OpeningBar.hpp"
#include "Pump.hpp"
#include "RecentProjects.hpp"
#include "Session.hpp"
#include "TemporaryFolder.hpp"

#include <tarvik/project/Project.hpp>

#include <gtest/gtest.h>

#include <QContextMenuEvent>
#include <QFileDialog>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QTest>

namespace tarvik::editor {
namespace {

using test::pumpUntil;

// The hub with a thousand recent projects, none of which is there.
class HubTest : public testing::Test {
protected:
    HubTest() {
        registry_ = ProjectRegistry(folder_ / "recent.json");
        for (int i = 0; i < 1000; ++i)
            registry_.put({folder_ / std::to_string(i), "Project " + std::to_string(i), 1000 - i});
        QObject::connect(&hub_, &Hub::projectChosen, &hub_,
                         [this](const RecentProject& project) { chosen_ = project.path; });
        hub_.resize(1000, 700);
    }

    void show() {
        recent_.showInHub();
        hub_.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&hub_));
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(hub_.windowHandle(), key, modifiers);
    }
    void search(const QString& text) {
        press(Qt::Key_F, Qt::ControlModifier);
        qobject_cast<QLineEdit*>(hub_.focusWidget())->insert(text);
    }
    [[nodiscard]] QString current() const { return grid_->currentIndex().data().toString(); }

    const test::TemporaryFolder folder_;
    Session session_{{}, QElapsedTimer()};
    ProjectRegistry& registry_ = session_.context().registry;
    Hub hub_;
    OpeningBar bar_;
    RecentProjects recent_{session_, hub_, bar_};
    QListView* grid_ = hub_.findChild<QListView*>();
    std::filesystem::path chosen_;
};

TEST_F(HubTest, AllIsDoneByKeyboardAmongAThousand) {
    show();
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Right, Qt::Key_Left, Qt::Key_Down})
        press(key);
    const QString below = current();
    EXPECT_NE(below, "Project 1");
    press(Qt::Key_Up);
    EXPECT_EQ(current(), "Project 1");

    press(Qt::Key_Delete);
    EXPECT_EQ(current(), "Project 2");
    EXPECT_EQ(registry_.projects().size(), 999U);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(current(), "Project 1");
    EXPECT_EQ(registry_.projects()[1].lastOpenedUnix, 999);

    search("no such project");
    EXPECT_FALSE(grid_->isVisible());
    press(Qt::Key_Escape);
    search("PROJECT 42");
    press(Qt::Key_Down);
    EXPECT_TRUE(grid_->hasFocus());
    press(Qt::Key_Return);
    EXPECT_EQ(chosen_, folder_ / "42");
}

TEST_F(HubTest, AMovedProjectIsGreyedAndCanBeLocatedFromItsMenu) {
    show();
    ASSERT_TRUE(pumpUntil([&] { return hub_.isMissing(folder_ / "0"); }));
    ASSERT_TRUE(Project::create(folder_ / "moved", "Moved"));
    const QPoint card = grid_->visualRect(grid_->currentIndex()).center();
    QContextMenuEvent menuKey(QContextMenuEvent::Keyboard, card, grid_->mapToGlobal(card));
    QCoreApplication::sendEvent(grid_->viewport(), &menuKey);
    auto* menu = hub_.findChild<QMenu*>();
    ASSERT_TRUE(menu->isVisible());
    QTest::keyClick(menu, Qt::Key_L);
    QFileDialog* dialog = nullptr;
    ASSERT_TRUE(pumpUntil([&] { return (dialog = hub_.findChild<QFileDialog*>()) != nullptr; }));
    dialog->findChild<QLineEdit*>("fileNameEdit")->setText(QString::fromStdString(folder_ / "moved"));
    static_cast<QDialog*>(dialog)->accept();
    EXPECT_TRUE(pumpUntil([&] { return current() == "Moved"; }));
    EXPECT_EQ(registry_.projects().size(), 1000U);
}

TEST_F(HubTest, NamesOfAnyLengthAndScriptAreShownSearchedAndSpokenInBounds) {
    const std::pair<std::string, QString> names[] = {
        {std::string(64, 'x'), "xxx"},
        {std::string(10'000, 'y'), "yyy"},
        {"ארמון", "ארמ"},
        {"🎮\n<b>", "🎮↵<b>"},
        {"", "/empty"},
    };
    registry_ = ProjectRegistry(folder_ / "names.json");
    for (const auto& [name, part] : names)
        registry_.put({name.empty() ? "/empty" : "/p" + std::to_string(name.size()), name, 1});
    show();
    for (const auto& [name, part] : names) {
        SCOPED_TRACE(part.toStdString());
        search(part);
        ASSERT_EQ(grid_->model()->rowCount(), 1);
        EXPECT_TRUE(grid_->isVisible());
        EXPECT_LT(current().size(), 1010);
        EXPECT_FALSE(grid_->currentIndex().data(Qt::ToolTipRole).toString().contains("<b>"));
        EXPECT_TRUE(grid_->currentIndex().data(Qt::AccessibleTextRole).toString().contains(current()));
        hub_.grab(); // paints, within the test's time
    }
}

} // namespace
} // namespace tarvik::editor
