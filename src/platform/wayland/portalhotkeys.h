#pragma once

#include "platform/hotkeys.h"
#include "platform/xdg/portal.h"

#include <QDBusMessage>
#include <QMap>
#include <QObject>

#include <memory>

/// Hot keys by the desktop's portal, which asks the user for them. What they have refused they are
/// not asked again by itself; the settings remember that.
class PortalHotKeys : public QObject, public HotKeys
{
    Q_OBJECT
public:
    /// `tell` is called from the event loop when the desktop has given keys, or they are lost.
    PortalHotKeys(std::shared_ptr<Portal> portal, std::function<void(bool areThere)> tell);
    ~PortalHotKeys() override;

    void setHandler(std::function<void(int)> handler) override { m_handler = std::move(handler); }
    void setNames(const std::function<Name(int)> &nameOf) override { m_nameOf = nameOf; }
    void setChangeHandler(const std::function<void()> &changed) override { m_changed = changed; }
    void add(int number, QKeyCombination keys) override;
    void change(int number, QKeyCombination keys) override;
    void remove(int number) override;
    QString keysOf(int number) const override { return m_keys.value(number); }
    bool canAsk() const override { return m_canAsk; }
    void ask() override;

private slots:
    void press(const QDBusMessage &signal);
    void change(const QDBusMessage &signal);

private:
    void start();
    void bind();
    void hearStarted(const Portal::Answer &answer);
    void hearBound(const Portal::Answer &answer);
    void lookAgain();
    void hearListed(const Portal::Answer &answer);
    void end(bool isRefused);
    void readKeys(const QVariant &shortcuts);
    void update(bool areThere);

    std::shared_ptr<Portal> m_portal;
    std::function<void(bool)> m_tell;
    std::function<void(int)> m_handler;
    std::function<Name(int)> m_nameOf;
    std::function<void()> m_changed;
    QMap<int, QKeyCombination> m_wanted;  // by the numbers of the combinations
    QMap<int, QString> m_keys;            // that the desktop has given
    QString m_session;                    // a path; empty while there is none
    int m_sessions = 0;                   // so far
    std::unique_ptr<PortalRequest> m_request;
    bool m_isDue = false;
    bool m_canAsk = false;
    bool m_isBinding = false;  // the user may be looking at the question
    bool m_isAsked = false;    // for by the user, whatever they have said before
};
