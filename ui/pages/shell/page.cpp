#include "ui/pages/shell/page.hpp"

namespace Corvane {

QString titleOf(Page page) {
    switch (page) {
    case Page::tone:
        return QStringLiteral("TOM");
    case Page::dynamics:
        return QStringLiteral("DINÂMICA");
    case Page::delay:
        return QStringLiteral("DELAY");
    }
    return {};
}

}  // namespace Corvane
