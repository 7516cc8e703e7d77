// Pictures, casts and hot keys by the desktop's portal, with a portal of the test's own on a bus of
// its own: what it answers, late, wrongly or never, and what comes of it.

#include "config/applicationrecord.h"
#include "config/settings.h"
#include "config/xmlstore.h"
#include "fakedesktop.h"
#include "numbered.h"
#include "platform/wayland/caststreams.h"
#include "platform/wayland/portalhotkeys.h"
#include "platform/wayland/portalroute.h"
#include "platform/xdg/applicationbus.h"
#include "rows.h"
#include "scratch.h"

#include <QBuffer>
#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusUnixFileDescriptor>
#include <QDBusVirtualObject>
#include <QPainter>
#include <QProcess>
#include <QUrl>

#include <array>
#include <numeric>
#include <optional>

#include <sys/socket.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

using Permissions = QMap<QString, QStringList>;

// As the portal tells of keys.
struct FakeShortcut {
    QString id{};
    QVariantMap values{};
};

QDBusArgument &operator<<(QDBusArgument &argument, const FakeShortcut &shortcut)
{
    argument.beginStructure();
    argument << shortcut.id << shortcut.values;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, FakeShortcut &shortcut)
{
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.values;
    argument.endStructure();
    return argument;
}

// As the portal tells of screens that it casts.
struct FakeSource {
    uint node = 0;
    QVariantMap values{};
};

QDBusArgument &operator<<(QDBusArgument &argument, const FakeSource &source)
{
    argument.beginStructure();
    argument << source.node << source.values;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, FakeSource &source)
{
    argument.beginStructure();
    argument >> source.node >> source.values;
    argument.endStructure();
    return argument;
}

const QString s_id = u"org.example.brenvale.SnapWorkbench"_s;
const QString s_portal = u"org.freedesktop.portal.Desktop"_s;
const QString s_store = u"org.freedesktop.impl.portal.PermissionStore"_s;

// A portal and what it remembers, as far as this program uses them. It writes down what it is
// asked.
class FakePortal : public QDBusVirtualObject
{
public:
    struct Answer {
        uint code = 0;
        QVariantMap results{};
    };
    QMap<QString, Answer> answers{};  ///< by method; without one the question stays open
    QStringList absent{};             ///< methods that nothing serves
    QStringList silent{};             ///< and those that never return
    Permissions permissions{};
    QStringList calls{};
    QMap<QString, QString> triggers{};  ///< the keys that were asked for, by their names
    QSet<QString> callers{};
    QMap<QString, QVariantMap> options{};      ///< of the last question, by method
    QDBusUnixFileDescriptor stream{};          ///< to PipeWire; none unless set
    std::optional<QDBusMessage> unreturned{};  ///< the last one that did not return

    FakePortal() : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"fake"_s))
    {
        m_bus.registerVirtualObject(u"/org/freedesktop"_s, this, QDBusConnection::SubPath);
        m_bus.registerService(s_portal);
        m_bus.registerService(s_store);
    }
    ~FakePortal() override
    {
        m_bus.unregisterService(s_portal);
        m_bus.unregisterService(s_store);
        QDBusConnection::disconnectFromBus(u"fake"_s);
    }
    void die() { m_bus.unregisterService(s_portal); }
    void live() { m_bus.registerService(s_portal); }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &) override
    {
        const QString name = message.member();
        calls.append(name);
        if (message.service() != s_store)
            callers.insert(message.service());
        if (silent.contains(name)) {
            message.setDelayedReply(true);
            unreturned = message;
        } else if (absent.contains(name)) {
            m_bus.send(message.createErrorReply(QDBusError::UnknownMethod, u"no"_s));
        } else {
            serve(message);
        }
        return true;
    }
    /// Returns from a question.
    void serve(const QDBusMessage &message)
    {
        const QString name = message.member();
        const QVariantList arguments = message.arguments();
        if (name == u"Get") {
            m_bus.send(message.createReply(QVariant::fromValue(QDBusVariant(2U))));
        } else if (name == u"Lookup") {
            m_bus.send(message.createReply(
                {QVariant::fromValue(permissions), QVariant::fromValue(QDBusVariant(0))}));
        } else if (name == u"DeletePermission") {
            permissions.remove(arguments.value(2).toString());
            m_bus.send(message.createReply());
        } else if (name == u"Register" || name == u"Close") {
            m_bus.send(message.createReply());
        } else if (name == u"OpenPipeWireRemote") {
            m_bus.send(stream.isValid()
                           ? message.createReply(QVariant::fromValue(stream))
                           : message.createErrorReply(QDBusError::Failed, u"no PipeWire"_s));
        } else {
            const auto asked = qdbus_cast<QVariantMap>(arguments.constLast());
            options.insert(name, asked);
            if (name == u"BindShortcuts") {
                for (const auto &shortcut : qdbus_cast<QList<FakeShortcut>>(arguments.value(1)))
                    triggers[shortcut.id] =
                        shortcut.values.value(u"preferred_trigger"_s).toString();
            }
            const QString path = u"/org/freedesktop/portal/desktop/request/%1/%2"_s.arg(
                message.service().mid(1).replace(u'.', u'_'),
                asked.value(u"handle_token"_s).toString());
            m_bus.send(message.createReply(QVariant::fromValue(QDBusObjectPath(path))));
            // Keys can be asked for once in a session.
            if (name == u"CreateSession")
                m_isBound = false;
            if (name == u"BindShortcuts" && std::exchange(m_isBound, true))
                tell(path, u"org.freedesktop.portal.Request"_s, u"Response"_s, {2U, QVariantMap()});
            else if (const auto answer = answers.find(name); answer != answers.end())
                tell(path, u"org.freedesktop.portal.Request"_s, u"Response"_s,
                     {answer->code, answer->results});
        }
    }
    void tell(const QString &path, const QString &interface, const QString &signal,
              const QVariantList &arguments)
    {
        QDBusMessage message = QDBusMessage::createSignal(path, interface, signal);
        message.setArguments(arguments);
        m_bus.send(message);
    }

private:
    QDBusConnection m_bus;
    bool m_isBound = false;
};

}  // namespace

class TestPortal : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_daemon.start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--print-address=1"_s});
        QVERIFY(m_daemon.waitForReadyRead());
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_daemon.readLine().trimmed());
        qDBusRegisterMetaType<Permissions>();
        qDBusRegisterMetaType<FakeShortcut>();
        qDBusRegisterMetaType<QList<FakeShortcut>>();
        qDBusRegisterMetaType<FakeSource>();
        qDBusRegisterMetaType<QList<FakeSource>>();
    }
    void cleanupTestCase()
    {
        m_daemon.kill();
        m_daemon.waitForFinished();
    }
    void init() { m_fake.emplace(); }
    void cleanup()
    {
        // Whatever it was: one connection, whose first call registers it.
        if (!m_fake->calls.isEmpty()) {
            QCOMPARE(m_fake->calls.value(0), u"Register"_s);
            QCOMPARE(m_fake->calls.count(u"Register"_s), 1);
            QCOMPARE(m_fake->callers.size(), 1);
        }
        m_route.reset();
        m_fake.reset();
    }

    // The one picture is cut into those of the screens, each in its own pixels, also where sizes
    // were rounded.
    void pictures()
    {
        const auto check = [this](const QByteArray &row, const QList<ScreenLayout::Screen> &screens,
                                  QSize size) {
            init();
            const ScreenLayout layout(screens);
            QImage desktop(size, QImage::Format_RGB32);
            QPainter painter(&desktop);
            for (qsizetype i = 0; i < screens.size(); ++i) {
                const ScreenLayout::Screen &screen = layout.screens().at(i);
                painter.drawImage(QRect(screen.area.topLeft(), screen.area.size()),
                                  numbered(screen.pixels, int(i)));
            }
            painter.end();
            give(desktop);
            start();
            take(layout);
            expect(row, m_result->outcome, PictureRoute::Outcome::Taken);
            for (qsizetype i = 0; i < screens.size(); ++i) {
                const ScreenLayout::Screen &screen = layout.screens().at(i);
                const QImage got = m_result->pictures.value(i);
                expect(row, got.size(), screen.pixels);
                const QRect whole = got.rect().adjusted(0, 0, -1, -1);
                expect(row, qBlue(got.pixel(whole.bottomRight())), int(i) * 50);
                expect(row, qBlue(got.pixel(got.rect().bottomRight())), int(i) * 50);
                if (screen.scale == layout.scale())
                    expect(row, got.copy(whole) == numbered(screen.pixels, int(i)).copy(whole),
                           true);
            }
        };
        check("scale 1", {{.logical = {0, 0, 320, 200}, .pixels = {320, 200}}}, {320, 200});
        check("two beside each other",
              {{.logical = {320, 10, 200, 200}, .pixels = {200, 200}},
               {.logical = {0, 0, 320, 200}, .pixels = {320, 200}}},
              {520, 210});
        const ScreenLayout::Screen finer{.logical = {0, 0, 1066, 666}, .pixels = {1600, 1000}};
        check("1.5", {finer}, {1600, 1000});
        check("1.5, cut off", {finer}, {1599, 999});
        check("unequal",
              {{.logical = {0, 0, 400, 300}, .pixels = {800, 600}},
               {.logical = {400, 0, 250, 200}, .pixels = {250, 200}}},
              {1300, 600});
    }

    // Each ends with a word of its own and leaves no file, and the next one starts.
    void outcomes()
    {
        using enum PictureRoute::Outcome;
        using Step = std::function<void()>;
        const Permissions yes{{s_id, {u"yes"_s}}};
        const Permissions no{{s_id, {u"no"_s}}};
        const auto check = [&](const QByteArray &row, const Permissions &permissions,
                               const Step &set, PictureRoute::Outcome outcome, const QString &word,
                               const Step &meanwhile = {}) {
            init();
            set();
            start(permissions);
            m_result.reset();
            m_route->take(m_layout, [this](const auto &result) { m_result = result; });
            if (meanwhile) {
                QTRY_VERIFY2(m_fake->calls.contains(u"Screenshot"_s), row);
                meanwhile();
            }
            QTRY_VERIFY2(m_result.has_value(), row);
            expect(row, m_result->outcome, outcome);
            QVERIFY2(m_result->trouble.contains(word), row + m_result->trouble.toUtf8());
            expect(row, QFile::exists(m_scratch.path(u"picture"_s)), false);
            // What was refused is kept, until it is forgotten.
            expect(row, m_route->canAskAgain(), permissions == no);
            if (permissions == no) {
                bool isForgotten = false;
                m_route->askAgain([&] { isForgotten = true; });
                QTRY_VERIFY2(isForgotten && m_fake->permissions.isEmpty(), row);
            }
            // Nobody is asked again for what is not there, until the portal is another one.
            if (outcome == Absent) {
                m_fake->calls.removeAll(u"Get"_s);
                take(m_layout);
                expect(row, m_result->outcome, Absent);
                expect(row, m_fake->calls.contains(u"Get"_s), false);
                m_fake->die();
                m_fake->live();
                m_fake->calls.clear();
            }
            m_fake->absent.clear();
            m_fake->silent.clear();
            const auto next = [this] {
                give(numbered({320, 200}, 0));
                take(m_layout);
                return m_result->outcome;
            };
            QTRY_VERIFY2(next() == Taken, row);
            expect(row, m_fake->calls.value(0), u"Register"_s);
        };
        const auto answered = [this](uint code, const QVariantMap &results = {}) {
            return [=, this] { m_fake->answers[u"Screenshot"_s] = {code, results}; };
        };
        const auto file = [](const QString &path) {
            return QVariantMap{{u"uri"_s, QUrl::fromLocalFile(path).toString()}};
        };
        const Step nothing = [] {};
        check("refused", no, answered(2), Failed, u"settings for applications"_s);
        check("cancelled", {}, answered(1), Failed, u"cancelled"_s);
        check("failed", yes, answered(2), Failed, u"failed to take"_s);
        check("late", yes, nothing, Failed, u"in time"_s);
        check(
            "no picture", {}, [this] { give("no picture"); }, Failed, u"no picture of its"_s);
        check(
            "a part only", {},
            [this] {
                give(numbered({320, 100}, 0));
            },
            Failed, u"no picture of its"_s);
        check("no file", {}, answered(0, file(u"/nowhere.png"_s)), Failed, u"not there"_s);
        check("a folder", {}, answered(0, file(m_scratch.folder.path())), Failed, u"not there"_s);
        check("far away", {}, answered(0, {{u"uri"_s, u"http://example.org/a.png"_s}}), Failed,
              u"not there"_s);
        check("dies", {}, nothing, Failed, u"portal failed"_s, [this] {
            m_fake->die();
            m_fake->live();
            m_fake->calls.clear();
        });
        const auto without = [this](const QString &method) {
            return [this, method] { m_fake->absent = {method}; };
        };
        check("nothing behind it", {}, without(u"Get"_s), Absent, u"no part for that"_s);
        check("refuses the call", {}, without(u"Screenshot"_s), Absent, u"no part for that"_s);
        check(
            "silent", {}, [this] { m_fake->silent = {u"Get"_s}; }, Absent, u"no part for that"_s);
    }

    // The dialog goes with the question, also where the portal has hardly heard of it.
    void dropped()
    {
        start();
        m_route->take(m_layout, [](const auto &) { QFAIL("answered"); });
        QTRY_VERIFY(m_fake->calls.contains(u"Screenshot"_s));
        QTest::qWait(50);  // for the answer that must not come
        m_route->drop();
        QTRY_COMPARE(m_fake->calls.count(u"Close"_s), 1);

        m_fake->silent = {u"Screenshot"_s};
        m_route->take(m_layout, [](const auto &) { QFAIL("answered"); });
        QTRY_VERIFY(m_fake->unreturned.has_value());
        m_route->drop();
        m_fake->serve(*m_fake->unreturned);
        QTRY_COMPARE(m_fake->calls.count(u"Close"_s), 2);

        m_fake->silent.clear();
        give(numbered({320, 200}, 0));
        take(m_layout);
        QCOMPARE(m_result->outcome, PictureRoute::Outcome::Taken);
        QTest::qWait(50);
        QCOMPARE(m_fake->calls.count(u"Close"_s), 2);
    }

    // Whether the user is asked depends on what they have said to this program, or to all that the
    // portal knows by no name.
    void asks()
    {
        const auto check = [this](const QByteArray &row, const Permissions &permissions,
                                  bool registers, bool asks) {
            init();
            if (!registers)
                m_fake->absent = {u"Register"_s};
            start(permissions);
            QTRY_VERIFY2(m_route->mayAsk() == asks, row);
        };
        check("yes", {{s_id, {u"yes"_s}}}, true, false);
        check("yes, without a name", {{QString(), {u"yes"_s}}}, false, false);
        check("no", {{s_id, {u"no"_s}}, {QString(), {u"yes"_s}}}, true, true);
        check("never asked", {{QString(), {u"yes"_s}}}, true, true);
        give(numbered({320, 200}, 0));
        take(m_layout);
        QVERIFY(!m_route->mayAsk());
        // Who is that late seems to be asking.
        m_fake->answers.clear();
        take(m_layout);
        QVERIFY(m_route->mayAsk());
    }

    // The user is asked once: what the desktop remembers their answer by is kept as long as it
    // serves, and a newer one instead of it. Each end has a word of its own and closes the session.
    void casts()
    {
        g_ResourceFileName = m_scratch.put(u"SnapWorkbench.xml"_s, "<Galeway ver=\"1\"/>");
        const QString session = u"/org/freedesktop/session"_s;
        const ScreenLayout layout({{.logical = {0, 0, 320, 200}, .pixels = {320, 200}},
                                   {.logical = {320, 0, 200, 200}, .pixels = {200, 200}}});
        const auto check = [&](const QByteArray &row, const QList<QPoint> &shown, uint code,
                               const QString &given, const QString &kept, const QString &word,
                               const std::function<void()> &set = {}) {
            cleanup();
            init();
            QList<FakeSource> sources;
            for (const QPoint corner : shown)
                sources.append({uint(sources.size()) + 40, {{u"position"_s, corner}}});
            m_fake->answers = {
                {u"CreateSession"_s, {0, {{u"session_handle"_s, session}}}},
                {u"SelectSources"_s, {}},
                {u"Start"_s,
                 {code,
                  {{u"streams"_s, QVariant::fromValue(sources)}, {u"restore_token"_s, given}}}}};
            if (set)
                set();
            const QString before = GetConfigString(u"ScreenCastToken"_s);
            PortalCast cast(Portal::find(), {.opened = 300, .shown = 300});
            expect(row, cast.mayAsk(), before.isEmpty());
            std::optional<QString> trouble;
            cast.start(layout, [&](bool areThere, const QString &why) {
                expect(row, areThere, false);
                trouble = why;
            });
            QTRY_VERIFY2(trouble.has_value(), row);
            QVERIFY2(trouble->contains(word), row + trouble->toUtf8());
            expect(row, cast.pictures(layout, {0, 0, 320, 200}).isEmpty(), true);
            expect(row, GetConfigString(u"ScreenCastToken"_s), kept);
            const QVariantMap asked = m_fake->options.value(u"SelectSources"_s);
            if (!asked.isEmpty()) {
                expect(row, asked.value(u"restore_token"_s).toString(), before);
                expect(row, asked.value(u"cursor_mode"_s).toUInt(), 1U);
                expect(row, asked.value(u"persist_mode"_s).toUInt(), 2U);
                expect(row, asked.value(u"multiple"_s).toBool(), true);
                QTRY_VERIFY2(m_fake->calls.contains(u"Close"_s), row);
            }
        };
        const QList<QPoint> both{{320, 0}, {0, 0}};
        check("first", both, 0, u"a"_s, u"a"_s, u"PipeWire"_s);
        check("again", both, 0, u"b"_s, u"b"_s, u"PipeWire"_s);
        check("silent", both, 0, {}, u"b"_s, u"in time"_s,
              [this] { m_fake->silent = {u"CreateSession"_s}; });
        check("no cast", both, 0, {}, u"b"_s, u"no program"_s,
              [this] { m_fake->absent = {u"CreateSession"_s}; });
        check("a screen is left out", {{0, 0}}, 0, u"c"_s, {}, u"PipeWire"_s);
        check("a stream that has ended", both, 0, u"d"_s, u"d"_s, u"stopped"_s, [this] {
            std::array<int, 2> ends{};
            QCOMPARE(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()), 0);
            m_fake->stream = QDBusUnixFileDescriptor(ends[0]);
            close(ends[0]);
            close(ends[1]);
        });
        check("cancelled", {}, 1, {}, {}, u"cancelled"_s);
        check("failed", {}, 2, {}, {}, u"failed"_s);
        const auto closed = [&] {
            m_fake->tell(session, u"org.freedesktop.portal.Session"_s, u"Closed"_s,
                         {QVariantMap()});
        };
        // The user may end it, and who gives up closes question and session.
        cleanup();
        init();
        m_fake->answers = {{u"CreateSession"_s, {0, {{u"session_handle"_s, session}}}},
                           {u"SelectSources"_s, {}}};
        PortalCast cast(Portal::find());
        std::optional<QString> trouble;
        cast.start(layout, [&](bool, const QString &why) { trouble = why; });
        QTRY_VERIFY(m_fake->calls.contains(u"Start"_s));
        closed();
        QTRY_VERIFY(trouble && trouble->contains(u"stopped"_s));
        QTRY_COMPARE(m_fake->calls.count(u"Close"_s), 2);
        trouble.reset();
        cast.start(layout, [&](bool, const QString &why) { trouble = why; });
        QTRY_COMPARE(m_fake->calls.count(u"Start"_s), 2);
        QTest::qWait(50);  // for the answer that must not come
        cast.stop();
        QTRY_COMPARE(m_fake->calls.count(u"Close"_s), 4);
        closed();
        QTest::qWait(50);
        QVERIFY(!trouble);
        FreeAllXmlDocument();
    }

    // A frame comes in memory that another program describes.
    void frames()
    {
        QByteArray memory(29, 0);
        std::iota(memory.begin(), memory.end(), char(0));
        const CastFrame frame{.memory = reinterpret_cast<const uchar *>(memory.constData()),
                              .capacity = memory.size(),
                              .offset = 1,
                              .length = 28,
                              .stride = 16,
                              .pixels = {3, 2}};
        QVERIFY(frame.isWhole());  // the last row ends with its pixels
        const QImage blueFirst = frame.picture();
        QCOMPARE(blueFirst.pixel(0, 0), qRgb(3, 2, 1));
        QCOMPARE(blueFirst.pixel(2, 1), qRgb(27, 26, 25));
        CastFrame redFirst = frame;
        redFirst.order = CastFrame::Order::RedFirst;
        QCOMPARE(redFirst.picture().pixel(2, 1), qRgb(25, 26, 27));
        const auto check = [&](const QByteArray &row, auto CastFrame::*field, auto value) {
            CastFrame changed = frame;
            changed.*field = value;
            expect(row, changed.isWhole(), false);
            expect(row, changed.picture().isNull(), true);
        };
        check("cut off", &CastFrame::length, 27);
        check("beyond its memory", &CastFrame::capacity, 28);
        check("begins beyond it", &CastFrame::offset, 30);
        check("begins before it", &CastFrame::offset, -1);
        check("rows overlap", &CastFrame::stride, 11);
        check("upside down", &CastFrame::stride, -16);
        check("empty", &CastFrame::length, 0);
        check("no pixels", &CastFrame::pixels, QSize());
        check("too wide", &CastFrame::pixels, QSize(1 << 30, 2));
        check("no memory", &CastFrame::memory, nullptr);
    }

    void hotKeys()
    {
        const FakeDesktop desktop;
        g_ResourceFileName = m_scratch.put(u"SnapWorkbench.xml"_s, "<Galeway ver=\"1\"/>");
        const QString session = u"/session"_s;
        const QString own = u"org.freedesktop.portal.GlobalShortcuts"_s;
        QList<int> pressed;
        bool areThere = false;
        std::optional<PortalHotKeys> keys;
        const auto begin = [&] {
            keys.emplace(Portal::find(), [&](bool there) { areThere = there; });
            keys->setNames([](int number) {
                return number == 3 ? HotKeys::Name()
                                   : HotKeys::Name{u"do-%1"_s.arg(number), u"Do it"_s};
            });
            keys->setHandler([&](int number) { pressed.append(number); });
            keys->add(1, Qt::CTRL | Qt::ALT | Qt::Key_R);
            keys->add(2, Qt::CTRL | Qt::SHIFT | Qt::Key_Print);
            keys->add(3, Qt::CTRL | Qt::ALT | Qt::Key_A);
        };
        const auto shortcuts = [](const QString &id, const QString &trigger) {
            return QVariant::fromValue(
                QList<FakeShortcut>{{id, {{u"trigger_description"_s, trigger}}}});
        };
        const auto changed = [&](const QString &id, const QString &trigger) {
            m_fake->tell(u"/org/freedesktop/portal/desktop"_s, own, u"ShortcutsChanged"_s,
                         {QVariant::fromValue(QDBusObjectPath(session)), shortcuts(id, trigger)});
        };
        const auto press = [&](const QString &there) {
            m_fake->tell(u"/org/freedesktop/portal/desktop"_s, own, u"Activated"_s,
                         {QVariant::fromValue(QDBusObjectPath(there)), u"do-2"_s, 0ULL,
                          QVariantMap{{u"activation_token"_s, u"token"_s}}});
        };
        m_fake->answers[u"CreateSession"_s] = {0, {{u"session_handle"_s, session}}};

        // Refused, or left open: that is not asked again at the next start, but when the user wants
        // it.
        begin();
        QTRY_VERIFY(m_fake->calls.contains(u"BindShortcuts"_s));
        for (const int number : {1, 2, 3})
            keys->remove(number);
        QTRY_VERIFY(m_fake->calls.contains(u"Close"_s));
        QCOMPARE(GetConfigString(u"HotKeysRefused"_s), u"1"_s);
        keys.reset();
        SetConfigString(u"HotKeysRefused"_s, {});
        m_fake->calls.clear();
        m_fake->callers.clear();
        m_fake->answers[u"BindShortcuts"_s] = {2, {}};
        m_fake->answers[u"ListShortcuts"_s] = {0, {}};
        begin();
        QTRY_VERIFY(keys->canAsk());
        keys.reset();
        m_fake->calls.clear();
        m_fake->callers.clear();
        begin();
        QTRY_VERIFY(keys->canAsk());
        QVERIFY(!areThere);
        QVERIFY(!m_fake->calls.contains(u"BindShortcuts"_s));

        // One desktop gives the keys and calls that a failure.
        m_fake->answers[u"BindShortcuts"_s] = {
            2, {{u"shortcuts"_s, shortcuts(u"do-2"_s, u"Press <Control><Alt>e"_s)}}};
        keys->ask();
        QTRY_VERIFY(areThere);
        QVERIFY(!keys->canAsk());
        QCOMPARE(keys->keysOf(2), u"Ctrl+Alt+E"_s);
        QCOMPARE(keys->keysOf(1), QString());
        press(u"/another"_s);
        press(session);
        QTRY_COMPARE(pressed, QList<int>{2});
        QCOMPARE(desktop.watch->token, "token");
        QCOMPARE(m_fake->triggers, (QMap<QString, QString>{{u"do-1"_s, u"CTRL+ALT+r"_s},
                                                           {u"do-2"_s, u"CTRL+SHIFT+Print"_s}}));
        changed(u"do-1"_s, u"F9"_s);
        QTRY_COMPARE(keys->keysOf(1), u"F9"_s);
        keys->change(1, Qt::META | Qt::Key_F9);
        QTRY_COMPARE(m_fake->triggers.value(u"do-1"_s), u"LOGO+F9"_s);
        QTRY_COMPARE(keys->keysOf(2), u"Ctrl+Alt+E"_s);
        QVERIFY(areThere);

        // With another portal all begins anew, and nobody is asked whose keys are there.
        m_fake->die();
        QTRY_VERIFY(!areThere);
        m_fake->calls.clear();
        m_fake->live();
        QTRY_VERIFY(areThere);
        keys.reset();
        FreeAllXmlDocument();
    }

    // What a caller passes on for the focus is there before the window is shown, and what came with
    // an earlier call is not.
    void tokens()
    {
        const FakeDesktop desktop;
        QList<QByteArray> tokens;
        const auto shown = [&] { tokens.append(desktop.watch->token); };
        ApplicationBus bus({.activate = shown,
                            .open = [&](const QStringList &, const auto &) { shown(); },
                            .actions = {{u"grab"_s, shown}}});
        QCOMPARE(bus.claim(), ApplicationBus::Claim::Owned);
        const auto call = [&tokens](const QString &method, const QVariantList &arguments) {
            const qsizetype before = tokens.size();
            QDBusMessage message =
                QDBusMessage::createMethodCall(s_id, u"/org/example/brenvale/SnapWorkbench"_s,
                                               u"org.freedesktop.Application"_s, method);
            message.setArguments(arguments);
            QDBusConnection(u"fake"_s).send(message);
            QTRY_COMPARE(tokens.size(), before + 1);
        };
        const auto of = [](const QString &key) { return QVariantMap{{key, key}}; };
        call(u"Activate"_s, {of(u"activation-token"_s)});
        call(u"Open"_s, {QStringList(), of(u"desktop-startup-id"_s)});
        call(u"ActivateAction"_s, {u"grab"_s, QVariantList(), QVariantMap()});
        QCOMPARE(tokens, (QList<QByteArray>{"activation-token", "desktop-startup-id", ""}));
    }

private:
    void start(const Permissions &permissions = {})
    {
        m_fake->permissions = permissions;
        m_route.reset();
        m_route = std::make_unique<PortalRoute>(
            Portal::find(), PortalLimits{.there = 200, .taken = 200, .absent = 100000});
        QTRY_VERIFY(m_fake->calls.contains(u"Lookup"_s));
        QCoreApplication::processEvents();
    }
    void take(const ScreenLayout &layout)
    {
        m_result.reset();
        m_route->take(layout, [this](const auto &result) { m_result = result; });
        QTRY_VERIFY(m_result.has_value());
    }
    /// The portal gives a file with that.
    void give(const QImage &picture)
    {
        QByteArray bytes;
        QBuffer buffer(&bytes);
        picture.save(&buffer, "PNG");
        give(bytes);
    }
    void give(const QByteArray &bytes)
    {
        m_fake->answers[u"Screenshot"_s] = {
            0, {{u"uri"_s, QUrl::fromLocalFile(m_scratch.put(u"picture"_s, bytes)).toString()}}};
    }

    const ScreenLayout m_layout{{{.logical = {0, 0, 320, 200}, .pixels = {320, 200}}}};
    QProcess m_daemon;
    Scratch m_scratch;
    std::optional<FakePortal> m_fake;
    std::unique_ptr<PortalRoute> m_route;
    std::optional<PictureRoute::Result> m_result;
};

QTEST_MAIN(TestPortal)
#include "test_portal.moc"
