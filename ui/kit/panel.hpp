#pragma once

#include <QBoxLayout>
#include <QWidget>

namespace Kit {

/// A raised plate with a title row and whatever its owner lays out below. Its shadows fall outside
/// of it: a Surface under it paints them.
class Panel : public QWidget {
public:
    /// Without a title there is no title row.
    Panel(const QString& title, QWidget* parent);

    /// Shown at the right of the title row, which must be there.
    void setTrailing(QWidget* view);

    QBoxLayout& content() { return *body; }

    static void drawShadows(QPainter& painter, const QRectF& plate);

protected:
    void paintEvent(QPaintEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QHBoxLayout* header = nullptr;
    QVBoxLayout* body;
};

/// What panels stand on.
class Surface : public QWidget {
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent* event) override;
};

/// A recessed field round whatever its owner lays out in it.
class Well : public QWidget {
public:
    Well(double radius, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const double radius;
};

/// A line of text.
class Caption : public QWidget {
public:
    Caption(const QString& text, const QFont& font, const QColor& color, QWidget* parent);

    void setText(const QString& text);
    void setColor(const QColor& color);
    void setTabular(bool value) { tabular = value; }
    void setShadow(bool value) { shadowed = value; }
    void setAlignment(Qt::Alignment value) { alignment = value; }

    /// As wide as this text needs, whatever it shows.
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
