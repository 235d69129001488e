#include "NewBehaviourDialog.hpp"

#include "FakeCMake.hpp"
#include "OpenedFiles.hpp"
#include "ProjectBuild.hpp"

#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <memory>

namespace tarvik::editor {
namespace {

class NewBehaviourTest : public testing::Test {
protected:
    NewBehaviourTest() { dialog_->show(); }

    void type(const QString& name) {
        auto* field = dialog_->findChild<QLineEdit*>();
        field->clear();
        QTest::keyClicks(field, name);
    }
    [[nodiscard]] bool canCreate() const {
        return std::ranges::any_of(dialog_->findChildren<QPushButton*>(), [](const QPushButton* button) {
            return button->isDefault() && button->isEnabled();
        });
    }

    test::FakeCMake cmake_;
    test::OpenedFiles opened_;
    ProjectBuild build_{cmake_.project()};
    std::unique_ptr<NewBehaviourDialog> dialog_ = std::make_unique<NewBehaviourDialog>(build_);
};

TEST_F(NewBehaviourTest, NamesThatWouldNotCompileAreRefusedWhileTyping) {
    for (const char* name :
         {"", "1A", "My Behaviour", "a-b", "class", "co_await", "Behaviour", "Vec3", "NUL", "A"}) {
        type(name);
        EXPECT_FALSE(canCreate()) << name;
    }
    for (const char* name : {"_tmp", "A1", "Spinner"}) {
        type(name);
        EXPECT_TRUE(canCreate()) << name;
    }
}

TEST_F(NewBehaviourTest, EnterSaysWhatIsInTheWayAndThenCreatesTheFileAndOpensIt) {
    const std::filesystem::path scripts = cmake_.folder() / "project/Scripts";
    const QSignalSpy created(dialog_.get(), &NewBehaviourDialog::created);
    type("Spinner");
    std::filesystem::remove_all(scripts);
    test::writeText(scripts, "a file in the folder's place");
    QTest::keyClick(dialog_->findChild<QLineEdit*>(), Qt::Key_Return);
    EXPECT_TRUE(dialog_->isVisible());
    const auto labels = dialog_->findChildren<QLabel*>();
    EXPECT_TRUE(std::ranges::any_of(
        labels, [](const QLabel* label) { return label->text().startsWith("cannot create "); }));

    std::filesystem::remove(scripts);
    QTest::keyClick(dialog_->findChild<QLineEdit*>(), Qt::Key_Return);
    const QString path = cmake_.project() + "/Scripts/Spinner.cpp";
    EXPECT_EQ(opened_.paths, QStringList(path));
    EXPECT_EQ(created.value(0).value(0), path);
    EXPECT_TRUE(test::readText(path.toStdString()).contains("class Spinner"));
    EXPECT_FALSE(dialog_->isVisible());
}

} // namespace
} // namespace tarvik::editor
