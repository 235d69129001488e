#pragma once

#include "Background.hpp"

#include <QTimer>
#include <QWidget>

#include <functional>
#include <memory>
#include <utility>

class QLabel;

namespace tarvik::editor {

// Reads one thing at a time in the background, and says so above the window's page when that takes long; the
// user can cancel it and do anything else meanwhile. What is wanted later takes the place of what is still
// awaited, whose answer is dropped.
class OpeningBar final : public QWidget {
    Q_OBJECT

public:
    explicit OpeningBar(QWidget* parent = nullptr);

    // Calls take(read()). Not over an open dialog: what the user is busy with there stays as it is, and the
    // answer is taken afterwards.
    template <typename Read, typename Take>
    void await(const QString& place, Read read, Take take) {
        const int call = begin(place);
        inBackground(this, std::move(read), [this, call, take = std::move(take)](auto result) {
            auto kept = std::make_shared<decltype(result)>(std::move(result));
            answer(call, [take, kept] { take(std::move(*kept)); });
        });
    }
    void cancel();

Q_SIGNALS:
    // Nothing is awaited any more, or it takes long.
    void settled();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] int begin(const QString& place);
    void answer(int call, std::function<void()> take);
    void deliver();
    void end();
    void showWaiting();

    QLabel* text_;
    QTimer patience_;
    int call_ = 0; // the latest
    std::function<void()> answer_;
};

} // namespace tarvik::editor
