#pragma once

#include "ui/kit/tag.hpp"
#include "ui/kit/valuecontrol.hpp"

#include <optional>

class QLineEdit;

namespace Kit {

/// A number that is dragged or typed. Drags to the right and up increase it: by one step every 4
/// points, or on a logarithmic field by one octave every 90, and by a fifth of that with Option or
/// Shift held. A double-click, Return or F2 starts editing with the value, a digit, sign or comma with
/// itself. Return, a press elsewhere and loss of focus commit what is typed; Tab commits and edits the
/// next field; Escape discards. While the user types, a tag shows the value that a commit would set.
class ScrubField final : public ValueControl {
public:
    struct Look {
        double step = 0;
        bool logarithmic = false;
        int width = 56;
    };

    ScrubField(const QString& name, Range range, Format format, const Look& look, QWidget* parent);

    /// The number in a typed text: "2,5k" and "2.5 kHz" give 2500. Nothing when the text holds no number.
    static std::optional<double> parse(const QString& text);

    bool isEditing() const { return editing; }
    void moveBySteps(double steps) override;
    QAccessible::Role accessibleRole() const override { return QAccessible::SpinBox; }

protected:
    double dragged(double start, QPointF translation, Qt::KeyboardModifiers modifiers) const override;
    double dragThreshold() const override { return 2; }
    double fineArrow() const override;
    void paint(QPainter& painter) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void beginEditing();
    void beginEditingWith(const QString& text);
    void endEditing(bool commit);
    void editNeighbour(bool forward);
    void preview();
    bool leavesEditor(QKeyEvent& event);

    const bool logarithmic;
    bool editing = false;
    QLineEdit* editor;
    Tag tag{this};
};

}  // namespace Kit
