#include "ui/pages/shared/channelname.hpp"

#include "app/model/words.hpp"
#include "ui/pages/shared/text.hpp"

namespace Corvane {

QString spoken(const QString& title) { return title.left(1) + title.mid(1).toLower(); }

QString nameOf(std::string_view channel) { return spoken(toQString(wordFor(channel))); }

}  // namespace Corvane
