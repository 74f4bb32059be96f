#pragma once

#include "ui/kit/button.hpp"
#include "ui/kit/text.hpp"

#include <optional>

namespace Corvane {

/// A capsule with a lamp, the address of a speaker and its model. Where it is too narrow for the
/// model's name, the name is elided, then left out.
class SpeakerChip final : public Kit::Button {
public:
    static constexpr int chipHeight = 31;

    /// Without a `name` the chip shows `title` alone.
    SpeakerChip(const QString& title, const QString& name, QWidget* parent);

    void setSelected(bool value);

    /// Whether the lamp is lit. A chip for which this is never called has no lamp.
    void setOnline(bool value);

    /// A hollow lamp: not all settings of the speaker are known.
    void setIncomplete(bool value);

    /// The keys that do what a click does, for the tooltip.
    void setKeys(const QString& value);

    /// Of the name with the dot before it, and of the chip whose name has that width at most.
    int nameWidth() const;
    int widthFor(int nameWidth) const;

    /// Called when the chip takes the keyboard focus.
    std::function<void()> focused;

    void activate() override;
    bool isChecked() const override { return selected; }
    QSize sizeHint() const override { return {widthFor(nameWidth()), chipHeight}; }

protected:
    void paint(QPainter& painter) override;
    Outline outline() const override;
    void focusInEvent(QFocusEvent* event) override;

private:
    void describe();
    Paint::TextStyle style() const;
    double textWidth(const QString& text) const;

    bool selected = false;
    const QString title;
    const QString label;  // title and name
    QString keys;
    const double titleWidth;
    const double labelWidth;
    std::optional<bool> online;
    bool incomplete = false;
};

}  // namespace Corvane
