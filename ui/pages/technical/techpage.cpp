#include "ui/pages/technical/techpage.hpp"

namespace Corvane {

QString TechPage::title() const {
    switch (kind) {
    case Kind::main:
        return QStringLiteral("MAIN");
    case Kind::limiter:
        return QStringLiteral("LIMITER");
    case Kind::input:
        return QStringLiteral("IN %1").arg(channel + 1);
    case Kind::crossover:
        return QStringLiteral("X-OVER");
    case Kind::output:
        return QStringLiteral("OUT %1").arg(channel + 1);
    }
    return {};
}

}  // namespace Corvane
