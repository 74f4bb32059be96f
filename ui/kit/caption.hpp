#pragma once

#include <QColor>
#include <QFont>
#include <QString>
#include <QWidget>

namespace Kit {

/// A line of text. Where its layout gives it less room than the text needs, the text is elided.
class Caption : public QWidget {
public:
    Caption(const QString& text, const QFont& font, const QColor& color, QWidget* parent);

    void setText(const QString& text);
    void setColor(const QColor& color);
    void setTabular(bool value) { tabular = value; }
    void setShadow(bool value) { shadowed = value; }
    void setAlignment(Qt::Alignment value) { alignment = value; }

    /// Reserves the width of `text`, so that the layout does not move when a shorter one is shown.
    void reserveFor(const QString& text);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString text;
    QString reserved;
    const QFont font;
    QColor color;
    bool tabular = false;
    bool shadowed = false;
    Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignVCenter;
};

}  // namespace Kit
