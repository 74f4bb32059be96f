#include "ui/pages/shell/windowbuttons.hpp"

#include "ui/kit/button.hpp"
#include "ui/kit/shadows.hpp"

#include <QHBoxLayout>
#include <QPainterPath>

#include <utility>

namespace Corvane {

namespace {

enum class Sign { cross, dash, plus };

class WindowButton final : public Kit::Button {
public:
    WindowButton(Sign sign, const QString& name, std::function<void()> act, QWidget* parent)
        : Button(parent)
        , sign(sign) {
        setAccessibleName(name);
        setToolTip(name);
        setFixedSize(20, 20);
        setFocusPolicy(Qt::NoFocus);
        action = std::move(act);
    }

protected:
    void paint(QPainter& painter) override {
        QRectF cap(0, 0, 14, 14);
        cap.moveCenter(QRectF(rect()).center());
        Paint::fill(painter, cap, 7,
                    isHovered() ? Theme::white(isPressed() ? 0.10 : 0.16) : Theme::white(0.07));
        Paint::edge(painter, cap, 7, Theme::rim(cap));
        const QPointF middle = cap.center();
        const double reach = sign == Sign::cross ? 2.3 : 3;
        painter.setPen(QPen(isHovered() ? Theme::text : Theme::secondary, 1.3, Qt::SolidLine, Qt::RoundCap));
        if (sign == Sign::cross) {
            painter.drawLine(middle - QPointF(reach, reach), middle + QPointF(reach, reach));
            painter.drawLine(middle - QPointF(reach, -reach), middle + QPointF(reach, -reach));
            return;
        }
        painter.drawLine(middle - QPointF(reach, 0), middle + QPointF(reach, 0));
        if (sign == Sign::plus) painter.drawLine(middle - QPointF(0, reach), middle + QPointF(0, reach));
    }

private:
    const Sign sign;
};

}  // namespace

WindowButtons::WindowButtons(Actions actions, QWidget* parent)
    : QWidget(parent) {
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(2);
    row->addWidget(new WindowButton(Sign::cross, QStringLiteral("Fechar"), std::move(actions.close), this));
    row->addWidget(
        new WindowButton(Sign::dash, QStringLiteral("Minimizar"), std::move(actions.minimise), this));
    row->addWidget(new WindowButton(Sign::plus, QStringLiteral("Ampliar"), std::move(actions.zoom), this));
    resize(sizeHint());
}

}  // namespace Corvane
