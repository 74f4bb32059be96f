#pragma once

#include "app/model/appmodel.hpp"
#include "ui/pages/technical/tablerow.hpp"

#include "ui/kit/caption.hpp"
#include "ui/kit/lamp.hpp"
#include "ui/kit/scrubfield.hpp"
#include "ui/kit/wellmenu.hpp"

#include <functional>
#include <string_view>
#include <vector>

namespace Corvane {

/// Changes a band of a channel's equaliser and keeps its gain and Q within their limits.
void editBand(AppModel& model, std::string_view channel, int band,
              const std::function<void(Wendril::PeqValue&)>& change);

QString bandText(const Wendril::PeqValue& band);        // "2.50k · +7.8 dB · Q 1.78"
QString spokenBandText(const Wendril::PeqValue& band);  // "2500 Hz, +7.8 dB, Q 1.78"

QString bandName(int band);  // "Banda 1" for 0

/// The column titles over the rows.
class PeqHeader final : public TableRow {
public:
    explicit PeqHeader(QWidget* parent);
};

/// One band of a channel's equaliser. Its owner says whether the band is selected, and whether the
/// pointer is on its handle.
class PeqRow final : public TableRow {
public:
    /// Bands count from 0.
    PeqRow(AppModel& model, std::string_view channel, int band, QWidget* parent);

    std::function<void()> onSelect;            // the number is clicked
    std::function<void(bool isOver)> onHover;  // the pointer enters or leaves the row

    /// From left to right.
    std::vector<Kit::Control*> cells() const { return {on, type, fc, q, gain}; }

    /// Lets the user type the frequency, and with Tab the other numbers.
    void edit() { fc->editValue(); }

    Kit::MenuButton& menu() { return *type; }

    void setSelected(bool value);
    void setMarked(bool value);
    bool isSelected() const { return selected; }
    bool isMarked() const { return marked; }

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void show(const Wendril::PeqValue& value);
    void showUse();

    bool selected = false;
    bool marked = false;
    Kit::Caption* number;
    Kit::LampSwitch* on;
    Kit::WellMenu<std::uint8_t>* type;
    Kit::ScrubField* fc;
    Kit::ScrubField* q;
    Kit::ScrubField* gain;
};

}  // namespace Corvane
