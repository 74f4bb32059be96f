#include "ui/kit/eqgraph.hpp"

#include "ui/kit/accessibility.hpp"
#include "ui/kit/eqmarks.hpp"
#include "ui/kit/pictures.hpp"
#include "ui/kit/shadows.hpp"

#include "Wendril/limits.hpp"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QRegion>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Kit {

namespace {

constexpr int levelLabels = 40;      // at the left of the plot
constexpr int frequencyLabels = 22;  // under it

// An input's band and an output's have the same limits.
constexpr Wendril::Limits bandFrequency = Wendril::limitsOf(Wendril::ModuleKind::peq, "fc", {});
constexpr Wendril::Limits bandGain = Wendril::limitsOf(Wendril::ModuleKind::peq, "gain", {});

constexpr double cornerRadius = 14;
constexpr double reach = 12;  // from a handle's centre
constexpr double dragThreshold = 10;
constexpr double spotSize = 4;
constexpr int keyedMs = 1500;  // for which a handle that a key has changed keeps its tag

constexpr double octavesPerKey = 1.0 / 24;
constexpr double decibelsPerKey = 0.5;

double clampedGain(double db) { return std::clamp(db, bandGain.lowest, bandGain.highest); }

double distance(QPointF a, QPointF b) { return std::hypot(a.x() - b.x(), a.y() - b.y()); }

// The least move is 1 Hz: the owner rounds frequencies to whole hertz, and a smaller move would be lost.
double movedByOctaves(double fc, double octaves) {
    const double moved = fc * std::exp2(octaves);
    return std::clamp(octaves > 0 ? std::max(moved, fc + 1) : std::min(moved, fc - 1), EQPlot::lowestHz,
                      EQPlot::highestHz);
}

}  // namespace

EQGraph::EQGraph(int height, QWidget* parent)
    : Control(parent) {
    setFixedHeight(bleed.top() + height + bleed.bottom());
    setMouseTracking(true);
    setFocusPolicy(Qt::NoFocus);
}

void EQGraph::setCurves(std::vector<Curve> list) {
    if (curves == list) return;
    drawn.resize(list.size());
    QRegion changed = list.size() == curves.size() ? QRect() : area().toAlignedRect();
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (i < curves.size() && curves[i] == list[i]) continue;
        const bool onlyMoves = i < curves.size() && curves[i].color == list[i].color &&
                               curves[i].fill == list[i].fill && drawn[i].size() == list[i].db.size();
        if (!onlyMoves) drawn[i] = list[i].db;
        changed +=
            onlyMoves ? moveEQCurve(plot(), drawn[i], list[i].db, list[i].fill) : area().toAlignedRect();
    }
    curves = std::move(list);
    repaintCurves(changed);
}

void EQGraph::setHandles(std::vector<Handle> list) {
    if (handles == list) return;
    QRegion changed;
    const auto areIn = [](const Handle& each, const std::vector<Handle>& others) {
        return std::ranges::count(others, each) > 0;
    };
    for (const Handle& handle : handles)
        if (!areIn(handle, list)) changed += areaOf(handle);
    for (const Handle& handle : list)
        if (!areIn(handle, handles)) changed += areaOf(handle);
    const std::vector<Handle> before = std::exchange(handles, std::move(list));
    setFocusPolicy(handles.empty() ? Qt::NoFocus : Qt::StrongFocus);
    if (!handleOf(selected)) select(std::nullopt);
    update(changed);
    for (std::size_t i = 0; i < handles.size(); ++i)
        if (i >= before.size() || before[i].description != handles[i].description)
            notifyPartChanged(*this, static_cast<int>(i));
    if (press) return showUse();
    pointAt(pointer);
}

// What a curve runs beyond the plot grows with its height. A low graph has no room for that above its plot.
EQPlot EQGraph::plot() const {
    constexpr double low = 240;
    const QRectF usual = area().marginsRemoved(bleed + QMargins(levelLabels, 0, 0, frequencyLabels));
    const double height = area().height();
    const double withRoom = std::floor((height - 2 * EQPlot::reach(0)) / (1 + 2 * EQPlot::beyond));
    const double high = std::min(usual.height(), std::max(low, withRoom));
    const double below = std::max(height - usual.bottom(), std::ceil(EQPlot::reach(high)));
    return {{usual.left(), height - below - high, usual.width(), high}};
}

// A handle above the graph's highest frequency stands just outside of the plot.
QPointF EQGraph::centreOf(const Handle& handle) const {
    return {plot().x(std::clamp(handle.fc, EQPlot::lowestHz, bandFrequency.highest)),
            plot().y(EQPlot::drawnLevel(handle.gain))};
}

QPointF EQGraph::placeOf(const Handle& handle) const { return grown(centreOf(handle)); }

QRect EQGraph::areaOf(const Handle& handle) const {
    constexpr double extent = EQMark::extent;
    return grown(QRectF(centreOf(handle), QSizeF()).adjusted(-extent, -extent, extent, extent))
        .toAlignedRect();
}

QAccessible::Role EQGraph::accessibleRole() const {
    return onDrag ? QAccessible::Chart : QAccessible::Graphic;
}

Parts::Part EQGraph::part(int index) const {
    const Handle& handle = handles.at(static_cast<std::size_t>(index));
    return {.name = handle.name,
            .value = handle.description,
            .isCurrent = handle.id == selected,
            .place = areaOf(handle),
            .number = handle.gain};
}

void EQGraph::choosePart(int index) { select(handles.at(static_cast<std::size_t>(index)).id); }

Range EQGraph::partRange() const { return {bandGain.lowest, bandGain.highest}; }

double EQGraph::partStep() const { return decibelsPerKey; }

void EQGraph::proposePart(int index, double gain) {
    const Handle handle = handles.at(static_cast<std::size_t>(index));  // the callback replaces them
    onDrag(handle.id, handle.fc, gain);
}

// The focus of screen readers is on the selected handle.
void EQGraph::tellFocus() {
    if (!hasFocus()) return;
    for (int i = 0; i < partCount(); ++i)
        if (handles[static_cast<std::size_t>(i)].id == selected) notifyPartFocused(*this, i);
}

const EQGraph::Handle* EQGraph::handleOf(std::optional<int> id) const {
    const auto found = std::ranges::find(handles, id, [](const Handle& handle) { return handle.id; });
    return found == handles.end() ? nullptr : &*found;
}

// Those whose circle covers the point, the last one in the list first: it is drawn on top. Where there are
// none, those within reach, the nearest first.
std::vector<int> EQGraph::handlesAt(QPointF point) const {
    std::vector<std::pair<double, int>> near;
    for (const Handle& handle : handles)
        if (const double away = distance(centreOf(handle), point); away <= reach)
            near.insert(near.begin(), {std::max(away, EQMark::size / 2), handle.id});
    std::ranges::stable_sort(near, {}, &std::pair<double, int>::first);
    const bool covered = !near.empty() && near.front().first <= EQMark::size / 2;
    std::vector<int> ids;
    for (const auto& [away, id] : near)
        if (!covered || away <= EQMark::size / 2) ids.push_back(id);
    return ids;
}

std::optional<int> EQGraph::topmostAt(QPointF point) const {
    const std::vector<int> under = handlesAt(point);
    if (under.empty()) return std::nullopt;
    return selected && std::ranges::count(under, *selected) > 0 ? *selected : under.front();
}

void EQGraph::select(std::optional<int> id) {
    if (selected == id) return;
    selected = id;
    keyed.stop();
    update();
    tellFocus();
    if (onSelect) onSelect(id);
    showUse();
}

void EQGraph::mark(std::optional<int> id) {
    if (marked == id) return;
    repaintHandle(std::exchange(marked, id));
    repaintHandle(id);
}

void EQGraph::repaintHandle(std::optional<int> id) {
    if (const Handle* const handle = handleOf(id)) update(areaOf(*handle));
}

bool EQGraph::hasCross() const {
    return pointer && plot().area.contains(*pointer) && !(press && press->dragging);
}

void EQGraph::repaintCross() {
    if (!pointer) return;
    const QRectF lines = plot().area;
    const QSizeF whole = area().size();
    for (const QRectF& part : {QRectF(0, 0, levelLabels + 8, whole.height()),
                               QRectF(0, lines.bottom(), whole.width(), whole.height() - lines.bottom()),
                               QRectF(lines.left(), pointer->y() - 2, lines.width(), 4),
                               QRectF(pointer->x() - 2, lines.top(), 4, lines.height())})
        update(grown(part).toAlignedRect());
}

void EQGraph::pointAt(std::optional<QPointF> point) {
    repaintCross();
    pointer = point;
    repaintCross();
    const std::optional<int> under = point && isMovable() ? topmostAt(*point) : std::nullopt;
    if (under != hovered) {
        setCursor(under ? Qt::PointingHandCursor : Qt::ArrowCursor);
        repaintHandle(std::exchange(hovered, under));
        repaintHandle(under);
        if (onHover) onHover(under);
    }
    showUse();
}

std::optional<int> EQGraph::handleInUse() const {
    return (press && press->dragging) || keyed.isActive() ? selected : hovered;
}

void EQGraph::showUse() {
    inUse = handleInUse();
    const Handle* const handle = handleOf(inUse);
    if (handle && !handle->readOut.isEmpty())
        tag.show(handle->readOut, placeOf(*handle));
    else
        tag.hide();
    std::vector<double> after = handle && curveOf ? curveOf(handle->id) : std::vector<double>();
    if (after == lone) return;
    if (after.size() == lone.size()) {
        repaintCurves(moveEQCurve(plot(), lone, after, false));
    } else {
        lone = std::move(after);
        repaintCurves(plot().area.toAlignedRect());
    }
}

void EQGraph::selectNext(const std::vector<int>& among, int by) {
    if (among.empty()) return;
    const auto count = static_cast<int>(among.size());
    const auto current = selected ? std::ranges::find(among, *selected) : among.end();
    const int next = current == among.end() ? 0 : static_cast<int>(current - among.begin()) + by;
    select(among.at(static_cast<std::size_t>((next + count) % count)));
}

void EQGraph::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !isMovable()) return;
    const QPointF point = inArea(event->position());
    const std::optional<int> top = topmostAt(point);
    if (!top) return;
    const bool sameSpot = lastClick && distance(*lastClick, point) <= spotSize && selected == top;
    select(top);
    press = Press{.at = point, .sameSpot = sameSpot};
}

void EQGraph::mouseMoveEvent(QMouseEvent* event) {
    const QPointF point = inArea(event->position());
    keyed.stop();
    if (!press || !(event->buttons() & Qt::LeftButton)) return pointAt(point);
    const bool fine = isFine(event->modifiers());
    if (!press->dragging && growth() * distance(point, press->at) >= dragThreshold) {
        repaintCross();
        press->dragging = true;
        press->fine = fine;
        press->from = press->last = press->at;
        const Handle* const handle = handleOf(selected);
        press->place = fine && handle ? centreOf(*handle) : press->at;
    }
    if (press->dragging) dragTo(point, fine);
    pointer = point;
}

void EQGraph::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !press) return;
    const Press ended = *std::exchange(press, std::nullopt);
    lastClick = ended.dragging ? std::nullopt : std::optional(ended.at);
    if (ended.sameSpot && !ended.dragging) selectNext(handlesAt(ended.at), 1);
    pointAt(inArea(event->position()));
}

void EQGraph::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !isMovable()) return;
    const std::vector<int> under = handlesAt(inArea(event->position()));
    if (under.size() != 1) return mousePressEvent(event);
    select(under.front());
    flatten(under.front());
}

void EQGraph::flatten(int id) {
    if (const Handle* const handle = handleOf(id)) onDrag(id, handle->fc, 0);
}

// The place of the handle is kept, not its values: those are limited and rounded, and a slow drag would
// lose what the rounding takes from each step.
void EQGraph::dragTo(QPointF point, bool fine) {
    const auto placeFor = [this](QPointF to) {
        return press->place + (to - press->from) * (press->fine ? fineFactor : 1);
    };
    if (fine != press->fine) {
        press->place = placeFor(press->last);
        press->from = press->last;
        press->fine = fine;
    }
    press->last = point;
    if (!selected || !onDrag) return;
    const QPointF to = placeFor(point);
    const EQPlot where = plot();
    onDrag(*selected, std::clamp(where.hz(to.x()), EQPlot::lowestHz, EQPlot::highestHz),
           clampedGain(where.db(to.y())));
    showUse();
}

void EQGraph::enterEvent(QEnterEvent* event) {
    Control::enterEvent(event);
    pointAt(inArea(event->position()));
}

void EQGraph::leaveEvent(QEvent* event) {
    Control::leaveEvent(event);
    pointAt(std::nullopt);
}

void EQGraph::timerEvent(QTimerEvent* event) {
    if (event->timerId() != keyed.timerId()) return Control::timerEvent(event);
    keyed.stop();
    showUse();
}

void EQGraph::cancelInteraction() {
    press.reset();
    keyed.stop();
    pointAt(std::nullopt);
}

void EQGraph::wheelEvent(QWheelEvent* event) {
    const std::optional<int> top = topmostAt(inArea(event->position()));
    if (!top || !onTurn || !hasFocus()) return event->ignore();
    select(top);
    if (const int turned = notches.take(*event)) onTurn(*top, turned);
    event->accept();
}

void EQGraph::keyPressEvent(QKeyEvent* event) {
    if (isMovable() && selectByKey(*event)) return;
    if (!isMovable() || !moveByKey(*event)) return Control::keyPressEvent(event);
    keyed.start(keyedMs, this);
    showUse();
}

bool EQGraph::selectByKey(const QKeyEvent& event) {
    std::vector<int> all;
    for (const Handle& handle : handles)
        all.push_back(handle.id);
    const int key = event.key();
    const bool control = event.modifiers() & Qt::ControlModifier;
    if (key == Qt::Key_BracketLeft || (control && key == Qt::Key_Left)) return selectNext(all, -1), true;
    if (key == Qt::Key_BracketRight || (control && key == Qt::Key_Right)) return selectNext(all, 1), true;
    if (key < Qt::Key_0 || key > Qt::Key_9) return false;
    const QString label = QString::number(key == Qt::Key_0 ? 10 : key - Qt::Key_0);
    const auto found = std::ranges::find(handles, label, [](const Handle& handle) { return handle.label; });
    if (found != handles.end()) select(found->id);
    return true;
}

bool EQGraph::moveByKey(const QKeyEvent& event) {
    const Handle* const handle = handleOf(selected);
    if (!handle) return false;
    const Handle from = *handle;  // a copy: the owner replaces the handles in the callback
    const double factor = factorFor(event.modifiers());
    const auto raise = [&](double db) { onDrag(from.id, from.fc, clampedGain(from.gain + db)); };
    const auto shift = [&](double octaves) { onDrag(from.id, movedByOctaves(from.fc, octaves), from.gain); };
    const auto turn = [&](double notches) { return onTurn ? onTurn(from.id, notches) : void(); };
    switch (event.key()) {
    case Qt::Key_Left:
        return shift(-octavesPerKey * factor), true;
    case Qt::Key_Right:
        return shift(octavesPerKey * factor), true;
    case Qt::Key_Up:
        return raise(decibelsPerKey * factor), true;
    case Qt::Key_Down:
        return raise(-decibelsPerKey * factor), true;
    case Qt::Key_Home:
        return flatten(from.id), true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return onReturn ? onReturn(from.id) : void(), true;
    case Qt::Key_PageUp:
        return turn(1), true;
    case Qt::Key_PageDown:
        return turn(-1), true;
    default:
        return false;
    }
}

void EQGraph::focusInEvent(QFocusEvent* event) {
    const bool byKey = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    if (byKey && isMovable() && !selected) select(handles.front().id);
    tellFocus();
    Control::focusInEvent(event);
}

void EQGraph::focusOutEvent(QFocusEvent* event) {
    keyed.stop();
    showUse();
    Control::focusOutEvent(event);
}

Control::Outline EQGraph::outline() const { return {plot().area, 3}; }

void EQGraph::paint(QPainter& painter) {
    const EQPlot where = plot();
    if (where.area.width() < 1) return;
    Paint::cached(painter, QStringLiteral("eq grid"), area(), [&](QPainter& canvas) {
        Paint::recess(canvas, area(), cornerRadius, 0.42, 0.4);
        canvas.save();
        canvas.setClipRect(area().adjusted(0, where.area.bottom(), 0, 0));
        Paint::fill(canvas, area(), cornerRadius, Theme::black(0.5));
        canvas.restore();
        drawEQGrid(canvas, where);
    });
    drawCurves(painter);
    if (hasCross()) drawEQCross(painter, where, *pointer, area().width());
    for (const Handle& handle : handles)
        drawEQMark(painter, {.centre = centreOf(handle),
                             .label = handle.label,
                             .color = handle.color,
                             .dimmed = handle.dimmed,
                             .ring = ringOf(handle)});
}

double EQGraph::ringOf(const Handle& handle) const {
    if (handle.id == selected) return hasFocus() ? 0.9 : 0.6;
    return handle.id == marked || handle.id == hovered ? 0.35 : 0;
}

void EQGraph::repaintCurves(const QRegion& changed) {
    picture.outdate(changed);
    for (const QRect& part : changed)
        update(grown(QRectF(part)).toAlignedRect());
}

void EQGraph::drawCurves(QPainter& painter) {
    std::vector<EQCurve> list;
    for (std::size_t i = 0; i < curves.size(); ++i)
        list.push_back({drawn[i], curves[i].color, curves[i].fill});
    if (!lone.empty()) list.push_back({lone, Theme::white(0.6), false, EQCurve::Line::thin});
    picture.draw(painter, area(), plot(), list);
}

}  // namespace Kit
