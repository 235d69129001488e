#include "IconSheet.hpp"
#include "PreferredFamily.hpp"
#include "TemporaryFolder.hpp"

#include <QApplication>
#include <QFontDatabase>
#include <QMetaEnum>
#include <QPushButton>

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <string>
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
    QApplication::setPalette(Qt::red);
    QApplication::setFont(QFont("DejaVu Sans", 20));
    apply(*qApp);
    const auto roles = QMetaEnum::fromType<QPalette::ColorRole>();
    const QPalette palette = QApplication::palette();
    std::istringstream table(test::readText(TARVIK_THEME_TESTS "/palette.txt"));
    int found = 0;
    for (std::string name, enabled, disabled; table >> name >> enabled >> disabled; ++found) {
        const auto role = static_cast<QPalette::ColorRole>(roles.keyToValue(name.c_str()));
        EXPECT_EQ(palette.color(QPalette::Active, role).name().toStdString(), enabled) << name;
        EXPECT_EQ(palette.color(QPalette::Inactive, role).name().toStdString(), enabled) << name;
        EXPECT_EQ(palette.color(QPalette::Disabled, role).name().toStdString(), disabled) << name;
    }
    EXPECT_EQ(found, 14);
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

TEST_F(ThemeTest, QtUnderstandsTheRulesAndWidgetsTheVariants) {
    QPushButton button;
    button.setProperty("accent", true);
    button.resize(100, 40);
    EXPECT_EQ(button.grab().toImage().pixelColor(50, 5), QColor(0x4f8cff));
}

TEST_F(ThemeTest, EveryIconPaintsWithinItsFrameInItsColour) {
    constexpr int side = 192;
    constexpr QRgb kUpperBits = 0xf0f0f0; // blending rounds
    std::istringstream names(test::readText(TARVIK_THEME_TESTS "/icons.txt"));
    int found = 0;
    for (std::string name, colour; names >> name >> colour; ++found) {
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
    EXPECT_EQ(found, 54);
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
