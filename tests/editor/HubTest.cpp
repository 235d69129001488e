#include "Hub.hpp"
#include "Pump.hpp"
#include "TemporaryFolder.hpp"

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

// The hub on a registry of a thousand, as the main window has it.
class HubTest : public testing::Test {
protected:
    HubTest() {
        for (int i = 0; i < 1000; ++i)
            registry_.put({folder_ / std::to_string(i), "Project " + std::to_string(i), 1000 - i});
        QObject::connect(&hub_, &Hub::removalRequested, &hub_, [this](const RecentProject& project) {
            registry_.remove(project.path);
            hub_.setProjects(registry_.projects());
        });
        QObject::connect(&hub_, &Hub::restoreRequested, &hub_, [this](const RecentProject& project) {
            registry_.put(project);
            hub_.setProjects(registry_.projects());
        });
        QObject::connect(&hub_, &Hub::projectChosen, &hub_,
                         [this](const RecentProject& project) { chosen_ = project.path; });
        hub_.resize(1000, 700);
    }

    void show() {
        hub_.setProjects(registry_.projects());
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
    ProjectRegistry registry_{folder_ / "recent.json"};
    Hub hub_;
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
    RecentProject moved;
    QString where;
    QObject::connect(&hub_, &Hub::located, &hub_, [&](const RecentProject& project, const QString& chosen) {
        moved = project;
        where = chosen;
    });
    const QPoint card = grid_->visualRect(grid_->currentIndex()).center();
    QContextMenuEvent menuKey(QContextMenuEvent::Keyboard, card, grid_->mapToGlobal(card));
    QCoreApplication::sendEvent(grid_->viewport(), &menuKey);
    auto* menu = hub_.findChild<QMenu*>();
    ASSERT_TRUE(menu->isVisible());
    QTest::keyClick(menu, Qt::Key_L);
    QFileDialog* dialog = nullptr;
    ASSERT_TRUE(pumpUntil([&] { return (dialog = hub_.findChild<QFileDialog*>()) != nullptr; }));
    const QString place = QString::fromStdString(folder_.path().string());
    dialog->findChild<QLineEdit*>("fileNameEdit")->setText(place);
    static_cast<QDialog*>(dialog)->accept();
    EXPECT_EQ(moved.path, folder_ / "0");
    EXPECT_EQ(where, place);
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
