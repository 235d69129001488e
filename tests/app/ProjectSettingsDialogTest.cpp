#include "NoPrivileges.hpp"
#include "TemporaryFolder.hpp"

#include <tarvik/app/ProjectSettingsDialog.hpp>
#include <tarvik/project/Project.hpp>

#include <gtest/gtest.h>

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

namespace tarvik::app {
namespace {

namespace fs = std::filesystem;

class ProjectSettingsDialogTest : public ::testing::Test {
protected:
    ProjectSettingsDialogTest() { project_.setDescription("old"); }

    void open() {
        dialog_.emplace(project_, nullptr);
        dialog_->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&*dialog_));
    }
    template <typename Widget>
    [[nodiscard]] Widget& child() const {
        return *dialog_->findChild<Widget*>();
    }
    void press(int key) { QTest::keyClick(dialog_->windowHandle(), static_cast<Qt::Key>(key)); }
    void click(QDialogButtonBox::StandardButton button) {
        QTest::mouseClick(child<QDialogButtonBox>().button(button), Qt::LeftButton);
    }
    // Title and text of the message over the dialog.
    [[nodiscard]] std::pair<std::string, std::string> dismissMessage() {
        auto* box = dialog_->findChild<QMessageBox*>();
        if (box == nullptr)
            return {};
        const std::pair said{box->windowTitle().toStdString(), box->text().toStdString()};
        QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
        EXPECT_FALSE(box->isVisible());
        delete box;
        return said;
    }
    [[nodiscard]] Project stored() const { return Project::open(project_.rootDir()).value(); }

    test::TemporaryFolder folder_;
    Project project_ = Project::create(folder_ / "<b>odd</b>", "Old").value();
    std::optional<ProjectSettingsDialog> dialog_;
};

TEST_F(ProjectSettingsDialogTest, AllThatIsEditedIsReachedAndSavedByKeyboard) {
    const std::string longest(64, 'n');
    test::writeText(project_.contentDir() / "Main.lscene", "");
    open();
    QTest::keyClick(dialog_->windowHandle(), Qt::Key_A, Qt::ControlModifier);
    for (const QChar c : QString::fromStdString("  " + longest + " "))
        QTest::keyClick(dialog_->windowHandle(), c.toLatin1());
    press(Qt::Key_Tab);
    press(Qt::Key_End);
    press(Qt::Key_Space);
    press(Qt::Key_Tab);
    press(Qt::Key_Up);
    press(Qt::Key_Tab);
    EXPECT_TRUE(child<QDialogButtonBox>().button(QDialogButtonBox::Save)->hasFocus());
    press(Qt::Key_Return);
    EXPECT_FALSE(dialog_->isVisible());
    EXPECT_EQ(stored().name(), longest);
    EXPECT_EQ(stored().description(), "old ");
    EXPECT_EQ(stored().defaultScene(), "Content/Main.lscene");
}

TEST_F(ProjectSettingsDialogTest, AnInvalidNameIsRefusedAndNothingIsStored) {
    open();
    child<QPlainTextEdit>().setPlainText("new");
    for (const QString& name : {QString("   "), QString(10'000, 'n'), QString("🎮"), QString("שלום")}) {
        child<QLineEdit>().setText(name);
        click(QDialogButtonBox::Save);
        EXPECT_EQ(dismissMessage(),
                  std::pair(std::string("Invalid name"),
                            std::string("Use letters, digits, spaces, '-' or '_' (max 64 characters).")));
    }
    EXPECT_TRUE(dialog_->isVisible());
    EXPECT_EQ(project_.name() + project_.description(), "Oldold");
}

TEST_F(ProjectSettingsDialogTest, AFailedSaveIsToldAndCanBeTriedAgain) {
    const fs::path file = project_.rootDir() / Project::kFileName;
    fs::permissions(folder_.path(), fs::perms::all);
    fs::permissions(project_.rootDir(), fs::perms::all);
    fs::permissions(file, fs::perms(0444));
    open();
    child<QLineEdit>().setText("New");
    {
        const test::NoPrivileges user;
        click(QDialogButtonBox::Save);
    }
    const auto [title, text] = dismissMessage();
    EXPECT_EQ(title, "Save failed");
    EXPECT_TRUE(text.contains(file.native())) << text;
    EXPECT_TRUE(dialog_->isVisible());
    EXPECT_EQ(project_.name(), "New");
    EXPECT_EQ(stored().name(), "Old");

    fs::permissions(file, fs::perms(0644));
    click(QDialogButtonBox::Save);
    EXPECT_FALSE(dialog_->isVisible());
    EXPECT_EQ(stored().name(), "New");
}

TEST_F(ProjectSettingsDialogTest, OffersTheScenesOfTheContentFolderAndTheCurrentOne) {
    fs::create_directories(project_.contentDir() / "Levels/ü");
    for (const char* name : {"Content/A.lscene", "Content/Levels/ü/B.lscene", "C.lscene", "Content/A.txt"})
        test::writeText(project_.rootDir() / name, "");
    for (const char* current : {"", "Content/Gone.lscene", "Content/A.lscene"}) {
        project_.setDefaultScene(current);
        open();
        auto& scenes = child<QComboBox>();
        EXPECT_EQ(scenes.currentText(), current);
        EXPECT_EQ(scenes.count(), std::string_view(current).ends_with("A.lscene") ? 2 : 3);
        EXPECT_GE(scenes.findText("Content/Levels/ü/B.lscene"), 0);
        EXPECT_EQ(scenes.findText("C.lscene"), -1);
    }
}

TEST_F(ProjectSettingsDialogTest, LeavingItOtherwiseChangesNothing) {
    const std::function<void()> ways[] = {[&] { press(Qt::Key_Escape); },
                                          [&] { click(QDialogButtonBox::Cancel); },
                                          [&] {
                                              dialog_->close();
                                          }};
    for (const auto& leave : ways) {
        open();
        child<QLineEdit>().setText("New");
        leave();
        EXPECT_FALSE(dialog_->isVisible());
        EXPECT_EQ(project_.name(), "Old");
    }
}

} // namespace
} // namespace tarvik::app
