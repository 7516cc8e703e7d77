#include "platform/nulldesktop.h"

#include "platform/services.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QTimer>
#include <QWidget>

#include <unistd.h>

namespace {

class NullWindowServer : public WindowServer
{
public:
    QList<Entry> windows(List, int) override { return {}; }
    QImage screenPicture(const QRect &) override { return {}; }
    QImage picture(std::optional<QRectF>, const QList<int> &) override { return {}; }
    QImage pictureWithout(const QRect &, const QList<int> &) override { return {}; }
    QList<QRect> screens() override
    {
        QList<QRect> result;
        for (const QScreen *screen : QGuiApplication::screens()) {
            const QRect logical = screen->geometry();
            result.append(QRect(logical.topLeft(), logical.size() * screen->devicePixelRatio()));
        }
        return result;
    }
    QPoint pointer() override { return QCursor::pos(); }
    void movePointer(QPoint to) override { QCursor::setPos(to); }
    bool isHandBusy() override { return false; }
    bool turnWheel(QPoint, int, Wheel) override { return false; }
    std::unique_ptr<ChangeWatch> watchChanges(int) override { return nullptr; }
    bool isComposited() override { return false; }
    void setCompositingHandler(std::function<void()>) override {}
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

class NullHotKeys : public HotKeys
{
public:
    void setHandler(std::function<void(int)>) override {}
    void add(int, char) override {}
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

}  // namespace

bool createNullDesktop(Services &services)
{
    services.windows = std::make_unique<NullWindowServer>();
    services.hotKeys = std::make_unique<NullHotKeys>();
    services.keys = std::make_unique<NullKeyWatch>();
    services.watch = std::make_unique<NullApplicationWatch>();
    services.accessibility = std::make_unique<NullAccessibility>();
    services.clock = std::make_unique<SystemClock>();
    return true;
}
