#pragma once

#include <QLabel>
#include <QScrollArea>

#include <string>

namespace orvane::platform {

/// Left and right of its lines a text area keeps this much for letters that reach beyond their own width.
inline constexpr int kTextOverhang = 8;

/// The text as Qt holds it; what is not UTF-8 shows as replacement characters.
QString plainText(const std::string& text);

/// The same for a button or a menu, where a bare ampersand would mark a keyboard mnemonic.
QString plainTitle(const std::string& title);

/// A label for any text whatever: plain, wrapping at words or, where a word is too long, inside it.
class WrappingLabel final : public QLabel {
public:
    explicit WrappingLabel(QWidget* parent);

    /// The only way to set the text; what assistive technology reads stays exactly `text`.
    void setPlainText(const QString& text);

    /// Widths include the overhang on both sides. The least width, up to `maximumWidth`, at which the text
    /// needs no more lines than at that one.
    int balancedWidth(int maximumWidth) const;

    /// From one line to the next.
    int lineHeight(int width) const;

    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    /// Breaks the text into lines at `width`, hands the layout to `use` and returns the height it takes.
    template <typename Use>
    qreal layOut(int width, Use use) const;
    qreal heightTaken(int width) const;

    QString shownText_; ///< the text with the line breaks and break opportunities that the layout needs
};

/// Shows a text of any length in the space it is given, scrolling when there is too little of it; only then
/// can the keyboard reach the text.
class ScrollingText final : public QScrollArea {
public:
    /// `textWidth` is the width that the preferred height is worked out for.
    ScrollingText(int textWidth, QWidget* parent);

    void setText(const QString& text);
    void setTextColor(const QColor& color);
    void setTextFont(const QFont& font);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void measure();
    void showWholeLines();
    int lineHeight() const;
    void setReachableByKeyboard(bool reachable);

    WrappingLabel* label_;
    int textWidth_;
    int preferredHeight_ = 0;
};

} // namespace orvane::platform
