#pragma once

#include <QProxyStyle>

namespace Kit {

/// Draws the menus and tooltips of the toolkit as small raised panels, as large as the control that they
/// belong to has grown.
class HouseStyle final : public QProxyStyle {
public:
    HouseStyle();

    using QProxyStyle::polish;
    void polish(QWidget* widget) override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;

    /// Without a compositor their windows end at the panel: there would be black around it.
    bool eventFilter(QObject* watched, QEvent* event) override;

    /// Room for the shadow around the panel of a menu, in its usual size.
    static constexpr int shadowRoom = 10;

    static constexpr double fontSize = 11;
};

}  // namespace Kit
