#include "BuildOutputView.hpp"

#include "DisplayText.hpp"

#include <QFontDatabase>
#include <QTextCursor>
#include <QTextDocument>
#include <QTimerEvent>

#include <algorithm>

namespace tarvik::editor {

BuildOutputView::BuildOutputView(QWidget* parent) : QPlainTextEdit(parent) {
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setLineWrapMode(NoWrap);
    setFrameShape(NoFrame);
    setTabChangesFocus(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(QWidget::font().pointSizeF());
    setFont(font);
}

void BuildOutputView::setOutput(const QString& output) {
    clear();
    output_ = output;
    shown_ = 0;
    if (output.isEmpty())
        timer_.stop();
    else
        timer_.start(0, this);
}

void BuildOutputView::timerEvent(QTimerEvent* event) {
    if (event->timerId() != timer_.timerId()) {
        QPlainTextEdit::timerEvent(event);
        return;
    }
    QTextCursor end(document());
    end.movePosition(QTextCursor::End);
    end.insertText(takePiece());
    if (shown_ < output_.size())
        return;
    timer_.stop();
    output_.clear();
}

// A line that is very long is broken: laying it out takes time that grows with the square of its length.
QString BuildOutputView::takePiece() {
    constexpr qsizetype kPiece = 32 * 1024;
    constexpr qsizetype kLongestLine = 2000;
    const qsizetype end = std::min(shown_ + kPiece, output_.size());
    QString piece;
    while (shown_ < end) {
        const QStringView rest = QStringView(output_).sliced(shown_);
        const QStringView line = rest.first(std::min(rest.size(), kLongestLine));
        const qsizetype lineFeed = line.indexOf(u'\n');
        const qsizetype length = lineFeed < 0 ? wholeCharacters(rest, kLongestLine) : lineFeed + 1;
        piece += line.first(length);
        shown_ += length;
        if (lineFeed < 0 && shown_ < output_.size())
            piece += '\n';
    }
    return piece.remove('\r');
}

} // namespace tarvik::editor
