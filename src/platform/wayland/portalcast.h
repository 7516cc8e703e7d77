#pragma once

#include "platform/wayland/pictureroute.h"
#include "platform/xdg/portal.h"

#include <QObject>

#include <memory>

/// How long a portal is waited for where it asks nobody, in milliseconds.
struct CastLimits {
    int opened = 5000;  ///< for a session
    int shown = 3000;   ///< for the first frames
};

/// What the screens show while they change, cast by the desktop's portal. The user is asked once
/// which screens this program may see; the answer is kept by the desktop under a name that is kept
/// here, in the settings.
class PortalCast : public QObject
{
    Q_OBJECT
public:
    explicit PortalCast(std::shared_ptr<Portal> portal, CastLimits limits = {});
    ~PortalCast() override;

    /// Whether a portal that runs casts screens, which it tells at once. Of one that does not run
    /// it is believed.
    static bool isThere(const Portal &portal);

    /// Whether start() asks the user.
    bool mayAsk() const;
    /// Begins. `answer` is called once, from the event loop, unless stop() comes first: with
    /// whether there are frames of the screens that the user has chosen, and if not, why.
    void start(const ScreenLayout &layout, const PictureRoute::Begun &answer);
    void stop();

    /// What the screens that lie in `area` (global device pixels) show now, each in its own pixels,
    /// in the layout's order; null for the others. Empty if one of those is not shown, or has
    /// changed.
    QList<QImage> pictures(const ScreenLayout &layout, const QRect &area) const;

private slots:
    void close(const QDBusMessage &signal);

private:
    using Hears = void (PortalCast::*)(const QVariantMap &results);
    void ask(const QString &method, const QVariantList &arguments, const QVariantMap &options,
             Hears hears);
    void select(const QVariantMap &results);
    void show(const QVariantMap &results);
    void open(const QVariantMap &results);
    void receive(int descriptor, const QList<uint> &nodes);
    void lose();
    void end(const Portal::Answer &answer);
    void answer(bool areThere, const QString &trouble = {});

    /// A cast, from the first question on.
    struct Session;

    std::shared_ptr<Portal> m_portal;
    CastLimits m_limits;
    int m_sessions = 0;  // so far
    std::unique_ptr<Session> m_session;
};
