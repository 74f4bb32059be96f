#include "ui/kit/symbols.hpp"

#include <QSvgRenderer>

// The linker leaves the drawings out of a program unless a function refers to them. The macro that does
// so declares a function in the global namespace, so it must be used there.
static void loadDrawings() { Q_INIT_RESOURCE(drawings); }

namespace Symbols {

namespace {

const bool loaded = [] {
    loadDrawings();
    return true;
}();

QString pathOf(const QString& name) { return QStringLiteral(":/symbols/%1.svg").arg(name); }

const QString logo = QStringLiteral(":/LogoMark.svg");

void drawFile(QPainter& painter, const QString& file, const QRectF& bounds, const QBrush& brush,
              const Paint::Shadow& shadow) {
    const QRectF local(QPointF(), bounds.size());
    const auto shape = [&](QPainter& canvas) {
        QSvgRenderer renderer(file);
        renderer.setAspectRatioMode(Qt::KeepAspectRatio);
        renderer.render(&canvas, local);
    };
    Paint::softCopy(painter, file, bounds, shadow, shape);
    const QString key = file + (brush.gradient() ? QStringLiteral(" gradient ")
                                                 : QString::number(brush.color().rgba64(), 16));
    Paint::cached(painter, key, bounds, [&](QPainter& canvas) {
        shape(canvas);
        canvas.setCompositionMode(QPainter::CompositionMode_SourceIn);
        canvas.fillRect(local.adjusted(-1, -1, 1, 1), brush);
    });
}

}  // namespace

void draw(QPainter& painter, const QString& name, const QRectF& bounds, const QBrush& brush,
          const Paint::Shadow& shadow) {
    drawFile(painter, pathOf(name), bounds, brush, shadow);
}

double logoAspect() {
    static const QSizeF size = QSvgRenderer(logo).viewBoxF().size();
    return size.width() / size.height();
}

void drawLogo(QPainter& painter, const QRectF& bounds, const QBrush& brush, const Paint::Shadow& shadow) {
    drawFile(painter, logo, bounds, brush, shadow);
}

}  // namespace Symbols
