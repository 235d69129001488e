#include "IconSheet.hpp"
#include "PreferredFamily.hpp"
#include "TemporaryFolder.hpp"

#include <QApplication>
#include <QFontDatabase>
#include <QLineEdit>
#include <QMainWindow>
#include <QPushButton>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>

namespace tarvik::app::theme {
namespace {

using test::IconSheet;

// Rules and pictures that Qt does not understand it only warns of.
void fail(QtMsgType, const QMessageLogContext&, const QString& warning) {
    ADD_FAILURE() << warning.toStdString();
}

class ThemeTest : public testing::Test {
protected:
    ThemeTest() {
        qInstallMessageHandler(fail);
        apply(*qApp);
    }
    ~ThemeTest() override { qInstallMessageHandler(nullptr); }
};

TEST_F(ThemeTest, ApplyingAgainBringsBackPaletteAndFont) {
    const std::tuple<QPalette::ColorRole, QRgb, QRgb> colours[] = {
        {QPalette::Window, 0x121316, 0x121316},
        {QPalette::WindowText, 0xd7dae0, 0x5b616c},
        {QPalette::Base, 0x16181c, 0x16181c},
        {QPalette::AlternateBase, 0x1a1c21, 0x1a1c21},
        {QPalette::ToolTipBase, 0x22252b, 0x22252b},
        {QPalette::ToolTipText, 0xd7dae0, 0xd7dae0},
        {QPalette::Text, 0xd7dae0, 0x5b616c},
        {QPalette::Button, 0x22252b, 0x22252b},
        {QPalette::ButtonText, 0xd7dae0, 0x5b616c},
        {QPalette::BrightText, 0xffffff, 0xffffff},
        {QPalette::Highlight, 0x2b4a80, 0x2b4a80},
        {QPalette::HighlightedText, 0xffffff, 0xffffff},
        {QPalette::PlaceholderText, 0x6b717c, 0x6b717c},
        {QPalette::Link, 0x4f8cff, 0x4f8cff}};
    QApplication::setPalette(Qt::red);
    QApplication::setFont(QFont("DejaVu Sans", 20));
    apply(*qApp);
    const QPalette palette = QApplication::palette();
    for (const auto& [role, enabled, disabled] : colours) {
        EXPECT_EQ(palette.color(QPalette::Active, role), QColor(enabled)) << role;
        EXPECT_EQ(palette.color(QPalette::Inactive, role), QColor(enabled)) << role;
        EXPECT_EQ(palette.color(QPalette::Disabled, role), QColor(disabled)) << role;
    }
    const QString preferred = preferredFamily(QFontDatabase::families());
    EXPECT_EQ(QApplication::font().family(), preferred.isEmpty() ? "DejaVu Sans" : preferred);
    EXPECT_EQ(QApplication::font().pointSizeF(), 9.5);
    EXPECT_EQ(QApplication::font().hintingPreference(), QFont::PreferNoHinting);
}

TEST_F(ThemeTest, TheFontIsTheFirstByPreferenceAndOnlyByItsExactName) {
    const std::pair<QStringList, QString> cases[] = {
        {{"inter", "INTER", "Inter Tight"}, {}},
        {{"Noto Sans", "inter", "Inter Display"}, "Inter Display"},
        {{"Cantarell", "Noto Sans", "Inter Display", "Inter"}, "Inter"},
        {{"Cantarell", "Segoe UI", "Noto Sans"}, "Noto Sans"},
        {{"Cantarell", "Segoe UI"}, "Segoe UI"},
        {{"Arial", "Cantarell"}, "Cantarell"}};
    for (const auto& [families, chosen] : cases)
        EXPECT_EQ(preferredFamily(families), chosen) << families.join(", ").toStdString();
}

TEST_F(ThemeTest, NoRuleIsMissingChangedOrOutOfOrder) {
    const QString expected = QString::fromStdString(test::readText(TARVIK_THEME_TESTS "/rules.qss"));
    const QStringList rules = qApp->styleSheet().simplified().split("} ");
    EXPECT_EQ(rules.join("}\n").toStdString(), expected.trimmed().toStdString());
}

TEST_F(ThemeTest, WidgetsShowTheVariantThatTheyAskFor) {
    const std::tuple<QWidget*, const char*, bool, QRgb> cases[] = {
        {new QPushButton, "plain", true, 0x262a31},  {new QPushButton, "plain", false, 0x1e2126},
        {new QPushButton, "accent", true, 0x4f8cff}, {new QPushButton, "flat", true, 0x121316},
        {new QLineEdit, "plain", true, 0x16181c},    {new QWidget, "plain", true, 0x121316}};
    QMainWindow window;
    window.show();
    for (const auto& [widget, variant, enabled, background] : cases) {
        const std::unique_ptr<QWidget> owner(widget);
        widget->setParent(&window);
        widget->setGeometry(0, 0, 100, 40);
        widget->setProperty(variant, true);
        widget->setEnabled(enabled);
        widget->show();
        EXPECT_EQ(window.grab().toImage().pixelColor(50, 5), QColor(background)) << variant << enabled;
    }
}

TEST_F(ThemeTest, EveryIconPaintsWithinItsFrameInItsColour) {
    constexpr int side = 192;
    constexpr QRgb kUpperBits = 0xf0f0f0; // blending rounds
    std::istringstream names(test::readText(TARVIK_THEME_TESTS "/icons.txt"));
    for (std::string name, colour; names >> name >> colour;) {
        SCOPED_TRACE(name);
        const QImage image = icon(QString::fromStdString(name)).pixmap(side).toImage();
        ASSERT_EQ(image.size(), QSize(side, side));
        const QColor expected(colour.c_str());
        int opaque = 0;
        for (int i = 0; i < side * side; ++i) {
            const QColor pixel = image.pixelColor(i % side, i / side);
            if (pixel.alpha() == 255) {
                ++opaque;
                ASSERT_TRUE(!expected.isValid() || ((pixel.rgb() ^ expected.rgb()) & kUpperBits) == 0);
            }
            const bool atEdge = i % side % (side - 1) == 0 || i / side % (side - 1) == 0;
            ASSERT_TRUE(!atEdge || pixel.alpha() == 0) << "cut off";
        }
        EXPECT_GT(opaque, 0);
    }
    EXPECT_TRUE(icon("no such icon").pixmap(16).isNull());
}

TEST_F(ThemeTest, TheIconsLookAsTheyDidWhenTheyWereLastLookedAt) {
    const QImage expected = QImage(TARVIK_THEME_TESTS "/icons.png").convertToFormat(QImage::Format_RGB32);
    const IconSheet sheet;
    const QImage drawn = sheet.draw();
    ASSERT_EQ(drawn.size(), expected.size()) << "icons came or went: run scripts/icon-sheet.sh and look";
    for (std::size_t cell = 0; cell < sheet.layers().size(); ++cell) {
        for (const int size : IconSheet::kSizes) {
            const QRect place = IconSheet::place(cell, size);
            int worst = 0;
            for (int i = 0; i < size * size; ++i) {
                const QPoint at = place.topLeft() + QPoint(i % size, i / size);
                worst = std::max(worst, std::abs(qGray(drawn.pixel(at)) - qGray(expected.pixel(at))));
            }
            EXPECT_LT(worst, 40) << sheet.layers()[cell].join('+').toStdString() << " at " << size;
        }
    }
}

} // namespace
} // namespace tarvik::app::theme
