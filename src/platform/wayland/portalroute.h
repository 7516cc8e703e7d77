#pragma once

#include "platform/wayland/pictureroute.h"
#include "platform/wayland/portalcast.h"
#include "platform/xdg/portal.h"

#include <QDeadlineTimer>
#include <QObject>
#include <QTimer>

#include <memory>

/// How long a portal is waited for, in milliseconds.
struct PortalLimits {
    int there = 3000;    ///< to say whether it takes pictures
    int taken = 10000;   ///< for the picture, where nobody is asked
    int absent = 60000;  ///< before one that takes none is asked again
};

/// Pictures by the desktop's portal, which asks the user once whether this program may have any. It
/// gives one picture of all screens together, in a file.
class PortalRoute : public QObject, public PictureRoute
{
    Q_OBJECT
public:
    explicit PortalRoute(std::shared_ptr<Portal> portal, PortalLimits limits = {});
    ~PortalRoute() override;

    void take(const ScreenLayout &layout, Answer answer) override;
    void drop() override;
    bool mayAsk() const override { return m_permission != Permission::Given; }
    bool canAskAgain() const override { return m_permission == Permission::Denied; }
    void askAgain(const std::function<void()> &done) override;
    void watch(const ScreenLayout &layout, const Begun &begun) override
    {
        m_cast.start(layout, begun);
    }
    void unwatch() override { m_cast.stop(); }
    QList<QImage> takeNow(const ScreenLayout &layout, const QRect &area) override
    {
        return m_cast.pictures(layout, area);
    }
    bool mayAskToWatch() const override { return m_cast.mayAsk(); }

private:
    enum class Permission { Unknown, Given, Denied };

    void readPermission(QObject *context, const std::function<void()> &done);
    void findOut();
    void request();
    void hear(const Portal::Answer &answer);
    void tellRefusal();
    void readPicture(const QString &address);
    void answer(const Result &result);
    void findAbsent();
    void answerAbsent();
    void fail(const QString &trouble) { answer({.trouble = trouble}); }

    /// A picture that is being taken.
    struct Question;

    std::shared_ptr<Portal> m_portal;
    PortalLimits m_limits;
    Permission m_permission = Permission::Unknown;
    QString m_keptFor;         // the name that it is kept under; empty for all without one
    bool m_isThere = false;    // the portal takes pictures
    QDeadlineTimer m_absence;  // runs after it was found that it takes none
    QTimer m_limit;            // of what is waited for
    std::function<void()> m_late;
    std::unique_ptr<Question> m_question;
    PortalCast m_cast;
};
