#include "snapworkbench.h"

#include <QDBusConnection>
#include <QDBusVariant>
#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QFileInfo>

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace {

const QString s_name = u"org.example.brenvale.SnapWorkbench"_s;
constexpr int s_stateLimit = 1000;  // ms; a program that is busy is asked again

QDomDocument parsed(const QString &path)
{
    QFile file(path);
    QDomDocument document;
    if (file.open(QIODevice::ReadOnly))
        document.setContent(&file);
    return document;
}

}  // namespace

SnapWorkbench::~SnapWorkbench() { QDBusConnection::disconnectFromBus(m_desktop.home()); }

QString SnapWorkbench::program() { return QStringLiteral(SNAP_PROGRAM); }

QString SnapWorkbench::shippedFile()
{
    return QFileInfo(program()).path() + u"/SnapWorkbench.xml"_s;
}

QString SnapWorkbench::dataFolder() const { return m_desktop.home() + u"/data/SnapWorkbench"_s; }

void SnapWorkbench::writeSettings(const QMap<QString, QString> &settings) const
{
    QDomDocument document = parsed(shippedFile());
    QDomElement config = document.documentElement().firstChildElement(u"Config"_s);
    for (auto it = settings.cbegin(); it != settings.cend(); ++it) {
        QDomElement element = config.firstChildElement(it.key());
        if (element.isNull())
            element = config.appendChild(document.createElement(it.key())).toElement();
        element.setAttribute(u"data"_s, it.value());
    }
    QDir().mkpath(dataFolder());
    QFile file(resourceFile());
    if (file.open(QIODevice::WriteOnly))
        file.write(document.toByteArray(1));
}

QString SnapWorkbench::setting(const QString &key, const QString &path) const
{
    return parsed(path.isEmpty() ? resourceFile() : path)
        .documentElement()
        .firstChildElement(u"Config"_s)
        .firstChildElement(key)
        .attribute(u"data"_s);
}

QProcess *SnapWorkbench::start(const QMap<QString, QString> &variables)
{
    QProcessEnvironment environment = m_desktop.environment();
    for (auto it = variables.cbegin(); it != variables.cend(); ++it)
        environment.insert(it.key(), it.value());
    m_process = m_desktop.start(program(), {}, environment);
    return m_process;
}

bool SnapWorkbench::startAndWait(const QMap<QString, QString> &variables)
{
    return start(variables) && waitForTitle(u"Snap Workbench"_s);
}

bool SnapWorkbench::waitForTitle(const QString &title, int limit)
{
    return waitFor(
        [&] {
            const QList<TestDesktop::Window> windows = m_desktop.windows();
            return std::any_of(
                windows.begin(), windows.end(),
                [&](const TestDesktop::Window &window) { return window.title == title; });
        },
        limit);
}

bool SnapWorkbench::confirm(const QString &title)
{
    for (int press = 0; press < 10; ++press) {
        m_desktop.key(XK_Return);
        if (waitForTitle(title, 2000))
            return true;
    }
    return false;
}

TestDesktop::Window SnapWorkbench::mainWindow()
{
    for (const TestDesktop::Window &window : m_desktop.windows()) {
        if (window.title.endsWith(u"Snap Workbench"_s))
            return window;
    }
    return {};
}

bool SnapWorkbench::quit()
{
    m_desktop.closeWindow(mainWindow());
    return waitFor([&] { return m_process->state() == QProcess::NotRunning; });
}

QDBusMessage SnapWorkbench::call(const QString &interface, const QString &method,
                                 const QVariantList &arguments, int limit)
{
    const QString address = m_desktop.environment().value(u"DBUS_SESSION_BUS_ADDRESS"_s);
    QDBusMessage message = QDBusMessage::createMethodCall(
        s_name, u"/org/example/brenvale/SnapWorkbench"_s, interface, method);
    message.setArguments(arguments);
    return QDBusConnection::connectToBus(address, m_desktop.home())
        .call(message, QDBus::Block, limit);
}

QString SnapWorkbench::grabState()
{
    const QDBusMessage answer = call(u"org.freedesktop.DBus.Properties"_s, u"Get"_s,
                                     {s_name, u"GrabState"_s}, s_stateLimit);
    return answer.arguments().value(0).value<QDBusVariant>().variant().toString();
}

bool SnapWorkbench::waitForState(const QString &state, int limit)
{
    return waitFor([&] { return grabState() == state; }, limit);
}

bool SnapWorkbench::hasOverlay(const QRect &area)
{
    const QList<TestDesktop::Window> windows = m_desktop.windows();
    return std::any_of(windows.begin(), windows.end(), [&](const TestDesktop::Window &window) {
        return window.viewable && window.overrideRedirect && window.area.contains(area);
    });
}

bool SnapWorkbench::openOverlay(const QRect &area, xcb_keysym_t hotKey)
{
    const bool isIdle = waitForState(u"Idle"_s);
    m_desktop.key(hotKey, {XK_Control_L, XK_Alt_L});
    return isIdle && waitForState(u"Marking"_s) && hasOverlay(area);
}

QImage SnapWorkbench::saveAs(const QString &path)
{
    if (!waitForState(u"Idle"_s))
        return {};
    const QList<TestDesktop::Window> before = m_desktop.windows();
    m_desktop.key(XK_s, {XK_Control_L});
    const TestDesktop::Window dialog = m_desktop.waitForNewWindow(before);
    if (dialog.id == XCB_NONE || !m_desktop.waitForFocus(dialog))
        return {};
    m_desktop.type(path);
    // The tab tells that the file is complete.
    if (!confirm(QFileInfo(path).fileName() + u" - Snap Workbench"_s))
        return {};
    return QImage(path).convertToFormat(QImage::Format_RGB32);
}
