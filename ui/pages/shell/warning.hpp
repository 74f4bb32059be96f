#pragma once

#include "ui/kit/button.hpp"
#include "ui/kit/text.hpp"

namespace Corvane {

/// A line of text in a recessed capsule, with a warning sign before it. Hidden while the text is
/// empty. A text that is too long is elided; the tooltip shows it whole.
class Warning final : public Kit::Button {
public:
    enum class Kind {
        statement,    // takes no input
        dismissible,  // a click calls `action`
    };

    /// `leastText` is the width that a longer text keeps when the row gets narrow.
    Warning(Kind kind, const QColor& color, int leastText, QWidget* parent);

    void setText(const QString& text);

    QAccessible::Role accessibleRole() const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paint(QPainter& painter) override;
    Outline outline() const override;

private:
    Paint::TextStyle style() const;
    int textWidth() const;

    const Kind kind;
    const QColor color;
    const int leastText;
    QString text;
};

}  // namespace Corvane
