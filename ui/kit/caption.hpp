#pragma once

#include "ui/kit/growing.hpp"

#include <QColor>
#include <QFont>
#include <QString>
#include <QWidget>

#include <optional>

namespace Kit {

/// A line of text. Where its layout gives it less room than the text needs, the text is elided.
class Caption : public QWidget, public Growing {
public:
    Caption(QString text, const QFont& font, const QColor& color, QWidget* parent);

    /// Of a new text screen readers are not told.
    void setText(const QString& text);
    const QString& shownText() const { return text; }
    void setColor(const QColor& color);
    void setTabular(bool value) { tabular = value; }
    void setShadow(bool value) { shadowed = value; }
    void setAlignment(Qt::Alignment value) { alignment = value; }

    /// Reserves the width of `text`, so that the layout does not move when a shorter one is shown.
    void reserveFor(const QString& text);

    void setGrowth(double factor) override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString text;
    QString reserved;
    const QFont usualFont;
    QFont font;
    QColor color;
    bool tabular = false;
    bool shadowed = false;
    Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignVCenter;
};

/// How much of something is done, as "45%". Empty and hidden while nothing is being done.
class Percentage final : public Caption {
public:
    Percentage(const QString& name, const QFont& font, const QColor& color, QWidget* parent);

    void setFraction(std::optional<double> done);
    double fraction() const { return done.value_or(0); }

private:
    std::optional<double> done;
};

}  // namespace Kit
