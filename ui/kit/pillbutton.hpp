#pragma once

#include "ui/kit/button.hpp"

#include <QString>
#include <QStringList>

namespace Kit {

/// A capsule button in a recessed bezel. While it is on it looks held down and glows. A click does not
/// toggle it: the owner does, with `setOn`.
class PillButton final : public Button {
public:
    enum class Size { regular, compact };

    PillButton(const QString& title, Size size, QWidget* parent);

    void setTitle(const QString& title);
    void setIcon(const QString& symbol);
    void setOn(bool value);

    /// Makes the button wide enough for each of these titles, so that a change of title does not change
    /// its width.
    void reserveFor(const QStringList& titles);

    bool isChecked() const override { return on; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paint(QPainter& painter) override;
    Outline outline() const override;

private:
    double labelWidth(const QString& text) const;
    void drawBody(QPainter& painter, const QRectF& body) const;
    void drawLabel(QPainter& painter, const QRectF& bounds) const;

    const Size size;
    QString title;
    QString icon;
    QStringList reserved;
    bool on = false;
};

}  // namespace Kit
