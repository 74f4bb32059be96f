#pragma once

#include <QDBusMessage>
#include <QMap>
#include <QObject>
#include <QString>
#include <QVariant>

namespace Corvane {

/// Reduces the motion in the window while the desktop's settings ask for it. They come from the toolkit's
/// style and, where the session has one, from the desktop portal, which is asked without waiting for it
/// and tells changes.
class Motion final : public QObject {
    Q_OBJECT

public:
    /// By name space and key, as the portal gives them.
    using Settings = QMap<QString, QVariantMap>;

    /// To be made when the style of the application is set.
    Motion();

    static bool isReducedBy(const Settings& settings);

private slots:
    void change(const QDBusMessage& told);

private:  // NOLINT(readability-redundant-access-specifiers)
    void ask();
    void apply() const;

    Settings settings;
};

}  // namespace Corvane
