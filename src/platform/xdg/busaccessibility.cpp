#include "platform/xdg/busaccessibility.h"

#include "platform/xdg/accessibletree.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const auto s_busService = u"org.a11y.Bus"_s;
const auto s_busPath = u"/org/a11y/bus"_s;
const auto s_status = u"org.a11y.Status"_s;
const auto s_registry = u"org.a11y.atspi.Registry"_s;
const auto s_rootPath = u"/org/a11y/atspi/accessible/root"_s;
const auto s_accessible = u"org.a11y.atspi.Accessible"_s;
const auto s_component = u"org.a11y.atspi.Component"_s;
const auto s_properties = u"org.freedesktop.DBus.Properties"_s;

// Milliseconds.
constexpr int s_readLimit = 300;
constexpr int s_setLimit = 2000;  // the service may have to be started first
constexpr int s_searchLimit = 1000;
// Programs that are asked only because the window's owner is unknown may hang.
constexpr int s_strangerLimit = 300;

constexpr int s_mostCalls = 400;
constexpr qsizetype s_mostLevels = 40;
constexpr qsizetype s_mostWindows = 40;  // of one program
constexpr int s_mostChildren = 60;       // of one object, before only its ends are looked at

constexpr uint s_onScreen = 0;  // extents are relative to the screen
constexpr uint s_showing = 25;  // the bit of a state set

QDBusMessage propertyCall(const QString &service, const QString &path, const QString &method,
                          const QVariantList &arguments)
{
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, s_properties, method);
    call.setArguments(arguments);
    return call;
}

// A reference to an accessible object of a program.
struct Reference {
    QString service{};
    QString path{};

    bool isNull() const { return service.isEmpty() || path.isEmpty() || path.endsWith(u"/null"); }
    bool operator==(const Reference &) const = default;

    QDBusMessage call(const QString &interface, const QString &method,
                      const QVariantList &arguments = {}) const
    {
        QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
        message.setArguments(arguments);
        return message;
    }
    QDBusMessage property(const QString &name) const
    {
        return propertyCall(service, path, u"Get"_s, {s_accessible, name});
    }
    QDBusMessage role() const { return call(s_accessible, u"GetRole"_s); }
    QDBusMessage state() const { return call(s_accessible, u"GetState"_s); }
    QDBusMessage extents() const { return call(s_component, u"GetExtents"_s, {s_onScreen}); }
    QDBusMessage children() const { return call(s_accessible, u"GetChildren"_s); }
    QDBusMessage child(int index) const
    {
        return call(s_accessible, u"GetChildAtIndex"_s, {index});
    }
};

// Replies are checked before they are unpacked, because a program may send anything.

QVariant firstOf(const QDBusMessage &reply, QLatin1StringView signature)
{
    return reply.type() == QDBusMessage::ReplyMessage && reply.signature() == signature
               ? reply.arguments().constFirst()
               : QVariant();
}

Reference readReference(const QDBusArgument &argument)
{
    Reference result;
    QDBusObjectPath path;
    argument.beginStructure();
    argument >> result.service >> path;
    argument.endStructure();
    result.path = path.path();
    return result;
}

Reference referenceIn(const QVariant &value)
{
    const auto argument = value.value<QDBusArgument>();
    return argument.currentSignature() == "(so)"_L1 ? readReference(argument) : Reference();
}

Reference referenceIn(const QDBusMessage &reply) { return referenceIn(firstOf(reply, "(so)"_L1)); }

QList<Reference> referencesIn(const QDBusMessage &reply)
{
    const QVariant value = firstOf(reply, "a(so)"_L1);
    QList<Reference> result;
    if (!value.isValid())
        return result;
    const auto argument = value.value<QDBusArgument>();
    argument.beginArray();
    while (!argument.atEnd())
        result.append(readReference(argument));
    argument.endArray();
    result.removeIf([](const Reference &reference) { return reference.isNull(); });
    return result;
}

QRect extentsIn(const QDBusMessage &reply)
{
    const QVariant value = firstOf(reply, "(iiii)"_L1);
    if (!value.isValid())
        return {};
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    const auto argument = value.value<QDBusArgument>();
    argument.beginStructure();
    argument >> x >> y >> width >> height;
    argument.endStructure();
    // Checks width and height separately, because the far edge of a rectangle could overflow.
    return areSane({0, 0, width, height}) && areSane({x, y, 1, 1}) ? QRect(x, y, width, height)
                                                                   : QRect();
}

AccessibleRole roleIn(const QDBusMessage &reply)
{
    return static_cast<AccessibleRole>(firstOf(reply, "u"_L1).toUInt());
}

bool isShowing(const QDBusMessage &reply)
{
    const QVariant value = firstOf(reply, "au"_L1);
    const auto bits = qdbus_cast<QList<uint>>(value);
    return !bits.isEmpty() && (bits.first() >> s_showing & 1U);
}

QVariant propertyIn(const QDBusMessage &reply)
{
    return firstOf(reply, "v"_L1).value<QDBusVariant>().variant();
}

}  // namespace

// One search, from the bus address to the rectangle. Each step sends some calls at once and
// continues when all have been answered. Deleting the search cancels the rest.
class AccessibleSearch : public QObject
{
public:
    using Answer = std::function<void(const QRect &)>;
    /// `done` is called once, from the event loop.
    AccessibleSearch(BusAccessibility::Bus &bus, Accessibility::Place place, Answer done);

private:
    using Replies = QList<QDBusMessage>;
    using Next = std::function<void(const Replies &)>;

    // A window that may be the one that is looked for.
    struct Window {
        Reference reference{};
        QRect extents{};
        QString title{};
        bool showing = false;
        PixelMapping mapping{};
        int likeness = 0;
    };
    struct Child {
        Reference reference{};
        QRect extents{};
        AccessibleRole role = AccessibleRole::Invalid;
        bool showing = false;
    };

    void ask(const QDBusConnection &bus, const Replies &calls, const Next &next);
    void ask(const Replies &calls, const Next &next)
    {
        ask(QDBusConnection(m_bus.name), calls, next);
    }
    void finish(const QRect &area);

    void start();
    void connectTo(const QString &address);
    void askPrograms();
    void askWindows(const QList<Reference> &programs);
    void describeWindows(const QList<Reference> &windows);
    void chooseWindow(QList<Window> windows);

    void descend(const Reference &into);
    void askChildren(const Reference &of, int count);
    void climb(const Reference &from, const Reference &to, qsizetype steps,
               const QList<Reference> &others);
    void describeChildren(const QList<Reference> &children);
    void describeCloser(QList<Child> children);
    void lookInside(const QList<Child> &children);
    void goOn(const QList<Child> &children);
    void conclude();

    BusAccessibility::Bus &m_bus;
    const Accessibility::Place m_place;
    Answer m_done;
    const QDeadlineTimer m_deadline{s_searchLimit};
    int m_callsLeft = s_mostCalls;
    int m_callLimit = s_searchLimit;
    PixelMapping m_mapping{};
    QPoint m_point{};  // in the program's coordinates
    QList<AccessibleLevel> m_path{};
};

AccessibleSearch::AccessibleSearch(BusAccessibility::Bus &bus, Accessibility::Place place,
                                   Answer done)
    : m_bus(bus), m_place(std::move(place)), m_done(std::move(done))
{
    QMetaObject::invokeMethod(
        this, [this] { start(); }, Qt::QueuedConnection);
}

void AccessibleSearch::finish(const QRect &area)
{
    if (const auto done = std::exchange(m_done, nullptr))
        done(area);
}

// A call without a reply counts as one with an empty reply.
void AccessibleSearch::ask(const QDBusConnection &bus, const Replies &calls, const Next &next)
{
    m_callsLeft -= static_cast<int>(calls.size());
    if (!m_done || m_callsLeft < 0 || m_deadline.hasExpired()) {
        finish({});
        return;
    }
    if (calls.isEmpty()) {
        next({});
        return;
    }
    struct Batch {
        Replies replies{};
        qsizetype missing = 0;
    };
    // The watchers of the calls share the batch.
    const auto batch = std::make_shared<Batch>();
    batch->replies.resize(calls.size());
    batch->missing = calls.size();
    const int limit = std::max(1, std::min(m_callLimit, int(m_deadline.remainingTime())));
    for (qsizetype i = 0; i < calls.size(); ++i) {
        auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(calls[i], limit), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, batch, next, i] {
            batch->replies[i] = watcher->reply();
            watcher->deleteLater();
            if (--batch->missing == 0 && m_done)
                next(batch->replies);
        });
    }
}

void AccessibleSearch::start()
{
    const QDBusConnection session = QDBusConnection::sessionBus();
    if (!session.isConnected()) {
        finish({});
        return;
    }
    const QDBusMessage call =
        QDBusMessage::createMethodCall(s_busService, s_busPath, s_busService, u"GetAddress"_s);
    ask(session, {call},
        [this](const Replies &replies) { connectTo(firstOf(replies.first(), "s"_L1).toString()); });
}

void AccessibleSearch::connectTo(const QString &address)
{
    if (address != m_bus.address || !QDBusConnection(m_bus.name).isConnected()) {
        // A connection that was lost keeps its name.
        QDBusConnection::disconnectFromBus(m_bus.name);
        m_bus.address = address;
        if (address.isEmpty() ||
            !QDBusConnection::connectToBus(address, m_bus.name).isConnected()) {
            finish({});
            return;
        }
    }
    askPrograms();
}

void AccessibleSearch::askPrograms()
{
    const Reference root{s_registry, s_rootPath};
    ask({root.children()}, [this](const Replies &lists) {
        const QList<Reference> programs = referencesIn(lists.first());
        Replies calls;
        for (const Reference &program : programs) {
            QDBusMessage call = QDBusMessage::createMethodCall(
                u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s,
                u"GetConnectionUnixProcessID"_s);
            call << program.service;
            calls.append(call);
        }
        ask(calls, [this, programs](const Replies &replies) {
            QList<Reference> chosen;
            for (qsizetype i = 0; i < programs.size() && m_place.process != 0; ++i) {
                if (firstOf(replies[i], "u"_L1).toUInt() == m_place.process)
                    chosen.append(programs[i]);
            }
            // A program in a sandbox may report the process number that it has there.
            if (chosen.isEmpty())
                m_callLimit = s_strangerLimit;
            askWindows(chosen.isEmpty() ? programs : chosen);
        });
    });
}

void AccessibleSearch::askWindows(const QList<Reference> &programs)
{
    Replies calls;
    for (const Reference &program : programs)
        calls.append(program.children());
    ask(calls, [this](const Replies &replies) {
        QList<Reference> windows;
        for (const QDBusMessage &reply : replies)
            windows += referencesIn(reply).mid(0, s_mostWindows);
        describeWindows(windows);
    });
}

void AccessibleSearch::describeWindows(const QList<Reference> &windows)
{
    Replies calls;
    for (const Reference &window : windows)
        calls << window.extents() << window.property(u"Name"_s) << window.state();
    ask(calls, [this, windows](const Replies &replies) {
        QList<Window> result;
        for (qsizetype i = 0; i < windows.size(); ++i)
            result.append({.reference = windows[i],
                           .extents = extentsIn(replies[3 * i]),
                           .title = propertyIn(replies[3 * i + 1]).toString(),
                           .showing = isShowing(replies[3 * i + 2])});
        chooseWindow(result);
    });
}

void AccessibleSearch::chooseWindow(QList<Window> windows)
{
    QList<QPoint> screens;
    for (const QScreen *screen : QGuiApplication::screens())
        screens.append(screen->geometry().topLeft());
    const bool known = m_callLimit != s_strangerLimit;
    const Window *best = nullptr;
    for (Window &window : windows) {
        const auto mapping = pixelMapping(window.extents, m_place.window, screens);
        if (!mapping || !window.showing)
            continue;
        window.mapping = *mapping;
        window.likeness = (mapping->told ? 2 : 0) + (window.title == m_place.title ? 1 : 0);
        // For an unknown program the size alone proves nothing.
        if ((known || window.likeness > 0) && (!best || window.likeness > best->likeness))
            best = &window;
    }
    if (!best) {
        finish({});
        return;
    }
    m_callLimit = s_searchLimit;
    m_mapping = best->mapping;
    // Uses the centre of the pixel, because rounding could move its corner into the neighbouring
    // pixel.
    const QPointF at = m_mapping.toProgram(QPointF(m_place.point) + QPointF(0.5, 0.5));
    m_point = {qFloor(at.x()), qFloor(at.y())};
    const Reference window = best->reference;
    const QRect extents = best->extents;
    ask({window.role()}, [this, window, extents](const Replies &replies) {
        m_path.append({.role = roleIn(replies.first()), .extents = extents});
        descend(window);
    });
}

void AccessibleSearch::descend(const Reference &into)
{
    if (m_path.size() >= s_mostLevels) {
        conclude();
        return;
    }
    ask({into.property(u"ChildCount"_s)}, [this, into](const Replies &replies) {
        askChildren(into, propertyIn(replies.first()).toInt());
    });
}

// A table may have millions of children, and create each of them when it is asked for all; so a
// long list is asked only for its first and last children and the one at the point.
void AccessibleSearch::askChildren(const Reference &of, int count)
{
    if (count <= 0) {
        conclude();
        return;
    }
    if (count <= s_mostChildren) {
        ask({of.children()}, [this](const Replies &replies) {
            describeChildren(referencesIn(replies.first()).mid(0, s_mostChildren));
        });
        return;
    }
    const QDBusMessage atPoint =
        of.call(s_component, u"GetAccessibleAtPoint"_s, {m_point.x(), m_point.y(), s_onScreen});
    ask({of.child(0), of.child(1), of.child(count - 1), atPoint},
        [this, of](const Replies &replies) {
            QList<Reference> ends;
            for (const QDBusMessage &reply : replies.mid(0, 3)) {
                const Reference child = referenceIn(reply);
                if (!child.isNull() && !ends.contains(child))
                    ends.append(child);
            }
            climb(referenceIn(replies.last()), of, s_mostLevels, ends);
        });
}

// For a point some toolkits return the innermost object and others the child, so the parents lead
// back to the child.
void AccessibleSearch::climb(const Reference &from, const Reference &to, qsizetype steps,
                             const QList<Reference> &others)
{
    if (from.isNull() || from == to || steps == 0) {
        describeChildren(others);
        return;
    }
    ask({from.property(u"Parent"_s)}, [=, this](const Replies &replies) {
        const Reference parent = referenceIn(propertyIn(replies.first()));
        if (parent != to) {
            climb(parent, to, steps - 1, others);
            return;
        }
        QList<Reference> children = others;
        // The child at the point comes last, because it is in front of the others.
        children.removeAll(from);
        children.append(from);
        describeChildren(children);
    });
}

void AccessibleSearch::describeChildren(const QList<Reference> &children)
{
    Replies calls;
    for (const Reference &child : children)
        calls.append(child.extents());
    ask(calls, [this, children](const Replies &replies) {
        QList<Child> result;
        for (qsizetype i = 0; i < children.size(); ++i) {
            const QRect extents = extentsIn(replies[i]);
            // The first children may be a header, and the last one is the child at the point.
            const bool isEnd = i < 2 || i >= children.size() - 2;
            if (extents.isNull())
                continue;
            if (extents.contains(m_point) || areThin(extents) ||
                (isEnd && holdsItems(m_path.last().role)))
                result.append({.reference = children[i], .extents = extents});
        }
        describeCloser(result);
    });
}

void AccessibleSearch::describeCloser(QList<Child> children)
{
    Replies calls;
    for (const Child &child : children)
        calls << child.reference.role() << child.reference.state();
    ask(calls, [this, children](const Replies &replies) mutable {
        for (qsizetype i = 0; i < children.size(); ++i) {
            children[i].role = roleIn(replies[2 * i]);
            children[i].showing = isShowing(replies[2 * i + 1]);
        }
        lookInside(children);
    });
}

// Some toolkits put a scroll bar into a box of its own.
void AccessibleSearch::lookInside(const QList<Child> &children)
{
    QList<qsizetype> boxes;
    Replies calls;
    for (qsizetype i = 0; i < children.size(); ++i) {
        const Child &child = children[i];
        if (child.showing && areThin(child.extents) &&
            (child.role == AccessibleRole::Filler || child.role == AccessibleRole::Panel)) {
            boxes.append(i);
            calls.append(child.reference.child(0));
        }
    }
    ask(calls, [this, children, boxes](const Replies &inner) {
        Replies roles;
        QList<qsizetype> filled;
        for (qsizetype i = 0; i < boxes.size(); ++i) {
            const Reference reference = referenceIn(inner[i]);
            if (reference.isNull())
                continue;
            filled.append(boxes[i]);
            roles.append(reference.role());
        }
        ask(roles, [this, children, filled](const Replies &replies) {
            QList<Child> told = children;
            for (qsizetype i = 0; i < filled.size(); ++i) {
                if (roleIn(replies[i]) == AccessibleRole::ScrollBar)
                    told[filled[i]].role = AccessibleRole::ScrollBar;
            }
            goOn(told);
        });
    });
}

void AccessibleSearch::goOn(const QList<Child> &children)
{
    AccessibleLevel &level = m_path.last();
    const Child *next = nullptr;
    for (const Child &child : children) {
        if (child.role == AccessibleRole::ScrollBar) {
            if (child.showing)
                level.scrollBars.append(child.extents);
            continue;
        }
        // Later children are in front.
        if (child.showing && child.extents.contains(m_point))
            next = &child;
        if (child.role == AccessibleRole::TableColumnHeader)
            level.header |= child.extents;
        else if (holdsItems(level.role))
            level.items.append(child.extents);
    }
    if (!next) {
        conclude();
        return;
    }
    level.next = next->extents;
    m_path.append({.role = next->role, .extents = next->extents});
    descend(next->reference);
}

void AccessibleSearch::conclude()
{
    const QRect area = scrollingArea(m_path);
    const QRect pixels = area.isEmpty() ? QRect() : m_mapping.toPixels(area);
    finish(isUsable(pixels, m_place.window, m_place.point) ? pixels : QRect());
}

BusAccessibility::BusAccessibility()
    : m_bus{.name = u"SnapWorkbench accessibility %1"_s.arg(quintptr(this))}
{
}

BusAccessibility::~BusAccessibility()
{
    m_search.reset();
    QDBusConnection::disconnectFromBus(m_bus.name);
}

bool BusAccessibility::isEnabled()
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return false;
    QDBusMessage call = propertyCall(s_busService, s_busPath, u"Get"_s, {s_status, u"IsEnabled"_s});
    // Without auto-start: a service that does not run has not turned the switch on, and starting it
    // would take time.
    call.setAutoStartService(false);
    return propertyIn(bus.call(call, QDBus::Block, s_readLimit)).toBool();
}

void BusAccessibility::enable()
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    bus.call(propertyCall(s_busService, s_busPath, u"Set"_s,
                          {s_status, u"IsEnabled"_s, QVariant::fromValue(QDBusVariant(true))}),
             QDBus::Block, s_setLimit);
}

void BusAccessibility::findScrollingArea(const Place &place,
                                         std::function<void(const QRect &)> answer)
{
    m_search = std::make_unique<AccessibleSearch>(
        m_bus, place, [this, answer = std::move(answer)](const QRect &area) {
            // The search is released first, because the answer may start the next question.
            m_search.release()->deleteLater();
            answer(area);
        });
}

void BusAccessibility::dropQuestion() { m_search.reset(); }
