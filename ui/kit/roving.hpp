#pragma once

#include <QObject>

#include <vector>

namespace Kit {

class Control;

/// Makes controls that belong together one stop of the Tab key: the one that is chosen or was used
/// last. The arrow keys move the focus among them, past those that are hidden or disabled.
class Roving final : public QObject {
public:
    enum class Choice {
        moves,  // the arrows choose the control that they reach
        stays,
    };

    /// The controls stand in rows of `columns`; 0 means one row.
    Roving(int columns, Choice choice, QObject* owner);

    /// Row by row. Destroyed controls leave by themselves.
    void setControls(std::vector<Control*> list);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    int columnCount() const;
    Control* neighbour(const Control& from, int key) const;
    Control* chosen() const;
    void settle(Control* wanted);

    const int columns;
    const Choice choice;
    std::vector<Control*> controls;
    Control* stop = nullptr;  // that the Tab key reaches
};

}  // namespace Kit
