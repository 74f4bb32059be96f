#pragma once

#include "ui/kit/pictures.hpp"

namespace Paint {

/// Draws by way of a transparent picture of the size of `bounds`, on which every stroke and fill replaces
/// what lies under it instead of blending with it. For what moves: the toolkit blends transparent colours
/// with several threads where a shape is tall, and starting them costs more than they save. It replaces
/// and copies pixels without other threads, as it does with opaque colours.
void layered(QPainter& painter, const QRectF& bounds, const Drawing& draw);

}  // namespace Paint
