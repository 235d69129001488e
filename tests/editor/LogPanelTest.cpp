#include "LogPanel.hpp"

#include "Pump.hpp"

#include <tarvik/app/LogBridge.hpp>

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>

namespace tarvik::editor {
namespace {

using app::LogBridge;
using test::pumpUntil;

class LogPanelTest : public testing::Test {
protected:
    LogPanelTest() {
        panel_.attach(bridge_);
        panel_.resize(800, 300);
        panel_.show();
    }
    void log(LogLevel level, const std::string& text) { bridge_.push({level, "Test", text, 0}); }
    [[nodiscard]] int rows() const { return table_.model()->rowCount(); }
    [[nodiscard]] QString message(int row) const { return table_.model()->index(row, 3).data().toString(); }

    LogBridge bridge_;
    LogPanel panel_;
    const QTableView& table_ = *panel_.findChild<QTableView*>();
};

TEST_F(LogPanelTest, AFloodComesInBatchesAndLeavesTheTableBounded) {
    constexpr int kLines = 100'000;
    const auto& model = *table_.model();
    int batches = 0;
    QObject::connect(&model, &QAbstractItemModel::rowsInserted, &model, [&] { ++batches; });
    QObject::connect(&model, &QAbstractItemModel::modelReset, &model, [&] { ++batches; });
    for (int i = 0; i < kLines; ++i)
        log(LogLevel::Info, "line");
    log(LogLevel::Info, "last");
    ASSERT_TRUE(pumpUntil([&] { return rows() > 0 && message(rows() - 1) == "last"; }));
    EXPECT_EQ(rows(), static_cast<int>(LogBridge::kHistory));
    EXPECT_LT(batches, kLines / 10) << "one by one, lines would hold the event loop for seconds";
}

TEST_F(LogPanelTest, FiltersByLevelAndTextAndCopiesWhatIsShown) {
    log(LogLevel::Info, "red apple");
    log(LogLevel::Error, "red\nbrick");
    log(LogLevel::Warn, "blue sky");
    ASSERT_TRUE(pumpUntil([&] { return rows() == 3; }));

    panel_.findChild<QComboBox*>()->setCurrentText("Warnings and errors");
    panel_.findChild<QLineEdit*>()->setText("RED");
    ASSERT_EQ(rows(), 1);
    EXPECT_EQ(message(0), "red↵brick");

    for (auto* button : panel_.findChildren<QPushButton*>()) {
        if (button->text().contains("Copy"))
            button->click();
    }
    EXPECT_TRUE(QApplication::clipboard()->text().endsWith("error [Test] red\nbrick"));
}

TEST_F(LogPanelTest, ScrollingUpEndsFollowingAndOldLinesThatLeaveDoNotMoveTheView) {
    for (std::size_t i = 0; i < LogBridge::kHistory; ++i)
        log(LogLevel::Info, std::to_string(i));
    ASSERT_TRUE(pumpUntil([&] { return rows() == static_cast<int>(LogBridge::kHistory); }));
    QScrollBar& bar = *table_.verticalScrollBar();
    ASSERT_TRUE(pumpUntil([&] { return bar.maximum() > 0 && bar.value() == bar.maximum(); }));

    for (int page = 0; page < 10; ++page)
        bar.triggerAction(QAbstractSlider::SliderPageStepSub);
    const QString top = table_.indexAt({0, 0}).siblingAtColumn(3).data().toString();
    for (int i = 0; i < 100; ++i)
        log(LogLevel::Info, "more");
    ASSERT_TRUE(pumpUntil([&] { return message(rows() - 1) == "more"; }));
    EXPECT_EQ(table_.indexAt({0, 0}).siblingAtColumn(3).data().toString(), top);
}

// Laid out whole, such a line would take seconds at every repaint.
TEST_F(LogPanelTest, AVeryLongLineIsShownAbridgedAndNoCharacterCutInTwo) {
    for (const QString& start : {QString("x"), QString("xy")})
        log(LogLevel::Info, (start + QString("🎮").repeated(2'500'000)).toStdString());
    ASSERT_TRUE(pumpUntil([&] { return rows() == 2; }));
    for (const int row : {0, 1}) {
        EXPECT_LT(message(row).size(), 2000);
        EXPECT_TRUE(message(row).isValidUtf16());
    }
}

} // namespace
} // namespace tarvik::editor
