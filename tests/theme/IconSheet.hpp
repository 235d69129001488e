#pragma once

#include <tarvik/app/Theme.hpp>

#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <QStringList>

#include <vector>

namespace tarvik::test {

// Every built-in icon at the sizes in use, side by side on the theme's background: to look at, and to compare
// with one that was looked at. The glyphs for scene objects come a second time, on their two badges.
class IconSheet final {
public:
    static constexpr int kSizes[] = {16, 20, 24, 32, 48};
    static constexpr int kColumns = 6;

    IconSheet() {
        const auto list = [](const QString& folder) {
            return QDir(folder).entryInfoList({"*.svg"}, QDir::Files, QDir::Name);
        };
        for (const QFileInfo& file : list(":/icons"))
            layers_.push_back({file.completeBaseName()});
        for (const QFileInfo& file : list(":/icons/scene"))
            layers_.push_back({"scene/" + file.completeBaseName()});
        for (const QStringList& single : std::vector(layers_)) {
            for (const char* badge : {"scene/badge", "scene/badge-selected"}) {
                if (single[0].startsWith("scene/") && !single[0].startsWith("scene/badge"))
                    layers_.push_back({badge, single[0]});
            }
        }
    }

    // The names of the icons that lie over each other in each cell, in reading order.
    [[nodiscard]] const std::vector<QStringList>& layers() const { return layers_; }

    [[nodiscard]] static QRect place(std::size_t cell, int size) {
        int x = kGap + static_cast<int>(cell % kColumns) * kWidth;
        for (const int smaller : kSizes)
            x += smaller < size ? smaller + kGap : 0;
        return {x, kGap + static_cast<int>(cell / kColumns) * kHeight + (48 - size) / 2, size, size};
    }

    [[nodiscard]] QImage draw() const {
        const auto rows = static_cast<int>((layers_.size() + kColumns - 1) / kColumns);
        QImage picture(kColumns * kWidth + kGap, rows * kHeight + kGap, QImage::Format_RGB32);
        picture.fill(QGuiApplication::palette().color(QPalette::Window));
        QPainter painter(&picture);
        for (std::size_t cell = 0; cell < layers_.size(); ++cell) {
            for (const QString& name : layers_[cell]) {
                for (const int size : kSizes)
                    app::theme::icon(name).paint(&painter, place(cell, size));
            }
        }
        return picture;
    }

private:
    static constexpr int kGap = 8;
    static constexpr int kWidth = 16 + 20 + 24 + 32 + 48 + 5 * kGap + kGap;
    static constexpr int kHeight = 48 + kGap;

    std::vector<QStringList> layers_;
};

} // namespace tarvik::test
