#include "snapworkbench.h"

#include <QFileInfo>

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace {

const QString s_title = u"Snap Workbench"_s;
}  // namespace

bool SnapWorkbench::startAndWait(const QMap<QString, QString> &variables)
{
    return start(variables) && waitForTitle(s_title);
}

bool SnapWorkbench::waitForTitle(const QString &title, int limit)
{
    const auto isIt = [&](const TestDesktop::Window &window) { return window.title == title; };
    return waitFor([&] { return m_desktop.find(isIt).id != XCB_NONE; }, limit);
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
    return m_desktop.find([](const auto &window) { return window.title.endsWith(s_title); });
}

bool SnapWorkbench::quit()
{
    m_desktop.closeWindow(mainWindow());
    return waitFor([&] { return process()->state() == QProcess::NotRunning; });
}

bool SnapWorkbench::hasOverlay(const QRect &area)
{
    return m_desktop
               .find([&](const TestDesktop::Window &window) {
                   return window.viewable && window.overrideRedirect && window.area.contains(area);
               })
               .id != XCB_NONE;
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

const QStringList DesktopTest::s_plain{u"xfwm4"_s, u"--compositor=off"_s};
const QStringList DesktopTest::s_openbox{u"openbox"_s};
const QStringList DesktopTest::s_picom{u"picom"_s, u"--backend"_s, u"xrender"_s, u"--config"_s,
                                       u"/dev/null"_s};
const QList<QStringList> DesktopTest::s_twoMonitors{
    {u"L"_s, u"800/250x1000/300+0+0"_s, u"screen"_s},
    {u"R"_s, u"800/250x1000/300+800+0"_s, u"none"_s}};
const QRect DesktopTest::s_screen(0, 0, 1600, 1000);
const QList<xcb_keysym_t> DesktopTest::s_hotKey{XK_Control_L, XK_Alt_L};

bool DesktopTest::begin(const DesktopStart &start)
{
    finish();
    if (start.row)
        qInfo("%s", start.row);
    m_desktop = std::make_unique<TestDesktop>(start.desktop);
    m_program = std::make_unique<SnapWorkbench>(*m_desktop);
    m_program->writeSettings(start.settings, start.pictures);
    return m_desktop->isReady() && m_program->startAndWait(start.variables);
}

void DesktopTest::finish()
{
    m_program.reset();
    m_desktop.reset();
}

bool DesktopTest::isTitled(const QString &name)
{
    return m_program->waitForTitle(name + u" - Snap Workbench"_s);
}

bool DesktopTest::grab(const QString &name)
{
    hotKey(XK_s);
    return isTitled(name) && waitFor([&] { return m_desktop->activeTitle().startsWith(name); });
}

bool DesktopTest::isDimmed(QRgb shown, QRgb colour)
{
    return qAbs(qRed(shown) - qRed(colour) * 0.4) < 3 &&
           qAbs(qGreen(shown) - qGreen(colour) * 0.4) < 3 &&
           qAbs(qBlue(shown) - qBlue(colour) * 0.4) < 3;
}

bool DesktopTest::isLit(QRgb shown, QRgb colour)
{
    return qAbs(qRed(shown) - qRed(colour) * 0.4 - 153) < 3 &&
           qAbs(qGreen(shown) - qGreen(colour) * 0.4 - 153) < 3;
}

QByteArray DesktopTest::xclip(const QStringList &arguments, const QByteArray &input)
{
    QProcess process;
    process.setProcessEnvironment(m_desktop->environment());
    process.start(u"xclip"_s, QStringList{u"-selection"_s, u"clipboard"_s} + arguments);
    process.write(input);
    process.closeWriteChannel();
    // One that copies leaves a process behind that holds the output open.
    return process.waitForFinished() && input.isEmpty() ? process.readAll() : QByteArray();
}

bool DesktopTest::openDialog(xcb_keysym_t keysym, const QList<xcb_keysym_t> &modifiers)
{
    const QList<TestDesktop::Window> before = m_desktop->windows();
    m_desktop->key(keysym, modifiers);
    return hasDialog(before);
}

bool DesktopTest::hasDialog(const QList<TestDesktop::Window> &before)
{
    m_dialog = m_desktop->waitForNewWindow(before);
    return m_dialog.id != XCB_NONE && m_desktop->waitForFocus(m_dialog);
}

// A list of completions, or a window manager that still looks after the window before, may take the
// first press for itself.
bool DesktopTest::dismiss(xcb_keysym_t keysym)
{
    const auto isThere = [this](const TestDesktop::Window &window) {
        return window.id == m_dialog.id && window.viewable;
    };
    const auto isGone = [&] { return m_desktop->find(isThere).id == XCB_NONE; };
    for (int press = 0; press < 20; ++press) {
        m_desktop->key(keysym);
        if (waitFor(isGone, 1000))
            return true;
    }
    return false;
}

void DesktopTest::discard()
{
    // From "Cancel" to the button before it.
    m_desktop->key(XK_Left);
    m_desktop->key(XK_space);
}

bool DesktopTest::hasEnded()
{
    const QProcess *process = m_program->process();
    return waitFor([&] { return process->state() == QProcess::NotRunning; }) &&
           process->exitStatus() == QProcess::NormalExit;
}

QList<QRect> DesktopTest::unmanaged()
{
    QList<QRect> result;
    for (const TestDesktop::Window &window : m_desktop->windows()) {
        // Window managers have such windows too, out of sight.
        if (window.viewable && window.overrideRedirect && window.area.intersects(s_screen) &&
            window.area.width() > 1)
            result.append(window.area);
    }
    return result;
}

bool DesktopTest::findPicture(QRgb ground)
{
    m_window = m_program->mainWindow().area;
    m_origin = m_window.center();
    const QPoint frame(m_window.left() + 2, m_origin.y());
    if (!waitFor([&] {
            return m_desktop->pixel(frame) == qRgb(35, 40, 45) &&
                   m_desktop->pixel(m_origin) == ground;
        }))
        return false;
    const QImage screen = m_desktop->screenshot();
    while (screen.pixel(m_origin - QPoint(1, 0)) == ground)
        m_origin.rx() -= 1;
    while (screen.pixel(m_origin - QPoint(0, 1)) == ground)
        m_origin.ry() -= 1;
    return m_window.contains(m_origin);
}

void DesktopTest::pressButton(int x, qreal scale)
{
    constexpr int height = 54;  // of their middle above the window's bottom
    m_desktop->click(m_window.bottomLeft() + (QPointF(x, -height) * scale).toPoint());
}
