#include "PreferencesDialog.hpp"

#include "Pump.hpp"
#include "TemporaryFolder.hpp"

#include <tarvik/app/Paths.hpp>

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QSettings>
#include <QTest>

namespace tarvik::editor {
namespace {

using app::Preferences;

const GpuList kTwoGpus = std::vector<rhi::Gpu>{{0, "Fast", "discrete"}, {1, "Slow", "software"}};

class PreferencesDialogTest : public ::testing::Test {
protected:
    PreferencesDialogTest() { store(folder_.path()); }
    ~PreferencesDialogTest() override { delete dialog_; }

    static void store(const std::filesystem::path& folder) {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, app::toQString(folder));
    }
    void open(const GpuList& gpus) {
        dialog_ = new PreferencesDialog(gpus);
        dialog_->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog_));
    }
    void press(std::initializer_list<Qt::Key> keys) {
        for (const Qt::Key key : keys)
            QTest::keyClick(dialog_->windowHandle(), key);
    }
    template <typename Widget>
    [[nodiscard]] Widget& child() const {
        return *dialog_->findChild<Widget*>();
    }
    [[nodiscard]] std::string messageOnSave() {
        QTest::mouseClick(child<QDialogButtonBox>().button(QDialogButtonBox::Save), Qt::LeftButton);
        auto* box = dialog_->findChild<QMessageBox*>();
        return box != nullptr ? box->text().toStdString() : "";
    }

    test::TemporaryFolder folder_;
    QPointer<PreferencesDialog> dialog_;
};

TEST_F(PreferencesDialogTest, EverythingIsReachedAndSavedByKeyboard) {
    open(kTwoGpus);
    press({Qt::Key_Down, Qt::Key_Down, Qt::Key_Tab});
    press({Qt::Key_Down, Qt::Key_Tab});
    press({Qt::Key_Space, Qt::Key_Tab});
    press({Qt::Key_Slash, Qt::Key_P, Qt::Key_Tab, Qt::Key_Tab});
    EXPECT_TRUE(child<QDialogButtonBox>().button(QDialogButtonBox::Save)->hasFocus());
    press({Qt::Key_Return});
    EXPECT_TRUE(test::pumpUntil([&] { return dialog_.isNull(); }));
    const Preferences saved = Preferences::load();
    EXPECT_EQ(saved.gpu, 1U);
    EXPECT_EQ(saved.validation, Preferences::kValidationOn);
    EXPECT_FALSE(saved.vsync);
    EXPECT_EQ(saved.projectsDirectory, "/p");
}

TEST_F(PreferencesDialogTest, AGpuThatIsNotListedStaysChosen) {
    Preferences stored;
    stored.gpu = 3;
    stored.save();
    for (const GpuList& gpus : {kTwoGpus, GpuList(makeError("no driver"))}) {
        open(gpus);
        EXPECT_EQ(child<QComboBox>().currentText(), "GPU 3 (not found)");
        EXPECT_EQ(messageOnSave(), "");
        EXPECT_EQ(Preferences::load().gpu, 3U);
    }
}

TEST_F(PreferencesDialogTest, WhatCannotBeSavedIsToldAndTheDialogStays) {
    const auto blocked = folder_ / "file";
    test::writeText(blocked, "");
    store(blocked);
    open(kTwoGpus);
    EXPECT_TRUE(QString::fromStdString(messageOnSave()).contains(app::toQString(blocked)));
    EXPECT_TRUE(dialog_->isVisible());
}

TEST_F(PreferencesDialogTest, ARelativeFolderIsRefusedAndABlankOneIsTheDefault) {
    open(kTwoGpus);
    child<QLineEdit>().setText("projects");
    EXPECT_NE(messageOnSave(), "");
    EXPECT_EQ(Preferences::load().projectsDirectory, "");
    delete dialog_->findChild<QMessageBox*>();
    child<QLineEdit>().setText("  ");
    EXPECT_EQ(messageOnSave(), "");
    EXPECT_EQ(Preferences::load().projectsDirectory, "");
}

} // namespace
} // namespace tarvik::editor
