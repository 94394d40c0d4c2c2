#include "platform/WrappingText_linux.h"

#include <QAccessibleWidget>
#include <QGlyphRun>
#include <QKeyEvent>
#include <QPainter>
#include <QRawFont>
#include <QScrollBar>
#include <QTextBoundaryFinder>
#include <QTextLayout>
#include <QTextOption>

#include <algorithm>
#include <cmath>

namespace orvane::platform {

namespace {

/// A bar as slim as it is plain: nothing but the handle, in the colour of the text. Its right margin is the
/// text's overhang, so that the handle ends where the lines may end.
constexpr const char* kScrollBarLook = R"(
    QScrollBar:vertical { width: 14px; margin: 0; border: none; background: transparent; }
    QScrollBar::handle:vertical { min-height: 20px; margin-right: 8px; border-radius: 3px;
                                  background: %1; }
    QScrollBar::add-line, QScrollBar::sub-line { height: 0; }
    QScrollBar::add-page, QScrollBar::sub-page { background: none; }
)";

constexpr int kFewestLinesShown = 3;
constexpr qreal kLineSpacing = 1.15;   ///< of the font's own line height
constexpr qreal kMostLinesOfMarks = 2; ///< above, below and beside a line
constexpr qreal kSmoothing = 2;        ///< around a glyph, in pixels that its rectangle may leave out

/// No character of any script takes more UTF-16 units with all that combines with it.
constexpr qsizetype kLongestCharacter = 32;

/// A text layout is one paragraph and breaks lines at the line separator alone.
QString withLineSeparators(QString text) {
    text.replace(QStringLiteral("\r\n"), QString(QChar::LineSeparator));
    for (const QChar lineBreak : {QChar('\n'), QChar('\r'), QChar('\v'), QChar('\f'), QChar(0x85),
                                  QChar(QChar::ParagraphSeparator)}) {
        text.replace(lineBreak, QChar::LineSeparator);
    }
    return text;
}

/// Appends `character` with a break opportunity wherever it grows beyond what fits a line. What joins or
/// stacks without end would otherwise be drawn as one character, past the line's end or over itself.
void appendBreakable(QString& shown, QStringView character) {
    const auto breakAndBase = QStringLiteral("\u200B\u00A0"); // a mark needs something to stand on
    while (character.size() > kLongestCharacter) {
        const bool splitsPair = character.at(kLongestCharacter).isLowSurrogate();
        const qsizetype length = splitsPair ? kLongestCharacter - 1 : kLongestCharacter;
        shown.append(character.first(length)).append(breakAndBase);
        character = character.sliced(length);
    }
    shown.append(character);
}

QString withBreakableCharacters(const QString& text) {
    QString shown;
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text);
    qsizetype start = 0;
    for (qsizetype end = characters.toNextBoundary(); end != -1; end = characters.toNextBoundary()) {
        appendBreakable(shown, QStringView(text).sliced(start, end - start));
        start = end;
    }
    return shown;
}

/// French puts a blank before these marks, and no line may begin with one of them.
QString withMarksKeptInLine(QString text) {
    for (const QChar mark : {QChar('?'), QChar('!'), QChar(':'), QChar(';')}) {
        text.replace(QStringLiteral(" ") + mark, QString(QChar::Nbsp) + mark);
    }
    return text;
}

QTextOption wrappingOption(const QString& text) {
    const bool rightToLeft = text.isRightToLeft();
    QTextOption option(rightToLeft ? Qt::AlignRight : Qt::AlignLeft);
    option.setTextDirection(rightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    return option;
}

/// What the marks of a text need beyond the lines' own height and width.
struct RoomForMarks {
    qreal above = 0;
    qreal below = 0;
    qreal right = 0;
};

qreal lineHeightOf(const QTextLine& line) { return std::ceil(line.height() * kLineSpacing); }

/// Breaks the layout's text into lines of at most `width` and returns the height they take.
qreal breakLines(QTextLayout& layout, qreal width, const RoomForMarks& room) {
    qreal height = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(std::max(1.0, width - room.right));
        line.setPosition(QPointF(0, height + room.above));
        height += room.above + lineHeightOf(line) + room.below;
    }
    layout.endLayout();
    return height;
}

bool hasMarks(const QString& text) {
    return std::any_of(text.begin(), text.end(), [](QChar character) { return character.isMark(); });
}

/// What the glyphs cover. A glyph run's own rectangle is that of the line.
QRectF inkOf(const QTextLine& line) {
    QRectF ink;
    for (const QGlyphRun& run : line.glyphRuns()) {
        const QList<quint32> glyphs = run.glyphIndexes();
        const QList<QPointF> positions = run.positions();
        for (qsizetype index = 0; index < glyphs.size(); ++index) {
            ink |= run.rawFont().boundingRect(glyphs.at(index)).translated(positions.at(index));
        }
    }
    return ink;
}

/// Some fonts stack marks beyond the height of their lines, or draw them far beside their letter. A stack
/// without end gets no room without end.
RoomForMarks roomForMarks(const QTextLayout& layout, qreal width) {
    RoomForMarks room;
    for (int index = 0; index < layout.lineCount(); ++index) {
        const QTextLine line = layout.lineAt(index);
        const QRectF ink = inkOf(line);
        const auto grow = [most = kMostLinesOfMarks * line.height()](qreal& side, qreal needed) {
            side = std::max(side, std::min(needed + kSmoothing, most));
        };
        grow(room.above, line.y() - ink.top());
        grow(room.below, ink.bottom() - line.y() - lineHeightOf(line));
        grow(room.right, ink.right() - width - kTextOverhang);
    }
    return {std::ceil(room.above), std::ceil(room.below), room.right};
}

/// Qt's own view of a scroll area trusts the index of the child that it is asked for, and so a screen reader
/// that is a moment behind would end the program. That of any widget looks first.
QAccessibleInterface* scrollAreaInterface(const QString& className, QObject* object) {
    return className == QStringLiteral("QScrollArea") ? new QAccessibleWidget(qobject_cast<QWidget*>(object))
                                                      : nullptr;
}

int roundedUp(qreal length) { return static_cast<int>(std::ceil(length)); }

} // namespace

QString plainText(const std::string& text) { return QString::fromStdString(text); }

QString plainTitle(const std::string& title) {
    return plainText(title).replace(QStringLiteral("&"), QStringLiteral("&&"));
}

WrappingLabel::WrappingLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    QSizePolicy policy(QSizePolicy::Ignored, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setWordWrap(true);
}

void WrappingLabel::setPlainText(const QString& text) {
    shownText_ = withBreakableCharacters(withMarksKeptInLine(withLineSeparators(text)));
    setText(text);
    update();
}

int WrappingLabel::balancedWidth(int maximumWidth) const {
    const int height = heightForWidth(maximumWidth);
    int tooNarrow = 0;
    int wideEnough = maximumWidth;
    while (wideEnough - tooNarrow > 1) {
        const int middle = (tooNarrow + wideEnough) / 2;
        (heightForWidth(middle) > height ? tooNarrow : wideEnough) = middle;
    }
    return wideEnough;
}

int WrappingLabel::heightForWidth(int width) const { return roundedUp(heightTaken(width)); }

int WrappingLabel::lineHeight(int width) const {
    qreal height = kLineSpacing * fontMetrics().height();
    if (hasMarks(shownText_)) {
        layOut(width, [&height](const QTextLayout& layout) {
            if (layout.lineCount() > 1) {
                height = layout.lineAt(1).y() - layout.lineAt(0).y();
            }
        });
    }
    return roundedUp(height);
}

QSize WrappingLabel::sizeHint() const { return {width(), heightForWidth(width())}; }

QSize WrappingLabel::minimumSizeHint() const { return {0, 0}; }

void WrappingLabel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    layOut(width(), [&](const QTextLayout& layout) { layout.draw(&painter, QPointF(kTextOverhang, 0)); });
}

template <typename Use>
qreal WrappingLabel::layOut(int width, Use use) const {
    if (shownText_.isEmpty()) {
        return 0;
    }
    QTextLayout layout(shownText_, font(), this);
    layout.setTextOption(wrappingOption(shownText_));
    const qreal lineWidth = std::max(1, width - 2 * kTextOverhang);
    qreal height = breakLines(layout, lineWidth, {});
    if (hasMarks(shownText_)) {
        height = breakLines(layout, lineWidth, roomForMarks(layout, lineWidth));
    }
    use(layout);
    return height;
}

qreal WrappingLabel::heightTaken(int width) const {
    return layOut(width, [](const QTextLayout&) {});
}

ScrollingText::ScrollingText(int textWidth, QWidget* parent)
    : QScrollArea(parent), label_(new WrappingLabel(this)), textWidth_(textWidth) {
    QAccessible::installFactory(scrollAreaInterface);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Maximum);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidgetResizable(true);
    setWidget(label_);
    setTextColor(label_->palette().color(label_->foregroundRole()));
    label_->setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
    connect(verticalScrollBar(), &QScrollBar::rangeChanged, this,
            [this](int minimum, int maximum) { setReachableByKeyboard(maximum > minimum); });
}

void ScrollingText::setText(const QString& text) {
    label_->setPlainText(text);
    verticalScrollBar()->setValue(0);
    measure();
}

void ScrollingText::setTextColor(const QColor& color) {
    QPalette colors = label_->palette();
    colors.setColor(label_->foregroundRole(), color);
    label_->setPalette(colors);
    verticalScrollBar()->setStyleSheet(QString::fromLatin1(kScrollBarLook).arg(color.name()));
}

void ScrollingText::setTextFont(const QFont& font) {
    label_->setFont(font);
    measure();
}

QSize ScrollingText::sizeHint() const { return {textWidth_, preferredHeight_}; }

QSize ScrollingText::minimumSizeHint() const {
    return {textWidth_, std::min(kFewestLinesShown * lineHeight(), preferredHeight_)};
}

void ScrollingText::paintEvent(QPaintEvent* /*event*/) {
    if (label_->hasFocus()) {
        QPainter painter(viewport());
        painter.setPen(QPen(label_->palette().color(label_->foregroundRole()), 1, Qt::DotLine));
        painter.drawRect(viewport()->rect().adjusted(0, 0, -1, -1));
    }
}

void ScrollingText::resizeEvent(QResizeEvent* event) {
    showWholeLines();
    QScrollArea::resizeEvent(event);
}

/// A scroll area knows the keys for lines and pages by itself.
void ScrollingText::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Home) {
        verticalScrollBar()->setValue(verticalScrollBar()->minimum());
    } else if (event->key() == Qt::Key_End) {
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
    } else {
        QScrollArea::keyPressEvent(event);
    }
}

void ScrollingText::measure() {
    preferredHeight_ = label_->heightForWidth(textWidth_);
    updateGeometry();
    showWholeLines();
}

/// Of a text that scrolls no line is cut through at the lower edge.
void ScrollingText::showWholeLines() {
    const bool scrolls = preferredHeight_ > height();
    setViewportMargins(0, 0, 0, scrolls ? height() % lineHeight() : 0);
    verticalScrollBar()->setSingleStep(lineHeight());
}

int ScrollingText::lineHeight() const { return label_->lineHeight(viewport()->width()); }

/// The keyboard does not stay with a text that it no longer reaches.
void ScrollingText::setReachableByKeyboard(bool reachable) {
    label_->setFocusPolicy(reachable ? Qt::TabFocus : Qt::NoFocus);
    if (!reachable && label_->hasFocus() && !focusNextChild()) {
        label_->clearFocus();
    }
}

} // namespace orvane::platform
