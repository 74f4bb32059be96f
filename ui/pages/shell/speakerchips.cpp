#include "ui/pages/shell/speakerchips.hpp"

#include "ui/pages/shared/bind.hpp"
#include "ui/pages/shared/text.hpp"
#include "ui/pages/shell/speakerchip.hpp"

#include "ui/kit/backdrop.hpp"
#include "ui/kit/symbols.hpp"

#include "Wendril/text.hpp"

#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Corvane {

namespace {

constexpr int gap = 8;
constexpr int shortestName = 44;   // " · " and a few letters; with less room only the address is shown
constexpr int arrowRoom = 17;      // at each end at which chips are hidden
constexpr int fadeWidth = 11;      // beside the arrow
constexpr int leastOpening = 104;  // beside which TODAS stands

}  // namespace

// Covers one end of the row, fading from the backdrop to the chips, with an arrow that scrolls.
class SpeakerChips::More final : public Kit::Button {
public:
    More(QString symbol, const QString& name, bool left, QWidget* parent)
        : Button(parent)
        , symbol(std::move(symbol))
        , left(left) {
        setAccessibleName(name);
        setToolTip(name);
        setFocusPolicy(Qt::NoFocus);
        setFixedSize(arrowRoom + fadeWidth, SpeakerChip::chipHeight);
    }

protected:
    void paint(QPainter& painter) override {
        const double ratio = Paint::ratioOf(painter);
        QPixmap cover(size() * ratio);
        cover.setDevicePixelRatio(ratio);
        cover.fill(Qt::transparent);
        {
            QPainter canvas(&cover);
            canvas.translate(-mapTo(window(), QPoint()));
            Kit::drawBackdrop(canvas, window()->rect());
            canvas.resetTransform();
            QLinearGradient fade(left ? width() : 0, 0, left ? 0 : width(), 0);
            fade.setColorAt(0, Qt::transparent);
            fade.setColorAt(static_cast<double>(fadeWidth) / width(), Qt::black);
            canvas.setCompositionMode(QPainter::CompositionMode_DestinationIn);
            canvas.fillRect(rect(), fade);
        }
        painter.drawPixmap(0, 0, cover);
        QRectF arrow(left ? 0 : width() - arrowSize, 0, arrowSize, arrowSize);
        arrow.moveTop((height() - arrowSize) / 2);
        Symbols::draw(painter, symbol, arrow, isHovered() ? Theme::text : Theme::tick);
    }

private:
    static constexpr double arrowSize = 13;

    const QString symbol;
    const bool left;
};

SpeakerChips::SpeakerChips(AppModel& model, QWidget* parent)
    : Group(QStringLiteral("Caixas"), parent)
    , model(model)
    , opening(new QWidget(this))
    , all(new SpeakerChip(QStringLiteral("TODAS"), {}, this))
    , before(new More(QStringLiteral("chevron.left"), QStringLiteral("Caixas anteriores"), true, this))
    , after(new More(QStringLiteral("chevron.right"), QStringLiteral("Caixas seguintes"), false, this))
    , offset(Kit::Animation::Kind::even, 0, *this, [this] { place(); }) {
    setFixedHeight(SpeakerChip::chipHeight);
    all->setToolTip(QStringLiteral("Ajustar todas as caixas (Esc ou Alt+0)"));
    all->setAccessibleName(QStringLiteral("Todas"));
    all->action = [&model] { model.target = std::nullopt; };
    all->focused = [this] { reveal(*all); };
    before->action = [this] { scrollTo(wanted - opening->width() + 2 * arrowRoom); };
    after->action = [this] { scrollTo(wanted + opening->width() - after->width()); };
    Corvane::bind(
        *this, [&model] { return model.speakers.value(); },
        [this](const Speakers& speakers) { showSpeakers(speakers); });
    Corvane::bind(
        *this, [&model] { return model.target.value() && model.speakers.value().size() > 1; },
        [this](bool visible) { showAllChip(visible); });
}

void SpeakerChips::showSpeakers(const Speakers& speakers) {
    for (SpeakerChip* const chip : chips) {
        chip->hide();
        chip->deleteLater();
    }
    chips.clear();
    for (const auto& speaker : speakers)
        chips.push_back(chipFor(speaker));
    std::vector<Kit::Control*> controls(chips.begin(), chips.end());
    controls.push_back(all);
    roving.setControls(std::move(controls));
    setVisible(!speakers.empty());
    arrange();
    updateGeometry();
}

SpeakerChip* SpeakerChips::chipFor(const std::shared_ptr<Speaker>& speaker) {
    const std::uint8_t address = speaker->address;
    auto* const chip = new SpeakerChip(toQString(Wendril::twoDigits(address)),
                                       toQString(speaker->info.value().model), opening);
    if (address <= 9) chip->setKeys(QStringLiteral("Alt+%1").arg(address));
    chip->action = [this, address] { model.target = address; };
    chip->focused = [this, chip] { reveal(*chip); };
    Corvane::bind(
        *chip, [this] { return model.status.value().isOnline(); },
        [chip](bool online) { chip->setOnline(online); });
    Corvane::bind(
        *chip, [speaker] { return speaker->firstMissing().has_value(); },
        [chip](bool incomplete) { chip->setIncomplete(incomplete); });
    Corvane::bind(
        *chip, [this, address] { return model.target.value() == address; },
        [this, chip](bool selected) {
            chip->setSelected(selected);
            if (selected) reveal(*chip);
        });
    chip->show();
    return chip;
}

void SpeakerChips::showAllChip(bool visible) {
    all->setVisible(visible);
    arrange();
    updateGeometry();
}

int SpeakerChips::allWidth() const { return all->isHidden() ? 0 : gap + all->sizeHint().width(); }

int SpeakerChips::rowWidth(int nameWidth) const {
    int width = allWidth() - gap;
    for (const SpeakerChip* const chip : chips)
        width += chip->widthFor(nameWidth) + gap;
    return std::max(width, 0);
}

// The width that all names are limited to, so that the row fits.
int SpeakerChips::nameWidthFor(int room) const {
    int width = 0;
    for (const SpeakerChip* const chip : chips)
        width = std::max(width, chip->nameWidth());
    if (rowWidth(width) <= room) return width;
    while (width >= shortestName && rowWidth(width) > room)
        --width;
    return width >= shortestName ? width : 0;
}

int SpeakerChips::widthWithin(int room) const { return std::min(room, rowWidth(nameWidthFor(room))); }

void SpeakerChips::arrange() {
    const int nameWidth = nameWidthFor(width());
    pinned = rowWidth(nameWidth) <= width() || width() - allWidth() >= leastOpening;
    opening->setGeometry(0, 0, pinned ? width() - allWidth() : width(), height());
    for (SpeakerChip* const chip : chips)
        chip->resize(chip->widthFor(nameWidth), height());
    all->resize(all->sizeHint());
    after->move(opening->width() - after->width(), 0);
    scrollTo(wanted);
    for (const SpeakerChip* const chip : chips)
        if (chip->isChecked()) reveal(*chip);
    place();
}

int SpeakerChips::contentWidth() const {
    int width = pinned ? -gap : allWidth() - gap;
    for (const SpeakerChip* const chip : chips)
        width += chip->width() + gap;
    return width;
}

void SpeakerChips::place() {
    const double position = offset.position();
    int x = -static_cast<int>(std::lround(position));
    for (SpeakerChip* const chip : chips) {
        chip->move(x, 0);
        x += chip->width() + gap;
    }
    all->move(pinned ? std::min(x, opening->width() + gap) : x, 0);
    before->setVisible(position > 0);
    after->setVisible(contentWidth() - position > opening->width());
}

void SpeakerChips::scrollTo(double position) {
    wanted = std::clamp<double>(position, 0, std::max(0, contentWidth() - opening->width()));
    offset.moveTo(wanted);
}

// Scrolls as little as shows the chip beside the arrows.
void SpeakerChips::reveal(const QWidget& chip) {
    if (pinned && &chip == all) return;
    const int left = chip.x() + static_cast<int>(std::lround(offset.position()));
    const int right = left + chip.width();
    if (left - arrowRoom < wanted)
        scrollTo(left - arrowRoom);
    else if (right + arrowRoom > wanted + opening->width())
        scrollTo(right + arrowRoom - opening->width());
}

void SpeakerChips::resizeEvent(QResizeEvent*) { arrange(); }

void SpeakerChips::wheelEvent(QWheelEvent* event) {
    const QPoint turn = event->angleDelta();
    scrollTo(wanted - (turn.y() != 0 ? turn.y() : turn.x()) / 2.0);
    event->accept();
}

}  // namespace Corvane
