#pragma once

#include "platform/desktoppictures.h"
#include "platform/nulldesktop.h"
#include "platform/services.h"

#include <QColor>
#include <QGuiApplication>
#include <QHash>
#include <QPainter>
#include <QPointer>
#include <QScreen>
#include <QTimer>
#include <QWidget>

#include <algorithm>
#include <functional>
#include <utility>

#include <unistd.h>

class FakeScreens : public Screens
{
public:
    QList<QRect> list{{0, 0, 800, 600}};

    QList<Screen> all() override
    {
        QList<Screen> result;
        for (const QRect &area : std::as_const(list))
            result.append({.area = area});
        return result;
    }
};

/// A list of coloured windows, front to back. All coordinates are global device pixels.
class FakeWindowCatalogue : public WindowCatalogue
{
public:
    struct Window {
        Entry entry{};
        QColor color{};
        bool onScreen = true;
    };

    QList<Window> list{};
    bool menuBar = false;
    /// Gives the list instead, where set.
    std::function<QList<Entry>(List, int)> told{};

    QList<Entry> windows(List which, int relativeTo) override
    {
        if (told)
            return told(which, relativeTo);
        QList<Entry> result;
        for (const Window &window : std::as_const(list)) {
            if (which == List::All || window.onScreen)
                result.append(window.entry);
            if (which == List::AtAndAbove && window.entry.number == relativeTo)
                break;
        }
        return result;
    }
    bool hasMenuBar() const override { return menuBar; }
};

/// Pictures of the windows of the list.
class FakePictures : public Pictures
{
public:
    explicit FakePictures(FakeWindowCatalogue &windows) : m_windows(windows) {}

    /// Gives the pictures of single windows instead, where set.
    std::function<QImage(int)> taken{};

    /// Answers a call of freeze() instead, where set: whenever and as often as it likes.
    std::function<void(const Answer &)> asked{};
    bool frozen = false;
    bool live = true;          ///< else each question freezes
    bool isHeld = false;       ///< asked for, and not let go
    bool asks = false;         ///< the user, until they have answered once
    bool asksToWatch = false;  ///< the same of watch()
    bool refusesToWatch = false;
    bool isWatched = false;  ///< asked for, and not ended

    // The answer is dropped only where nobody has set `asked`.
    void freeze(Freeze how, Answer answer) override
    {
        isHeld = true;
        asks = false;
        if (asked)
            return asked(answer);
        m_question = std::make_unique<QObject>();
        QTimer::singleShot(0, m_question.get(), [this, how, answer] {
            frozen = frozen || !live || how == Freeze::Still;
            answer(true, {});
        });
    }
    void thaw() override
    {
        isHeld = false;
        frozen = frozen && live;
        m_question.reset();
    }
    bool isFrozen() const override { return frozen; }
    bool isLive() const override { return live; }
    bool mayAsk() const override { return asks; }
    bool mayAskToWatch() const override { return asksToWatch; }
    void watch(const Answer &answer) override
    {
        isWatched = true;
        asksToWatch = false;
        answer(!refusesToWatch, {});
    }
    void unwatch() override { isWatched = false; }

    QImage ofDesktop(const QRect &area) override { return withoutWindows(area, {}); }
    QImage ofWindows(std::optional<QRectF> area, const QList<int> &numbers) override
    {
        return taken && !area ? taken(numbers.value(0)) : painted(area, numbers);
    }
    QImage withoutWindows(const QRect &area, const QList<int> &leftOut) override
    {
        QList<int> shown;
        for (const auto &entry : m_windows.windows(WindowCatalogue::List::OnScreen, 0)) {
            if (!leftOut.contains(entry.number))
                shown.append(entry.number);
        }
        return painted(QRectF(area), shown);
    }
    std::unique_ptr<ChangeWatch> watchChanges(int) override { return nullptr; }

    QImage painted(std::optional<QRectF> area, const QList<int> &numbers) const
    {
        QList<FakeWindowCatalogue::Window> chosen;
        QRectF bounds;
        for (const int number : numbers) {
            const auto found =
                std::find_if(m_windows.list.cbegin(), m_windows.list.cend(),
                             [&](const auto &window) { return window.entry.number == number; });
            if (found == m_windows.list.cend())
                continue;
            chosen.prepend(*found);
            bounds |= found->entry.bounds;
        }
        const QRect pixels = area.value_or(bounds).toRect();
        if (pixels.isEmpty())
            return {};
        QImage result(pixels.size(), QImage::Format_RGB32);
        result.fill(Qt::black);
        QPainter painter(&result);
        painter.translate(-pixels.topLeft());
        for (const auto &window : std::as_const(chosen))
            painter.fillRect(window.entry.bounds, window.color);
        return result;
    }

private:
    FakeWindowCatalogue &m_windows;
    std::unique_ptr<QObject> m_question{};
};

class FakeOwnWindows : public OwnWindows
{
public:
    static constexpr int s_furtherPane = 1000;

    bool composited = true;
    bool placing = true;
    bool paneEach = false;  ///< one pane a screen, or a half of the only one
    QHash<const QWidget *, int>
        numbers{};           ///< of this program's windows; panes but the first have one
    QList<QRect> covered{};  ///< what coverArea() was asked for
    QList<const QWidget *> keptOutOfTaskBar{};

    bool isComposited() override { return composited; }
    void setCompositingHandler(std::function<void()>) override {}
    QList<PanePlace> panes() override
    {
        QList<QRect> areas{desktopBox()};
        if (paneEach && !services().screens->areas().isEmpty())
            areas = services().screens->areas();
        if (paneEach && areas.size() == 1) {
            const QSize half(areas[0].width() / 2, areas[0].height());
            areas = {{areas[0].topLeft(), half}, areas[0].adjusted(half.width(), 0, 0, 0)};
        }
        // The toolkit's screens lend the panes their scales. In logical coordinates the desktop is
        // a row, and the first one begins at 0.
        QList<PanePlace> result;
        for (const QRect &area : std::as_const(areas)) {
            const qreal scale = screenFor(result.size())->devicePixelRatio();
            const bool isRight = area.x() > areas[0].x();
            const qreal left = isRight ? areas[0].width() / result[0].scale : area.x() / scale;
            result.append({area, scale, QPointF(result.isEmpty() ? 0 : left, 0)});
        }
        return result;
    }
    bool placesWindows() const override { return placing; }
    void coverArea(QWidget *window, const QRect &area) override
    {
        covered.append(area);
        QPointF corner = QPointF(area.topLeft()) / window->devicePixelRatioF();
        const QList<PanePlace> places = panes();
        for (qsizetype i = 0; paneEach && i < places.size(); ++i) {
            if (places[i].area != area)
                continue;
            window->setScreen(screenFor(i));
            if (i > 0)
                numbers.insert(window, s_furtherPane);
            corner = screenFor(i)->geometry().topLeft();
        }
        const QSizeF size = QSizeF(area.size()) / window->devicePixelRatioF();
        window->setGeometry(QRectF(corner, size).toAlignedRect());
    }
    void moveWindow(QWidget *window, QPoint to) override { covered.append({to, window->size()}); }
    void keepOutOfTaskBar(QWidget *window) override { keptOutOfTaskBar.append(window); }
    void setOnScreen(QWidget *, bool) override {}
    void dropShadow(QWidget *) override {}
    int numberOf(const QWidget *widget) override { return numbers.value(widget); }

private:
    static QScreen *screenFor(qsizetype pane)
    {
        const QList<QScreen *> screens = QGuiApplication::screens();
        return screens.at(pane % screens.size());
    }
};

class FakeHands : public Hands
{
public:
    QPoint pointerPos{};
    bool busy = false;
    std::function<void(int, Wheel)> turned{};  ///< what turns of the wheel do

    QPoint pointer() override { return pointerPos; }
    void movePointer(QPoint to) override { pointerPos = to; }
    bool isHandBusy() override { return busy; }
    void turnWheel(QPoint, int clicks, Wheel wheel) override
    {
        if (turned)
            turned(clicks, wheel);
    }
};

/// An application watch whose changes a test makes up.
class FakeApplicationWatch : public ApplicationWatch
{
public:
    unsigned front = 0;
    uint process = 0;
    QList<unsigned> activatedWindows{};
    QList<QWidget *> broughtToFront{};
    QByteArray token{};

    void start(Handlers handlers) override { m_handlers = std::move(handlers); }
    void stop() override { m_handlers = {}; }
    unsigned frontWindow() override { return front; }
    uint frontProcess() override { return process; }
    void activate(unsigned window) override { activatedWindows.append(window); }
    void bringToFront(QWidget *window) override { broughtToFront.append(window); }
    void useToken(const QByteArray &given) override { token = given; }

    /// A process gains or loses the front, as far as the watch has been started.
    void tell(bool active, long pid)
    {
        const auto &handler = active ? m_handlers.activated : m_handlers.deactivated;
        if (handler)
            handler(pid);
    }
    /// The same for this program.
    void setActive(bool active) { tell(active, getpid()); }

private:
    Handlers m_handlers;
};

/// Keys that a test presses.
class FakeKeyWatch : public KeyWatch
{
public:
    QList<Qt::Key> watched{};  ///< empty while nobody listens

    void start(const QList<Qt::Key> &keys, std::function<void(Qt::Key)> pressed) override
    {
        watched = keys;
        m_pressed = std::move(pressed);
    }
    void listen(const QList<Qt::Key> &keys, std::function<void(Qt::Key)> pressed) override
    {
        start(keys, std::move(pressed));
    }
    void stop() override { watched.clear(); }
    void press(Qt::Key key)
    {
        if (watched.contains(key))
            m_pressed(key);
    }

private:
    std::function<void(Qt::Key)> m_pressed;
};

class FakeLoginItem : public LoginItem
{
public:
    bool present = false;

    bool contains() const override { return present; }
    void insert() override { present = true; }
    void remove() override { present = false; }
};

/// An accessibility interface whose switch and answers a test makes up.
class FakeAccessibility : public Accessibility
{
public:
    bool enabled = false;
    QList<Place> asked{};  ///< every question

    bool isEnabled() override { return enabled; }
    void enable() override { enabled = true; }
    void findScrollingArea(const Place &place, std::function<void(const QRect &)> answer) override
    {
        asked.append(place);
        m_answer = std::move(answer);
    }
    void dropQuestion() override { m_answer = nullptr; }

    bool isAsked() const { return bool(m_answer); }
    /// Answers the question that waits, if any.
    void reply(const QRect &area)
    {
        if (const auto answer = std::exchange(m_answer, nullptr))
            answer(area);
    }

private:
    std::function<void(const QRect &)> m_answer{};
};

/// Notifications that a test reads, and answers as the user would.
class FakeNotifications : public Notifications
{
public:
    bool areThere = true;
    QList<Notification> list{};

    void show(const Notification &notification, std::function<void(bool)> shown) override
    {
        if (areThere)
            list.append(notification);
        QMetaObject::invokeMethod(
            qApp, [shown = std::move(shown), there = areThere] { shown(there); },
            Qt::QueuedConnection);
    }
    /// The texts of the last one's buttons.
    QStringList offered() const
    {
        QStringList texts;
        for (const Action &action : list.last().actions)
            texts.append(action.text);
        return texts;
    }
    /// Presses one of them.
    void press(const QString &text) const { list.last().actions.at(offered().indexOf(text)).run(); }
};

/// Time that passes when somebody waits for it, or a test says so: all at once, with what was due
/// meanwhile carried out in its order.
class FakeClock : public Clock
{
public:
    qint64 now() const override { return m_now; }
    bool pause(int milliseconds) override
    {
        advance(milliseconds);
        return !ending;
    }
    void after(int milliseconds, QObject *context, std::function<void()> run) override
    {
        m_due.append({m_now + milliseconds, context, std::move(run)});
    }
    void advance(int milliseconds)
    {
        const qint64 end = m_now + milliseconds;
        for (;;) {
            const auto next = std::min_element(m_due.begin(), m_due.end(),
                                               [](auto &a, auto &b) { return a.time < b.time; });
            if (next == m_due.end() || next->time > end)
                break;
            const Due due = *next;
            m_due.erase(next);
            m_now = std::max(m_now, due.time);
            if (due.context)
                due.run();
            QCoreApplication::processEvents();
        }
        m_now = std::max(m_now, end);
        QCoreApplication::processEvents();
    }

    bool ending = false;  ///< the program has been told to end

private:
    struct Due {
        qint64 time = 0;
        QPointer<QObject> context{};
        std::function<void()> run{};
    };
    qint64 m_now = 0;
    QList<Due> m_due;
};

/// Installs a fake desktop as the services in force. The pointers are valid until other services
/// are installed. Hot keys are those of the desktop that does nothing.
struct FakeDesktop {
    FakeScreens *screens = nullptr;
    FakePictures *pictures = nullptr;
    FakeWindowCatalogue *windows = nullptr;
    FakeOwnWindows *ownWindows = nullptr;
    FakeHands *hands = nullptr;
    FakeApplicationWatch *watch = nullptr;
    FakeKeyWatch *keys = nullptr;
    FakeLoginItem *loginItem = nullptr;
    FakeAccessibility *accessibility = nullptr;
    FakeNotifications *notifications = nullptr;
    FakeClock *clock = nullptr;

    FakeDesktop()
    {
        Services made;
        createNullDesktop(made);
        made.abilities = {};
        screens = put<FakeScreens>(made.screens);
        windows = put<FakeWindowCatalogue>(made.windows);
        pictures = put<FakePictures>(made.pictures, *windows);
        ownWindows = put<FakeOwnWindows>(made.ownWindows);
        hands = put<FakeHands>(made.hands);
        watch = put<FakeApplicationWatch>(made.watch);
        keys = put<FakeKeyWatch>(made.keys);
        loginItem = put<FakeLoginItem>(made.loginItem);
        accessibility = put<FakeAccessibility>(made.accessibility);
        notifications = put<FakeNotifications>(made.notifications);
        clock = put<FakeClock>(made.clock);
        installServices(std::move(made));
    }

private:
    template<typename Fake, typename Service, typename... Needed>
    static Fake *put(std::unique_ptr<Service> &place, Needed &...needed)
    {
        auto fake = std::make_unique<Fake>(needed...);
        Fake *result = fake.get();
        place = std::move(fake);
        return result;
    }
};
