#include "TemporaryFolder.hpp"

#include <tarvik/app/Paths.hpp>
#include <tarvik/app/ProjectThumbnail.hpp>

#include <gtest/gtest.h>

#include <QColorSpace>
#include <QImage>

#include <sys/stat.h>

namespace tarvik::app {
namespace {

using namespace std::string_view_literals;
constexpr QSize kSize(320, 200);

QImage filled(const QSize& size, QRgb colour, QImage::Format format = QImage::Format_RGB32) {
    QImage picture(size, format);
    picture.fill(QColor(colour));
    return picture;
}

TEST(ProjectThumbnailTest, AnyFileGivesItsTopLeftPartOrThePlaceholderAtABoundedCost) {
    const test::TemporaryFolder folder;
    std::filesystem::create_directory(folder / "Saved");
    const std::filesystem::path file = folder / "Saved/Thumbnail.png";
    const auto save = [&](const QImage& picture) {
        EXPECT_TRUE(picture.save(toQString(file), "PNG"));
    };
    const auto shown = [&] {
        return projectThumbnail(toQString(folder.path()), "Name", kSize).toImage();
    };

    QImage picture = filled({1600, 900}, 0x0000ff);
    for (int x = 0; x < 800; ++x)
        picture.setPixel(x, 450, 0xffff0000);
    picture.setColorSpace(QColorSpace::ProPhotoRgb); // does not change what is shown
    save(picture);
    EXPECT_EQ(shown().size(), kSize);
    EXPECT_NE(shown().pixel(175, 100), 0xff0000ff);
    EXPECT_EQ(shown().pixel(180, 100), 0xff0000ff);
    for (const QSize& size : {QSize(30'000, 1), QSize(1, 30'000)}) { // scaled whole: 4.8 GB
        save(filled(size, 0x0000ff));
        EXPECT_EQ(shown(), filled(kSize, 0x0000ff));
    }
    test::writeText(file, "GIF89a\1\0\1\0\x80\0\0\0\xff\0\xff\0\0!\xff\x0bNETSCAPE2.0\3\1\0\0\0" // green, red
                          "!\xf9\4\0\x0a\0\0\0,\0\0\0\0\1\0\1\0\0\2\2D\1\0"
                          "!\xf9\4\0\x0a\0\0\0,\0\0\0\0\1\0\1\0\0\2\2L\1\0;"sv);
    EXPECT_EQ(shown(), filled(kSize, 0x00ff00)) << "animated";

    const QImage placeholder = placeholderThumbnail("Name", kSize).toImage();
    test::writeText(file, "\x89PNG\r\n\x1a\n");
    EXPECT_EQ(shown(), placeholder) << "corrupt";
    save(filled({30'000, 20'000}, 0xffffff, QImage::Format_Mono)); // 2.4 GB on the screen
    EXPECT_EQ(shown(), placeholder) << "huge";
    std::filesystem::remove(file);
    EXPECT_EQ(shown(), placeholder) << "missing";
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    EXPECT_EQ(shown(), placeholder) << "a pipe, which would wait for its writer";
}

// How many pixels the initials cover, which alone are bright; nearly, as their edges mix with the colours.
int inkOf(const QString& name) {
    const QImage picture = placeholderThumbnail(name, kSize).toImage();
    int count = 0;
    for (int i = 0; i < kSize.width() * kSize.height(); ++i)
        count += qGray(picture.pixel(i % kSize.width(), i / kSize.width())) > 140 ? 1 : 0;
    return count;
}

TEST(PlaceholderTest, InitialsAndColoursComeFromTheName) {
    const std::pair<QString, const char*> same[] = {
        {"my_cool-game", "M C"},     {"a b c", "A B"}, {"élan", "É"}, {"___", "?"},
        {QString(10'000, 'n'), "N"}, {"🎮", "🎮🎮"},      {"שלום", "ש"},
    };
    for (const auto& [name, initials] : same) {
        EXPECT_NEAR(inkOf(name), inkOf(initials), 40) << name.toStdString();
        const QImage picture = placeholderThumbnail(name, kSize).toImage();
        const QColor first = picture.pixelColor(0, 0).toHsv();
        const QColor last = picture.pixelColor(319, 199).toHsv();
        EXPECT_NEAR(first.value() - last.value(), 50, 1);
        EXPECT_NEAR((last.hsvHue() - first.hsvHue() + 360) % 360, 40, 4);
    }
    EXPECT_GT(std::abs(inkOf("M C") - inkOf("A B")), 100);
}

} // namespace
} // namespace tarvik::app
