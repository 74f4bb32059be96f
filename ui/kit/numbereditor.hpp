#pragma once

#include "ui/kit/tag.hpp"

#include <QLineEdit>

#include <functional>
#include <optional>

namespace Kit {

class ValueControl;

/// The field in which the number of a control is typed. Return, a press elsewhere, Tab and loss of focus
/// commit what is typed, Escape discards it. While the user types, a tag shows the value that a commit
/// would set.
class NumberEditor final : public QLineEdit {
public:
    explicit NumberEditor(ValueControl& control);

    /// The number in a typed text: "2,5k" and "2.5 kHz" give 2500. Nothing when the text holds no number.
    static std::optional<double> parse(const QString& text);

    /// Covers `place` of the control. With `replaces`, typing replaces the text.
    void begin(const QString& text, const QRect& place, bool replaces);
    void end(bool commit);
    void setGrowth(double factor);
    bool isActive() const { return active; }

    /// Tab or Shift+Tab has committed the text.
    std::function<void(bool forward)> onTab;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    bool isLimited(double number) const;
    void commit(double number);
    void preview();

    ValueControl& control;
    bool active = false;
    Tag tag;
};

}  // namespace Kit
