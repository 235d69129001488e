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

#include <memory>

namespace tarvik::editor {
namespace {

using app::LogBridge;
using test::pumpUntil;

struct PanelUnderTest {
    LogBridge bridge;
    std::unique_ptr<LogPanel> panel = std::make_unique<LogPanel>();

    PanelUnderTest() {
        panel->attach(bridge);
        panel->resize(800, 300);
        panel->show();
    }
    void log(LogLevel level, const std::string& text) { bridge.push({level, "Test", text, 0}); }
    [[nodiscard]] QTableView& table() const { return *panel->findChild<QTableView*>(); }
    [[nodiscard]] int rows() const { return table().model()->rowCount(); }
    [[nodiscard]] QString message(int row) const { return table().model()->index(row, 3).data().toString(); }
};

TEST(LogPanelTest, AFloodComesInBatchesAndLeavesTheTableBounded) {
    constexpr int kLines = 100'000;
    PanelUnderTest shown;
    const auto& model = *shown.table().model();
    int batches = 0;
    QObject::connect(&model, &QAbstractItemModel::rowsInserted, &model, [&] { ++batches; });
    QObject::connect(&model, &QAbstractItemModel::modelReset, &model, [&] { ++batches; });
    for (int i = 0; i < kLines; ++i)
        shown.log(LogLevel::Info, "line");
    shown.log(LogLevel::Info, "last");
    ASSERT_TRUE(pumpUntil([&] { return shown.rows() > 0 && shown.message(shown.rows() - 1) == "last"; }));
    EXPECT_EQ(shown.rows(), static_cast<int>(LogBridge::kHistory));
    EXPECT_LT(batches, kLines / 10) << "one by one, lines would hold the event loop for seconds";
}

TEST(LogPanelTest, FiltersByLevelAndTextAndCopiesWhatIsShown) {
    PanelUnderTest shown;
    shown.log(LogLevel::Info, "red apple");
    shown.log(LogLevel::Error, "red\nbrick");
    shown.log(LogLevel::Warn, "blue sky");
    ASSERT_TRUE(pumpUntil([&] { return shown.rows() == 3; }));

    shown.panel->findChild<QComboBox*>()->setCurrentText("Warnings and errors");
    shown.panel->findChild<QLineEdit*>()->setText("RED");
    ASSERT_EQ(shown.rows(), 1);
    EXPECT_EQ(shown.message(0), "red↵brick");

    for (auto* button : shown.panel->findChildren<QPushButton*>()) {
        if (button->text().contains("Copy"))
            button->click();
    }
    EXPECT_TRUE(QApplication::clipboard()->text().endsWith("error [Test] red\nbrick"));
}

TEST(LogPanelTest, ScrollingUpEndsFollowingAndOldLinesThatLeaveDoNotMoveTheView) {
    PanelUnderTest shown;
    for (std::size_t i = 0; i < LogBridge::kHistory; ++i)
        shown.log(LogLevel::Info, std::to_string(i));
    const QTableView& table = shown.table();
    ASSERT_TRUE(pumpUntil([&] { return shown.rows() == static_cast<int>(LogBridge::kHistory); }));
    QScrollBar& bar = *table.verticalScrollBar();
    ASSERT_TRUE(pumpUntil([&] { return bar.maximum() > 0 && bar.value() == bar.maximum(); }));

    for (int page = 0; page < 10; ++page)
        bar.triggerAction(QAbstractSlider::SliderPageStepSub);
    const QString top = table.indexAt({0, 0}).siblingAtColumn(3).data().toString();
    for (int i = 0; i < 100; ++i)
        shown.log(LogLevel::Info, "more");
    ASSERT_TRUE(pumpUntil([&] { return shown.message(shown.rows() - 1) == "more"; }));
    EXPECT_EQ(table.indexAt({0, 0}).siblingAtColumn(3).data().toString(), top);
}

// Laid out whole, such a line would take seconds at every repaint.
TEST(LogPanelTest, AVeryLongLineIsShownAbridgedAndNoCharacterCutInTwo) {
    PanelUnderTest shown;
    for (const QString& start : {QString("x"), QString("xy")})
        shown.log(LogLevel::Info, (start + QString("🎮").repeated(2'500'000)).toStdString());
    ASSERT_TRUE(pumpUntil([&] { return shown.rows() == 2; }));
    for (const int row : {0, 1}) {
        EXPECT_LT(shown.message(row).size(), 2000);
        EXPECT_TRUE(shown.message(row).isValidUtf16());
    }
}

} // namespace
} // namespace tarvik::editor
