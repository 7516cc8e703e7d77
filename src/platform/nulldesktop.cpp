#include "platform/nulldesktop.h"

#include "platform/services.h"

#include <QCoreApplication>
#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QTimer>
#include <QWidget>

#include <unistd.h>

namespace {

class NullScreens : public Screens
{
public:
    QList<Screen> all() override
    {
        QList<Screen> result;
        for (const QScreen *screen : QGuiApplication::screens()) {
            const QRect logical = screen->geometry();
            const qreal scale = screen->devicePixelRatio();
            result.append({.area = {logical.topLeft(), logical.size() * scale},
                           .scale = scale,
                           .name = screen->name()});
        }
        return result;
    }
};

class NullPictures : public Pictures
{
public:
    void freeze(Freeze, Answer answer) override
    {
        m_question = std::make_unique<QObject>();
        QTimer::singleShot(0, m_question.get(),
                           [answer = std::move(answer)] { answer(false, {}); });
    }
    void thaw() override { m_question.reset(); }
    bool isFrozen() const override { return false; }
    QImage ofDesktop(const QRect &) override { return {}; }
    QImage ofWindows(std::optional<QRectF>, const QList<int> &) override { return {}; }
    QImage withoutWindows(const QRect &, const QList<int> &) override { return {}; }
    std::unique_ptr<ChangeWatch> watchChanges(int) override { return nullptr; }

private:
    std::unique_ptr<QObject> m_question{};
};

class NullWindowCatalogue : public WindowCatalogue
{
public:
    QList<Entry> windows(List, int) override { return {}; }
};

class NullOwnWindows : public OwnWindows
{
public:
    bool isComposited() override { return false; }
    void setCompositingHandler(std::function<void()>) override {}
    QList<PanePlace> panes() override
    {
        QList<PanePlace> result;
        for (const QScreen *screen : QGuiApplication::screens()) {
            const QRect logical = screen->geometry();
            const qreal scale = screen->devicePixelRatio();
            result.append({{logical.topLeft(), logical.size() * scale}, scale, logical.topLeft()});
        }
        return result;
    }
    void coverArea(QWidget *window, const QRect &area) override
    {
        const qreal scale = window->devicePixelRatioF();
        window->setGeometry(QRect(area.topLeft() / scale, area.size() / scale));
    }
    void moveWindow(QWidget *window, QPoint to) override
    {
        window->move(to / window->devicePixelRatioF());
    }
    void keepOutOfTaskBar(QWidget *) override {}
    void setOnScreen(QWidget *, bool) override {}
    void dropShadow(QWidget *) override {}
    int numberOf(const QWidget *) override { return 0; }
};

class NullHands : public Hands
{
public:
    QPoint pointer() override { return QCursor::pos(); }
    void movePointer(QPoint to) override { QCursor::setPos(to); }
    bool isHandBusy() override { return false; }
    void turnWheel(QPoint, int, Wheel) override {}
};

class NullHotKeys : public HotKeys
{
public:
    void setHandler(std::function<void(int)>) override {}
    void add(int, QKeyCombination) override {}
    void remove(int) override {}
};

class NullKeyWatch : public KeyWatch
{
public:
    void start(const QList<Qt::Key> &, std::function<void(Qt::Key)>) override {}
    void listen(const QList<Qt::Key> &, std::function<void(Qt::Key)>) override {}
    void stop() override {}
};

// Reports every window that asks to be activated as active, so that nobody waits for an activation
// in vain.
class NullApplicationWatch : public ApplicationWatch
{
public:
    void start(Handlers handlers) override { m_handlers = std::move(handlers); }
    void stop() override { m_handlers = {}; }
    unsigned frontWindow() override { return 0; }
    uint frontProcess() override { return 0; }
    void activate(unsigned) override {}
    void bringToFront(QWidget *) override
    {
        if (m_handlers.activated)
            m_handlers.activated(getpid());
    }

private:
    Handlers m_handlers;
};

// Reports nothing.
class NullAccessibility : public Accessibility
{
public:
    bool isEnabled() override { return false; }
    void enable() override {}
    void findScrollingArea(const Place &, std::function<void(const QRect &)> answer) override
    {
        dropQuestion();
        m_question = std::make_unique<QObject>();
        QTimer::singleShot(0, m_question.get(), [answer = std::move(answer)] { answer({}); });
    }
    void dropQuestion() override { m_question.reset(); }

private:
    std::unique_ptr<QObject> m_question{};
};

class NullNotifications : public Notifications
{
public:
    void show(const Notification &, std::function<void(bool)> shown) override
    {
        QTimer::singleShot(0, qApp, [shown = std::move(shown)] { shown(false); });
    }
};

}  // namespace

std::unique_ptr<HotKeys> noHotKeys() { return std::make_unique<NullHotKeys>(); }

bool createNullDesktop(Services &services)
{
    services.screens = std::make_unique<NullScreens>();
    services.pictures = std::make_unique<NullPictures>();
    services.windows = std::make_unique<NullWindowCatalogue>();
    services.ownWindows = std::make_unique<NullOwnWindows>();
    services.hands = std::make_unique<NullHands>();
    services.hotKeys = noHotKeys();
    services.keys = std::make_unique<NullKeyWatch>();
    services.watch = std::make_unique<NullApplicationWatch>();
    services.accessibility = std::make_unique<NullAccessibility>();
    services.notifications = std::make_unique<NullNotifications>();
    services.clock = std::make_unique<SystemClock>();
    services.abilities.withhold(
        everyAbility, QCoreApplication::translate(
                          "Abilities", "Pictures of the screen can't be taken on this desktop. "
                                       "Opening and editing pictures works here too."));
    return true;
}
