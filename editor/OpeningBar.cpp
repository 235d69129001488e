#include "OpeningBar.hpp"

#include "DisplayText.hpp"

#include <QAccessible>
#include <QApplication>
#include <QDir>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include <chrono>

namespace tarvik::editor {
namespace {

using namespace std::chrono_literals;

constexpr auto kPatience = 300ms; // a shorter wait is not worth a word

} // namespace

OpeningBar::OpeningBar(QWidget* parent) : QWidget(parent), text_(plainLabel({})) {
    auto* cancel = new QPushButton(tr("C&ancel"));
    cancel->setAccessibleName(tr("Cancel opening"));
    connect(cancel, &QPushButton::clicked, this, &OpeningBar::cancel);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(16, 8, 16, 8);
    row->addWidget(text_, 1);
    row->addWidget(cancel);
    hide();

    patience_.setSingleShot(true);
    patience_.setInterval(kPatience);
    connect(&patience_, &QTimer::timeout, this, &OpeningBar::showWaiting);
}

void OpeningBar::cancel() {
    ++call_;
    answer_ = {};
    end();
}

int OpeningBar::begin(const QString& place) {
    window()->installEventFilter(this);
    answer_ = {};
    text_->setText(wrappable(tr("Waiting for %1").arg(oneLine(QDir::toNativeSeparators(place)))));
    if (isHidden())
        patience_.start();
    return ++call_;
}

void OpeningBar::answer(int call, std::function<void()> take) {
    if (call != call_)
        return;
    answer_ = std::move(take);
    deliver();
}

void OpeningBar::deliver() {
    if (!answer_ || QApplication::activeModalWidget() != nullptr)
        return;
    std::exchange(answer_, {})();
    end();
}

void OpeningBar::end() {
    patience_.stop();
    hide();
    Q_EMIT settled();
}

void OpeningBar::showWaiting() {
    show();
    QAccessibleEvent alert(text_, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
    Q_EMIT settled();
}

bool OpeningBar::eventFilter(QObject* watched, QEvent* event) {
    // Queued: the dialog that closes is yet to say with what result.
    if (event->type() == QEvent::WindowUnblocked)
        QMetaObject::invokeMethod(this, &OpeningBar::deliver, Qt::QueuedConnection);
    return QWidget::eventFilter(watched, event);
}

} // namespace tarvik::editor
