#pragma once

#include "ui/kit/control.hpp"

#include <QString>

namespace Kit {

/// A capsule button in a recessed bezel. Lit, it looks held down and glows. It shows its owner's
/// state and does not toggle by itself.
class PillButton final : public Button {
public:
    enum class Size { regular, compact };

    PillButton(const QString& title, Size size, QWidget* parent);

    void setTitle(const QString& title);
    void setIcon(const QString& symbol);
    void setOn(bool value);

    /// Wide enough for the longest of its titles, so that the button keeps its width.
    void reserveFor(const QStringList& titles);

    bool isCheckable() const override { return true; }
    bool isChecked() const override { return on; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paint(QPainter& painter) override;
    Outline outline() const override;

private:
    double labelWidth(const QString& text) const;
    QRectF bezel() const;
    void drawBody(QPainter& painter, const QRectF& key) const;
    void drawLabel(QPainter& painter, const QRectF& key) const;

    const Size size;
    QString title;
    QString icon;
    QStringList reserved;
    bool on = false;
};

}  // namespace Kit
