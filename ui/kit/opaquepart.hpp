#pragma once

#include <QPaintEvent>
#include <QPainter>
#include <QRegion>
#include <QWidget>

#include <functional>
#include <utility>

namespace Kit {

/// An opaque part of what a widget draws, as a child of it. When something in that part changes, the toolkit
/// repaints the part alone, and not the widget and all that it stands in.
class OpaquePart final : public QWidget {
public:
    /// `draw` draws the whole widget, in its coordinates; of that, at least the region is needed.
    OpaquePart(QWidget& whole, std::function<void(QPainter&, const QRegion&)> draw)
        : QWidget(&whole)
        , draw(std::move(draw)) {
        setAttribute(Qt::WA_OpaquePaintEvent);
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }

protected:
    void paintEvent(QPaintEvent* event) override {
        QPainter painter(this);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        painter.translate(-pos());
        draw(painter, event->region().translated(pos()));
    }

private:
    const std::function<void(QPainter&, const QRegion&)> draw;
};

}  // namespace Kit
