#include "kwindesktop.h"

#include "pattern.h"
#include "platform/wayland/kwinscript.h"
#include "platform/wayland/kwinshot.h"
#include "snapprogram.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLibraryInfo>
#include <QStandardPaths>

#include <algorithm>
#include <cstring>

#include <fake-input.h>
#include <linux/input-event-codes.h>
#include <wayland-client.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_pictureLimit = 5000;  // ms
constexpr uint32_t s_inputVersion = 4;

constexpr const char *s_list = R"(
var all = workspace.stackingOrder || workspace.clientList();
var told = [];
for (var i = 0; i < all.length; ++i) {
    var area = all[i].frameGeometry;
    told.push({title: all[i].caption, pid: all[i].pid, active: all[i].active, full: all[i].fullScreen,
               area: [area.x, area.y, area.width, area.height]});
}
tell(JSON.stringify(told));
)";

constexpr const char *s_change = R"(
var all = workspace.stackingOrder || workspace.clientList();
for (var i = 0; i < all.length; ++i) {
    var w = all[i];
    if (w.caption === "%1") { %2 }
}
tell("done");
)";

}  // namespace

QString KWinDesktop::lack()
{
    if (QStandardPaths::findExecutable(u"kwin_wayland"_s).isEmpty())
        return u"KWin is not installed"_s;
    if (!QFile::exists(QLibraryInfo::path(QLibraryInfo::PluginsPath) +
                       u"/platforms/libqwayland-generic.so"_s))
        return u"the toolkit's plug-in for Wayland, qt6-wayland, is not installed"_s;
    const KWinDesktop trial{Options()};
    if (!trial.isReady())
        return u"KWin does not come up: "_s + trial.said();
    // From version 6 on it has none without a graphics card.
    return trial.picture().isNull() ? u"KWin gives no pictures"_s : QString();
}

KWinDesktop::KWinDesktop(const Options &options) : m_scale(options.scale)
{
    m_ready = startBus() && startKWin(options) && connectInput();
}

KWinDesktop::~KWinDesktop()
{
    if (m_display)
        wl_display_disconnect(m_display);
    m_script.reset();
    QDBusConnection::disconnectFromBus(m_busName);
}

// KWin looks for the entry of who asks by the program's path.
void KWinDesktop::writeEntry(const QString &name, const QString &program) const
{
    const QDir folder(home() + u"/data/applications"_s);
    folder.mkpath(u"."_s);
    QFile entry(folder.filePath(name + u".desktop"_s));
    if (entry.open(QIODevice::WriteOnly))
        entry.write(u"[Desktop Entry]\nType=Application\nName=%1\nExec=%2\n"
                    "X-KDE-DBUS-Restricted-Interfaces=org.kde.KWin.ScreenShot2\n"
                    "X-KDE-Wayland-Interfaces=org_kde_kwin_fake_input\n"_s.arg(name, program)
                        .toUtf8());
}

void KWinDesktop::allowProgram() const
{
    writeEntry(u"program"_s, QFileInfo(SnapProgram::program()).canonicalFilePath());
}

// Run from a copy: the installed one has a capability that not every machine grants.
bool KWinDesktop::startKWin(const Options &options)
{
    writeEntry(u"test"_s, QCoreApplication::applicationFilePath());
    if (options.isProgramKnown)
        allowProgram();
    const QString program = home() + u"/kwin_wayland"_s;
    QFile::copy(QStandardPaths::findExecutable(u"kwin_wayland"_s), program);
    const QString socket = u"wayland-test"_s;
    m_environment.insert(u"XDG_RUNTIME_DIR"_s, home());
    m_environment.insert(u"XDG_SESSION_TYPE"_s, u"wayland"_s);
    m_environment.insert(u"XDG_CURRENT_DESKTOP"_s, u"KDE"_s);
    QProcessEnvironment environment = m_environment;
    environment.insert(u"KWIN_COMPOSE"_s, u"O2"_s);
    m_kwin = start(program,
                   {u"--virtual"_s, u"--no-lockscreen"_s, u"--width"_s, u"1200"_s, u"--height"_s,
                    u"800"_s, u"--scale"_s, QString::number(options.scale), u"--output-count"_s,
                    QString::number(options.outputs), u"--socket"_s, socket},
                   environment, home() + u"/kwin-said"_s);
    m_environment.insert(u"WAYLAND_DISPLAY"_s, socket);
    // What the test has to do with KWin goes through it, too.
    m_busName = home();
    QDBusConnection::connectToBus(m_environment.value(u"DBUS_SESSION_BUS_ADDRESS"_s), m_busName);
    qputenv("XDG_RUNTIME_DIR", home().toLocal8Bit());
    waitFor([&] {
        return !m_kwin || m_kwin->state() == QProcess::NotRunning ||
               bus().interface()->isServiceRegistered(u"org.kde.KWin"_s);
    });
    m_script = std::make_unique<KWinScript>(bus());
    return m_kwin && waitFor([&] {
               return m_kwin->state() == QProcess::NotRunning || !ask(u"tell(\"up\")"_s).isEmpty();
           }) &&
           m_kwin->state() == QProcess::Running;
}

QString KWinDesktop::said() const
{
    QFile file(home() + u"/kwin-said"_s);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

bool KWinDesktop::connectInput()
{
    static const wl_registry_listener s_listener{
        .global =
            [](void *data, wl_registry *registry, uint32_t number, const char *interface,
               uint32_t) {
                const wl_interface &wanted = org_kde_kwin_fake_input_interface;
                if (std::strcmp(interface, wanted.name) == 0)
                    static_cast<KWinDesktop *>(data)->m_input =
                        static_cast<org_kde_kwin_fake_input *>(
                            wl_registry_bind(registry, number, &wanted, s_inputVersion));
            },
        .global_remove = [](auto...) {}};
    const QString socket = home() + u"/wayland-test"_s;
    m_display = wl_display_connect(QFile::encodeName(socket).constData());
    if (!m_display)
        return false;
    wl_registry_add_listener(wl_display_get_registry(m_display), &s_listener, this);
    sync();
    if (!m_input)
        return false;
    org_kde_kwin_fake_input_authenticate(m_input, "test", "test");
    sync();
    return true;
}

void KWinDesktop::sync() { wl_display_roundtrip(m_display); }

QString KWinDesktop::ask(const QString &script)
{
    QString told;
    bool isDone = false;
    m_script->run(script, [&](const QString &text) {
        told = text;
        isDone = true;
    });
    waitFor([&] { return isDone; });
    return told;
}

QList<KWinDesktop::Window> KWinDesktop::windows()
{
    QList<Window> result;
    const QJsonArray list =
        QJsonDocument::fromJson(ask(QString::fromLatin1(s_list)).toUtf8()).array();
    for (const auto &one : list) {
        const QJsonValue area = one["area"_L1];
        result.append({.title = one["title"_L1].toString(),
                       .pid = one["pid"_L1].toInteger(),
                       .area = {area[0].toInt(), area[1].toInt(), area[2].toInt(), area[3].toInt()},
                       .isActive = one["active"_L1].toBool(),
                       .isFullscreen = one["full"_L1].toBool()});
    }
    return result;
}

bool KWinDesktop::has(const std::function<bool(const Window &)> &isIt)
{
    const QList<Window> all = windows();
    return std::any_of(all.begin(), all.end(), isIt);
}

bool KWinDesktop::isActive(const QString &title)
{
    return has([&](const Window &window) { return window.isActive && window.title == title; });
}

bool KWinDesktop::activate(const QString &title)
{
    const QString change =
        QString::fromLatin1(s_change).arg(title, u"workspace.activeClient = w;"_s);
    return waitFor([&] { return !ask(change).isEmpty() && isActive(title); });
}

QProcess *KWinDesktop::startAt(const QString &program, const QString &title,
                               const QStringList &arguments, const QRect &area)
{
    QProcess *process = start(
        program,
        QStringList{u"0"_s, u"0"_s, QString::number(area.width()), QString::number(area.height())} +
            arguments,
        m_environment);
    const auto isAt = [&](const QRect &place) {
        return has([&](const Window &window) {
            return window.pid == process->processId() && (place.isNull() || window.area == place);
        });
    };
    if (!process || !waitFor([&] { return isAt({}); }))
        return nullptr;
    const QString place =
        u"if (w.pid === %1) { w.frameGeometry = {x: %2, y: %3, width: %4, height: %5};"
        "workspace.activeClient = w; }"_s.arg(process->processId())
            .arg(area.x())
            .arg(area.y())
            .arg(area.width())
            .arg(area.height());
    const QString change = QString::fromLatin1(s_change).arg(title, place);
    return waitFor([&] { return !ask(change).isEmpty() && isAt(area) && isActive(title); })
               ? process
               : nullptr;
}

// On the first output.
QProcess *KWinDesktop::startPattern(const QRect &area)
{
    QProcess *process = startAt(QStringLiteral(SNAP_PATTERN), u"pattern"_s, {}, area);
    const QRect pixels(area.topLeft() * m_scale, area.size() * m_scale);
    return process && waitFor([&] { return picture().copy(pixels) == pattern(pixels.size()); })
               ? process
               : nullptr;
}

QProcess *KWinDesktop::startLong(const QRect &area, int rows)
{
    return startAt(QStringLiteral(SNAP_LONG_WINDOW), u"long"_s, {QString::number(rows)}, area);
}

void KWinDesktop::movePointer(QPointF to)
{
    org_kde_kwin_fake_input_pointer_motion_absolute(m_input, wl_fixed_from_double(to.x()),
                                                    wl_fixed_from_double(to.y()));
    sync();
}

void KWinDesktop::sendButton(bool isDown)
{
    org_kde_kwin_fake_input_button(m_input, BTN_LEFT, isDown);
    sync();
}

void KWinDesktop::click(QPointF at)
{
    movePointer(at);
    press();
    release();
}

bool KWinDesktop::drag(QPointF from, QPointF to, const std::function<bool()> &arrived)
{
    return dragOn(*this, from, to, arrived);
}

void KWinDesktop::key(uint32_t code, const QList<uint32_t> &modifiers)
{
    for (const uint32_t modifier : modifiers)
        org_kde_kwin_fake_input_keyboard_key(m_input, modifier, 1);
    org_kde_kwin_fake_input_keyboard_key(m_input, code, 1);
    org_kde_kwin_fake_input_keyboard_key(m_input, code, 0);
    for (const uint32_t modifier : modifiers)
        org_kde_kwin_fake_input_keyboard_key(m_input, modifier, 0);
    sync();
}

QImage KWinDesktop::picture(const QString &output) const
{
    const std::unique_ptr<KWinShot> shot = KWinShot::ofScreen(bus(), output, false, s_pictureLimit);
    shot->wait();
    return shot->picture().convertToFormat(QImage::Format_RGB32);
}
