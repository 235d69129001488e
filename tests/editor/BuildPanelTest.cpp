#include "BuildPanel.hpp"

#include "Background.hpp"
#include "FakeCMake.hpp"
#include "OpenedFiles.hpp"
#include "ProjectBuild.hpp"
#include "Pump.hpp"

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTableView>
#include <QTest>
#include <QTextBlock>

#include <chrono>
#include <csignal>
#include <memory>

namespace tarvik::editor {
namespace {

using test::pumpUntil;

class BuildPanelTest : public testing::Test {
protected:
    BuildPanelTest() {
        panel_.watch(build_.get());
        panel_.resize(800, 300);
        panel_.show();
    }

    void press(const QString& label) {
        for (auto* button : panel_.findChildren<QPushButton*>()) {
            if (button->text().remove('&') == label)
                QTest::mouseClick(button, Qt::LeftButton);
        }
    }
    void buildWith(const std::string& output, int status) {
        cmake_.prints(output, status);
        const QSignalSpy finished(build_.get(), &ProjectBuild::finished);
        press("Build");
        ASSERT_TRUE(pumpUntil([&] { return finished.size() == 1; }));
    }
    [[nodiscard]] bool shows(const QString& text) const {
        const auto labels = panel_.findChildren<QLabel*>();
        return std::ranges::any_of(
            labels, [&](const QLabel* label) { return label->isVisible() && label->text().contains(text); });
    }
    [[nodiscard]] QString cell(int row, int column) const {
        return table_->model()->index(row, column).data().toString();
    }

    test::FakeCMake cmake_;
    test::OpenedFiles opened_;
    std::unique_ptr<ProjectBuild> build_ = std::make_unique<ProjectBuild>(cmake_.project());
    BuildPanel panel_;
    QTableView* table_ = panel_.findChild<QTableView*>();
    QPlainTextEdit* output_ = panel_.findChild<QPlainTextEdit*>();
};

TEST_F(BuildPanelTest, AProblemIsOpenedByKeyAndMouseAndCopiedAndGoesWithTheNextBuild) {
    const std::string error = cmake_.source() + ":2:3: error: <b>bad</b>\n";
    buildWith(error + "gone.cpp:7: warning: odd\n", 1);
    EXPECT_TRUE(shows("Build failed: 1 error, 1 warning"));
    ASSERT_EQ(table_->model()->rowCount(), 2);
    EXPECT_EQ(cell(0, 1), "A.cpp:2");
    EXPECT_EQ(cell(0, 2), "<b>bad</b>");

    const QPoint first = table_->visualRect(table_->model()->index(0, 2)).center();
    QTest::mouseClick(table_->viewport(), Qt::LeftButton, {}, first);
    QTest::mouseDClick(table_->viewport(), Qt::LeftButton, {}, first);
    QTest::keyClick(table_, Qt::Key_Return);
    const auto source = QString::fromStdString(cmake_.source());
    EXPECT_EQ(opened_.paths, QStringList({source, source}));
    QTest::keySequence(table_, QKeySequence::Copy);
    EXPECT_EQ(QApplication::clipboard()->text().toStdString() + '\n', error);
    QTest::keyClick(table_, Qt::Key_Down);
    QTest::keyClick(table_, Qt::Key_Return);
    EXPECT_TRUE(shows("gone.cpp: there is no such file"));

    buildWith("all is well\n", 0);
    EXPECT_TRUE(shows("Built in "));
    EXPECT_FALSE(shows("no such file"));
    EXPECT_EQ(table_->model()->rowCount(), 0);
    EXPECT_TRUE(pumpUntil([&] { return output_->toPlainText() == "all is well\nall is well\n"; }));
    build_.reset();
    EXPECT_TRUE(shows("No project is open"));
}

TEST_F(BuildPanelTest, AFailureThatNamesNoProblemShowsItsReasonAndTheOutput) {
    buildWith("\nthe disk burns\nand more\n", 1);
    EXPECT_TRUE(shows("Build failed: the disk burns"));
    EXPECT_TRUE(output_->isVisible());
}

TEST_F(BuildPanelTest, CancelEndsTheProcessAndWatchingGoesOn) {
    const std::filesystem::path file = cmake_.folder() / "pid";
    cmake_.does("echo $$ >'" + file.string() + "'; exec sleep 1000");
    build_->watch();
    ASSERT_TRUE(finishBackground(std::chrono::seconds(20)));
    press("Build");
    ASSERT_TRUE(pumpUntil([&] { return test::readText(file).ends_with('\n'); }));
    EXPECT_TRUE(shows("Building… 0 s"));
    build_->build(); // the one that is queued goes, too
    press("Cancel");
    EXPECT_TRUE(shows("Cancelled after "));
    EXPECT_NE(::kill(std::stoi(test::readText(file)), 0), 0) << "it still runs";
    cmake_.prints("", 0);
    test::writeText(cmake_.source(), "int changed;");
    EXPECT_TRUE(pumpUntil([&] { return shows("Built in "); }));
}

TEST_F(BuildPanelTest, AHugeOutputDoesNotHoldTheWindow) {
    std::string output = std::string(10'000'000, 'x') + '\n';
    for (int i = 0; i < 50'000; ++i)
        output += "a.cpp:" + std::to_string(i + 1) + ":1: error: bad\n" + std::string(60, '.') + '\n';
    output += "the end";
    QElapsedTimer clock;
    clock.start();
    qint64 longest = 0;
    QTimer beat;
    QObject::connect(&beat, &QTimer::timeout, &beat, [&] { longest = std::max(longest, clock.restart()); });
    beat.start(1);
    buildWith(output, 1);
    panel_.findChild<QTabWidget*>()->setCurrentWidget(output_);
    ASSERT_TRUE(pumpUntil([&] { return output_->document()->lastBlock().text() == "the end"; }));
    EXPECT_EQ(table_->model()->rowCount(), 50'000);
    EXPECT_LT(longest, 3000);
}

} // namespace
} // namespace tarvik::editor
