#pragma once

#include "platform/nulldesktop.h"
#include "platform/services.h"

#include <QColor>
#include <QCoreApplication>
#include <QHash>
#include <QPainter>
#include <QPointer>
#include <QWidget>

#include <algorithm>
#include <utility>

#include <unistd.h>

/// A desktop that is a list of coloured windows, front to back. All coordinates are global device
/// pixels.
class FakeWindowServer : public WindowServer
{
public:
    struct Window {
        Entry entry{};
        QColor color{};
        bool onScreen = true;
    };

    QList<Window> list{};
    QList<QRect> screenList{{0, 0, 800, 600}};
    QPoint pointerPos{};
    bool composited = true;
    bool menuBar = false;
    bool handBusy = false;
    QHash<const QWidget *, int> numbers{};  ///< of this program's windows
    QList<QRect> covered{};                 ///< what coverArea() was asked for
    QList<const QWidget *> keptOutOfTaskBar{};

    QList<Entry> windows(List which, int relativeTo) override
    {
        QList<Entry> result;
        for (const Window &window : std::as_const(list)) {
            if (which == List::All || window.onScreen)
                result.append(window.entry);
            if (which == List::AtAndAbove && window.entry.number == relativeTo)
                break;
        }
        return result;
    }

    QImage screenPicture(const QRect &area) override
    {
        QList<int> shown;
        for (const Entry &entry : windows(List::OnScreen, 0))
            shown.append(entry.number);
        return picture(QRectF(area), shown);
    }

    QImage picture(std::optional<QRectF> area, const QList<int> &chosenNumbers) override
    {
        QList<Window> chosen;
        QRectF bounds;
        for (const int number : chosenNumbers) {
            const auto found = std::find_if(list.cbegin(), list.cend(), [&](const Window &window) {
                return window.entry.number == number;
            });
            if (found == list.cend())
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
        for (const Window &window : std::as_const(chosen))
            painter.fillRect(window.entry.bounds, window.color);
        return result;
    }

    QImage pictureWithout(const QRect &area, const QList<int> &leftOut) override
    {
        QList<int> shown;
        for (const Entry &entry : windows(List::OnScreen, 0)) {
            if (!leftOut.contains(entry.number))
                shown.append(entry.number);
        }
        return picture(QRectF(area), shown);
    }

    QList<QRect> screens() override { return screenList; }
    QPoint pointer() override { return pointerPos; }
    void movePointer(QPoint to) override { pointerPos = to; }
    bool isHandBusy() override { return handBusy; }
    bool turnWheel(QPoint, int, Wheel) override { return false; }
    std::unique_ptr<ChangeWatch> watchChanges(int) override { return nullptr; }
    bool hasMenuBar() const override { return menuBar; }
    bool isComposited() override { return composited; }
    void setCompositingHandler(std::function<void()>) override {}
    void coverArea(QWidget *window, const QRect &area) override
    {
        covered.append(area);
        const qreal scale = window->devicePixelRatioF();
        window->setGeometry(
            QRectF(QPointF(area.topLeft()) / scale, QSizeF(area.size()) / scale).toAlignedRect());
    }
    void moveWindow(QWidget *window, QPoint to) override { covered.append({to, window->size()}); }
    void keepOutOfTaskBar(QWidget *window) override { keptOutOfTaskBar.append(window); }
    void setOnScreen(QWidget *, bool) override {}
    void dropShadow(QWidget *) override {}
    int numberOf(const QWidget *widget) override { return numbers.value(widget); }
};

/// An application watch whose changes a test makes up.
class FakeApplicationWatch : public ApplicationWatch
{
public:
    unsigned front = 0;
    uint process = 0;
    QList<unsigned> activatedWindows{};
    QList<QWidget *> broughtToFront{};

    void start(Handlers handlers) override { m_handlers = std::move(handlers); }
    void stop() override { m_handlers = {}; }
    unsigned frontWindow() override { return front; }
    uint frontProcess() override { return process; }
    void activate(unsigned window) override { activatedWindows.append(window); }
    void bringToFront(QWidget *window) override { broughtToFront.append(window); }

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
    FakeWindowServer *windows = nullptr;
    FakeApplicationWatch *watch = nullptr;
    FakeKeyWatch *keys = nullptr;
    FakeLoginItem *loginItem = nullptr;
    FakeAccessibility *accessibility = nullptr;
    FakeClock *clock = nullptr;

    FakeDesktop()
    {
        Services made;
        createNullDesktop(made);
        windows = put<FakeWindowServer>(made.windows);
        watch = put<FakeApplicationWatch>(made.watch);
        keys = put<FakeKeyWatch>(made.keys);
        loginItem = put<FakeLoginItem>(made.loginItem);
        accessibility = put<FakeAccessibility>(made.accessibility);
        clock = put<FakeClock>(made.clock);
        installServices(std::move(made));
    }

private:
    template<typename Fake, typename Service> static Fake *put(std::unique_ptr<Service> &place)
    {
        auto fake = std::make_unique<Fake>();
        Fake *result = fake.get();
        place = std::move(fake);
        return result;
    }
};
