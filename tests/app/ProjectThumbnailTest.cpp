#include "TemporaryFolder.hpp"

#include <tarvik/app/Paths.hpp>
#include <tarvik/app/ProjectThumbnail.hpp>

#include <gtest/gtest.h>

#include <QColorSpace>
#include <QImage>
#include <QPainter>

#include <sys/stat.h>

namespace tarvik::app {
namespace {

using namespace std::string_view_literals;

constexpr QSize kSize(320, 200);

class ProjectThumbnailTest : public ::testing::Test {
protected:
    ProjectThumbnailTest() { std::filesystem::create_directory(folder_ / "Saved"); }

    [[nodiscard]] std::filesystem::path file() const { return folder_ / "Saved/Thumbnail.png"; }
    void save(const QImage& picture) const { EXPECT_TRUE(picture.save(toQString(file()), "PNG")); }
    [[nodiscard]] QImage thumbnail() const {
        return projectThumbnail(toQString(folder_.path()), "Name", kSize).toImage();
    }

private:
    test::TemporaryFolder folder_;
};

QImage filled(const QSize& size, QRgb colour) {
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(colour);
    return picture;
}

// The pixels that the initials cover: they alone are bright.
QImage inkOf(const QString& name) {
    const QImage picture = placeholderThumbnail(name, kSize).toImage();
    QImage ink(picture.size(), QImage::Format_Grayscale8);
    for (int y = 0; y < ink.height(); ++y) {
        for (int x = 0; x < ink.width(); ++x)
            ink.scanLine(y)[x] = qGray(picture.pixel(x, y)) > 140 ? 1 : 0;
    }
    return ink;
}

TEST_F(ProjectThumbnailTest, APictureIsCutAtItsTopLeftNotInTheMiddle) {
    QImage picture = filled({1600, 900}, qRgb(255, 0, 0));
    QPainter(&picture).fillRect(800, 0, 800, 900, QColor(0, 255, 0));
    picture.setColorSpace(QColorSpace::ProPhotoRgb); // does not change what is shown
    save(picture);
    const QImage shown = thumbnail();
    ASSERT_EQ(shown.size(), kSize);
    EXPECT_EQ(shown.pixel(175, 100), qRgb(255, 0, 0));
    EXPECT_EQ(shown.pixel(180, 100), qRgb(0, 255, 0));
}

TEST_F(ProjectThumbnailTest, FilesThatAreNoPictureOrTooLargeGiveThePlaceholder) {
    const QImage placeholder = placeholderThumbnail("Name", kSize).toImage();
    EXPECT_EQ(thumbnail(), placeholder) << "no file";
    for (const char* content : {"", "no picture", "\x89PNG\r\n\x1a\n"}) {
        test::writeText(file(), content);
        EXPECT_EQ(thumbnail(), placeholder) << content;
    }
    // Small in black and white, and 2.4 GB on the screen.
    QImage huge(30'000, 20'000, QImage::Format_Mono);
    huge.fill(1);
    save(huge);
    EXPECT_EQ(thumbnail(), placeholder) << "huge";
    std::filesystem::remove(file());
    ASSERT_EQ(::mkfifo(file().c_str(), 0600), 0);
    EXPECT_EQ(thumbnail(), placeholder) << "a pipe, which would wait for its writer";
}

// Scaled whole, it would be 4.8 GB.
TEST_F(ProjectThumbnailTest, APictureOfOneRowOrColumnIsShownAtItsStart) {
    for (const QSize& size : {QSize(30'000, 1), QSize(1, 30'000)}) {
        save(filled(size, qRgb(0, 0, 255)));
        EXPECT_EQ(thumbnail(), filled(kSize, qRgb(0, 0, 255)));
    }
}

TEST_F(ProjectThumbnailTest, OfAnAnimationTheFirstPictureIsShown) {
    // 1 by 1 pixel, green and then red.
    constexpr std::string_view kAnimation = "GIF89a\1\0\1\0\x80\0\0\0\xff\0\xff\0\0"
                                            "!\xff\x0bNETSCAPE2.0\3\1\0\0\0"
                                            "!\xf9\4\0\x0a\0\0\0,\0\0\0\0\1\0\1\0\0\2\2D\1\0"
                                            "!\xf9\4\0\x0a\0\0\0,\0\0\0\0\1\0\1\0\0\2\2L\1\0;"sv;
    test::writeText(file(), kAnimation);
    EXPECT_EQ(thumbnail(), filled(kSize, qRgb(0, 255, 0)));
}

TEST(PlaceholderTest, InitialsAreThoseOfTheFirstTwoWords) {
    const std::pair<const char*, const char*> same[] = {
        {"my_cool-game", "M C"},
        {"My Cool  Game", "M C"},
        {"a b c", "A B"},
        {"élan", "É"},
        {"", "?"},
        {"___", "?"},
        {"game", "G"},
    };
    const auto difference = [](const char* one, const char* other) {
        const QImage first = inkOf(one);
        const QImage second = inkOf(other);
        int count = 0;
        for (int i = 0; i < kSize.width() * kSize.height(); ++i)
            count += first.constBits()[i] != second.constBits()[i] ? 1 : 0;
        return count;
    };
    for (const auto& [name, initials] : same)
        EXPECT_LT(difference(name, initials), 60) << name; // edges mix with the colour behind them
    EXPECT_GT(difference("M C", "A B"), 600);
}

TEST(PlaceholderTest, ColoursRunFromTopLeftToBottomRightByTheName) {
    for (const QString& name : {QString("Courtyard"), QString(10'000, 'n'), QString("🎮 שלום")}) {
        const QImage picture = placeholderThumbnail(name, kSize).toImage();
        const QColor first = picture.pixelColor(0, 0).toHsv();
        const QColor last = picture.pixelColor(319, 199).toHsv();
        EXPECT_NEAR(first.value(), 90, 1);
        EXPECT_NEAR(last.value(), 40, 1);
        EXPECT_NEAR((last.hsvHue() - first.hsvHue() + 360) % 360, 40, 4);
        EXPECT_EQ(placeholderThumbnail(name, kSize).toImage(), picture);
    }
    EXPECT_EQ(placeholderThumbnail("tiny", {1, 1}).size(), QSize(1, 1));
    EXPECT_TRUE(placeholderThumbnail("none", {}).isNull());
}

} // namespace
} // namespace tarvik::app
