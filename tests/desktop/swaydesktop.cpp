#include "swaydesktop.h"

#include "pattern.h"
#include "snapprogram.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QLibraryInfo>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QTransform>

#include <algorithm>
#include <array>
#include <cmath>

#include <linux/input-event-codes.h>
#include <poll.h>
#include <sys/mman.h>
#include <unistd.h>
#include <virtual-keyboard-unstable-v1.h>
#include <wayland-client.h>
#include <wlr-screencopy-unstable-v1.h>
#include <wlr-virtual-pointer-unstable-v1.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_limit = 20000;  // ms
// Numbers of sway's messages.
constexpr quint32 s_runCommand = 0;
constexpr quint32 s_getOutputs = 3;
constexpr quint32 s_getTree = 4;
const QPoint s_nowhere(1000000, 1000000);  // where the pointer covers nothing
const QByteArray s_magic("i3-ipc");
const QString s_config = uR"(xwayland disable
mouse_warping none
default_border none
default_floating_border none
for_window [title="^(pattern|long)$"] floating enable
)"_s;

uint32_t now() { return static_cast<uint32_t>(QDateTime::currentMSecsSinceEpoch()); }

QRect rectOf(const QJsonValue &value)
{
    return {value[u"x"].toInt(), value[u"y"].toInt(), value[u"width"].toInt(),
            value[u"height"].toInt()};
}

// Memory to be shared with the compositor.
bool openShared(QFile &file)
{
    return file.open(memfd_create("shared", MFD_CLOEXEC), QIODevice::ReadWrite,
                     QFile::AutoCloseHandle);
}

void collect(const QJsonValue &node, QList<SwayDesktop::Window> &result)
{
    if (node[u"pid"].isDouble())
        result.append({.id = node[u"id"].toInt(),
                       .pid = node[u"pid"].toInteger(),
                       .title = node[u"name"].toString(),
                       .area = rectOf(node[u"rect"]),
                       .focused = node[u"focused"].toBool(),
                       .visible = node[u"visible"].toBool(),
                       .fullscreen = node[u"fullscreen_mode"].toInt() != 0});
    for (const auto &kind : {u"nodes"_s, u"floating_nodes"_s}) {
        const QJsonArray children = node[kind].toArray();
        for (const auto &child : children)
            collect(child, result);
    }
}

// Whether a picture shows the pattern painted at `painted` pixels, pixel for pixel or, where the
// compositor made it smaller, by the colours that tell the place.
bool showsPattern(const QImage &shown, const QSize &painted)
{
    const QImage expected = pattern(painted);
    if (painted == shown.size())
        return shown == expected;
    const qreal ratio = qreal(painted.width()) / shown.width();
    const auto isNear = [ratio](int colour, int place) {
        constexpr int edge = 4;  // where the colours begin anew, neighbours blend
        const int told = int((place + 0.5) * ratio) & 0xff;
        return told < edge || told > 0xff - edge || qAbs(colour - told) <= 1;
    };
    for (int y = 0; y < shown.height(); ++y) {
        for (int x = 0; x < shown.width(); ++x) {
            const QRgb pixel = shown.pixel(x, y);
            if (!isNear(qRed(pixel), x) || !isNear(qGreen(pixel), y))
                return false;
        }
    }
    return true;
}

}  // namespace

QString SwayDesktop::lack()
{
    becomePlainUser({QFileInfo(SnapProgram::program()).path() + u"/."_s,
                     QStringLiteral(SNAP_PATTERN), QStringLiteral(SNAP_LONG_WINDOW)});
    if (QStandardPaths::findExecutable(u"sway"_s).isEmpty())
        return u"sway is not installed"_s;
    if (!QFile::exists(QLibraryInfo::path(QLibraryInfo::PluginsPath) +
                       u"/platforms/libqwayland-generic.so"_s))
        return u"the toolkit's plug-in for Wayland, qt6-wayland, is not installed"_s;
    const SwayDesktop trial(QList<Output>(1));
    return trial.isReady() ? QString() : u"sway does not come up: "_s + trial.said();
}

SwayDesktop::SwayDesktop(const QList<Output> &outputs, const QString &config)
{
    m_ready = startBus() && startSway(outputs, config) && connectDevices();
}

SwayDesktop::~SwayDesktop()
{
    if (m_display)
        wl_display_disconnect(m_display);
}

bool SwayDesktop::startSway(const QList<Output> &outputs, const QString &config)
{
    // Whose folder no one else may enter already.
    const QDir folder(home());
    m_environment.insert(u"XDG_RUNTIME_DIR"_s, folder.path());
    m_environment.insert(u"SWAYSOCK"_s, folder.filePath(u"sway"_s));
    m_environment.insert(u"XDG_SESSION_TYPE"_s, u"wayland"_s);
    m_environment.insert(u"XDG_CURRENT_DESKTOP"_s, u"sway"_s);

    QString text = s_config + config + u'\n';
    for (qsizetype i = 0; i < outputs.size(); ++i) {
        const Output &output = outputs[i];
        text += u"output HEADLESS-%1 mode %2x%3 position %4 %5 scale %6 transform %7\n"_s.arg(i + 1)
                    .arg(output.mode.width())
                    .arg(output.mode.height())
                    .arg(output.position.x())
                    .arg(output.position.y())
                    .arg(output.scale)
                    .arg(output.transform);
    }
    QFile file(folder.filePath(u"sway-config"_s));
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write(text.toUtf8());
    file.close();
    QProcessEnvironment environment = m_environment;
    environment.insert(u"WLR_BACKENDS"_s, u"headless"_s);
    environment.insert(u"WLR_RENDERER"_s, u"pixman"_s);
    environment.insert(u"WLR_LIBINPUT_NO_DEVICES"_s, u"1"_s);
    environment.insert(u"WLR_HEADLESS_OUTPUTS"_s, QString::number(outputs.size()));
    // It hands out old pictures of a screen that it leaves to one window.
    m_sway = start(u"sway"_s, {u"-Dnoscanout"_s, u"-c"_s, file.fileName()}, environment,
                   folder.filePath(u"sway-said"_s));
    const auto sockets = [&] { return folder.entryList({u"wayland-?"_s}, QDir::System); };
    const auto isUp = [&] {
        return !sockets().isEmpty() && ask(s_getOutputs).array().size() == outputs.size();
    };
    waitFor([&] { return !m_sway || m_sway->state() == QProcess::NotRunning || isUp(); });
    m_environment.insert(u"WAYLAND_DISPLAY"_s, sockets().value(0));
    return isUp();
}

QString SwayDesktop::said() const
{
    QFile file(home() + u"/sway-said"_s);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

bool SwayDesktop::connectDevices()
{
    const QString socket = home() + u'/' + m_environment.value(u"WAYLAND_DISPLAY"_s);
    m_display = wl_display_connect(QFile::encodeName(socket).constData());
    if (!m_display)
        return false;
    static const wl_output_listener s_outputListener{
        .geometry = [](void *data, auto, auto, auto, auto, auto, auto, auto, auto,
                       int32_t transform) { static_cast<Screen *>(data)->transform = transform; },
        .mode = [](auto...) {},
        .done = [](auto...) {},
        .scale = [](auto...) {},
        .name =
            [](void *data, auto, const char *name) {
                static_cast<Screen *>(data)->name = QString::fromUtf8(name);
            },
        .description = [](auto...) {},
    };
    static const wl_registry_listener s_registryListener{
        .global =
            [](void *data, wl_registry *registry, uint32_t number, const char *interface,
               uint32_t) {
                auto *self = static_cast<SwayDesktop *>(data);
                const auto bind = [&]<typename T>(T *&member, const wl_interface &wanted,
                                                  uint32_t version) {
                    if (qstrcmp(interface, wanted.name) == 0)
                        member =
                            static_cast<T *>(wl_registry_bind(registry, number, &wanted, version));
                };
                bind(self->m_seat, wl_seat_interface, 1);
                bind(self->m_shm, wl_shm_interface, 1);
                bind(self->m_screencopy, zwlr_screencopy_manager_v1_interface, 1);
                bind(self->m_pointers, zwlr_virtual_pointer_manager_v1_interface, 1);
                bind(self->m_keyboards, zwp_virtual_keyboard_manager_v1_interface, 1);
                wl_output *output = nullptr;
                bind(output, wl_output_interface, WL_OUTPUT_NAME_SINCE_VERSION);
                if (!output)
                    return;
                self->m_screens.push_back(
                    std::make_unique<Screen>(Screen{.number = number, .output = output}));
                wl_output_add_listener(output, &s_outputListener, self->m_screens.back().get());
            },
        .global_remove =
            [](void *data, wl_registry *, uint32_t number) {
                std::erase_if(static_cast<SwayDesktop *>(data)->m_screens, [&](const auto &screen) {
                    if (screen->number == number)
                        wl_output_destroy(screen->output);
                    return screen->number == number;
                });
            },
    };
    wl_registry_add_listener(wl_display_get_registry(m_display), &s_registryListener, this);
    if (!roundTrip() || !m_seat || !m_shm || !m_screencopy || !m_pointers || !m_keyboards)
        return false;
    m_pointer = zwlr_virtual_pointer_manager_v1_create_virtual_pointer(m_pointers, m_seat);
    movePointer(s_nowhere);
    return makeKeyboard() && roundTrip();
}

bool SwayDesktop::makeKeyboard()
{
    const std::unique_ptr<xkb_context, decltype(&xkb_context_unref)> context(
        xkb_context_new(XKB_CONTEXT_NO_FLAGS), &xkb_context_unref);
    const xkb_rule_names names{
        .rules = {}, .model = {}, .layout = "us", .variant = {}, .options = {}};
    m_keymap.reset(xkb_keymap_new_from_names(context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS));
    if (!m_keymap)
        return false;
    m_keys.reset(xkb_state_new(m_keymap.get()));
    m_keyboard = zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(m_keyboards, m_seat);
    const std::unique_ptr<char, decltype(&free)> text(
        xkb_keymap_get_as_string(m_keymap.get(), XKB_KEYMAP_FORMAT_TEXT_V1), &free);
    const qint64 size = qint64(strlen(text.get())) + 1;
    QFile file;
    if (!openShared(file) || file.write(text.get(), size) != size || !file.flush())
        return false;
    zwp_virtual_keyboard_v1_keymap(m_keyboard, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file.handle(),
                                   uint32_t(size));
    return true;
}

bool SwayDesktop::listenUntil(const std::function<bool()> &isDone)
{
    const QDeadlineTimer deadline(s_limit);
    while (!isDone()) {
        if (wl_display_prepare_read(m_display) != 0) {
            if (wl_display_dispatch_pending(m_display) < 0)
                return false;
            continue;
        }
        wl_display_flush(m_display);
        pollfd waiting{.fd = wl_display_get_fd(m_display), .events = POLLIN, .revents = 0};
        if (poll(&waiting, 1, int(deadline.remainingTime())) <= 0) {
            wl_display_cancel_read(m_display);
            return false;
        }
        if (wl_display_read_events(m_display) < 0)
            return false;
    }
    return true;
}

bool SwayDesktop::roundTrip()
{
    static const wl_callback_listener s_listener{
        .done = [](void *data, wl_callback *, uint32_t) { *static_cast<bool *>(data) = true; }};
    bool isDone = false;
    wl_callback *callback = wl_display_sync(m_display);
    wl_callback_add_listener(callback, &s_listener, &isDone);
    listenUntil([&] { return isDone; });
    wl_callback_destroy(callback);
    return isDone;
}

QJsonDocument SwayDesktop::ask(quint32 type, const QByteArray &text) const
{
    QLocalSocket socket;
    socket.connectToServer(m_environment.value(u"SWAYSOCK"_s));
    const auto size = static_cast<quint32>(text.size());
    QByteArray message = s_magic;
    for (const quint32 number : {size, type})
        message.append(reinterpret_cast<const char *>(&number), sizeof number);
    socket.write(message + text);
    // The answer has a head of the same form, with the size of what follows.
    const auto has = [&](qint64 bytes) {
        while (socket.bytesAvailable() < bytes && socket.waitForReadyRead(s_limit)) {
        }
        return socket.bytesAvailable() >= bytes;
    };
    quint32 rest = 0;
    if (!has(message.size()))
        return {};
    socket.skip(s_magic.size());
    socket.read(reinterpret_cast<char *>(&rest), sizeof rest);
    socket.skip(sizeof type);
    return has(rest) ? QJsonDocument::fromJson(socket.read(rest)) : QJsonDocument();
}

bool SwayDesktop::command(const QString &text) const
{
    const QJsonArray answers = ask(s_runCommand, text.toUtf8()).array();
    return !answers.isEmpty() &&
           std::all_of(answers.begin(), answers.end(),
                       [](const QJsonValue &answer) { return answer[u"success"].toBool(); });
}

QRect SwayDesktop::area(const QString &output) const
{
    const QJsonArray outputs = ask(s_getOutputs).array();
    for (const auto &one : outputs) {
        if (one[u"name"].toString() == output && one[u"active"].toBool())
            return rectOf(one[u"rect"]);
    }
    return {};
}

QList<SwayDesktop::Window> SwayDesktop::windows() const
{
    QList<Window> result;
    collect(ask(s_getTree).object(), result);
    return result;
}

SwayDesktop::Window SwayDesktop::find(const std::function<bool(const Window &)> &isIt) const
{
    const QList<Window> all = windows();
    const auto found = std::find_if(all.begin(), all.end(), isIt);
    return found == all.end() ? Window() : *found;
}

SwayDesktop::Window SwayDesktop::focused() const
{
    return find([](const Window &window) { return window.focused; });
}

QProcess *SwayDesktop::startAt(const QString &program, const QStringList &arguments,
                               const QRect &area)
{
    QProcess *process = start(
        built(program),
        QStringList{u"0"_s, u"0"_s, QString::number(area.width()), QString::number(area.height())} +
            arguments,
        m_environment);
    if (!process)
        return nullptr;
    const auto window = [&] {
        return find([&](const Window &other) { return other.pid == process->processId(); });
    };
    const auto place = [&] {
        return command(
            u"[con_id=%1] floating enable, resize set %2 px %3 px, move absolute position %4 px %5 px"_s
                .arg(window().id)
                .arg(area.width())
                .arg(area.height())
                .arg(area.x())
                .arg(area.y()));
    };
    return waitFor([&] { return window().id != 0; }) && place() &&
                   waitFor([&] { return window().area == area; })
               ? process
               : nullptr;
}

QProcess *SwayDesktop::startPattern(const QRect &area)
{
    QProcess *process = startAt(QStringLiteral(SNAP_PATTERN), {}, area);
    const auto isPainted = [&] {
        return std::any_of(m_screens.begin(), m_screens.end(), [&](const auto &screen) {
            const QRect place = this->area(screen->name);
            const QImage shown = picture(screen->name);
            const qreal scale = qreal(shown.width()) / place.width();
            const QRect pixels =
                QTransform::fromScale(scale, scale).mapRect(area.translated(-place.topLeft()));
            // Some toolkits know whole scales only, and paint more for the others.
            return place.contains(area) &&
                   (showsPattern(shown.copy(pixels), pixels.size()) ||
                    showsPattern(shown.copy(pixels), area.size() * std::ceil(scale)));
        });
    };
    return process && waitFor(isPainted) ? process : nullptr;
}

QProcess *SwayDesktop::startLong(const QRect &area, int rows)
{
    return startAt(QStringLiteral(SNAP_LONG_WINDOW), {QString::number(rows)}, area);
}

void SwayDesktop::movePointer(QPointF to)
{
    QRect layout;
    const QJsonArray outputs = ask(s_getOutputs).array();
    for (const auto &output : outputs)
        layout |= rectOf(output[u"rect"]);
    constexpr int finer = 100;
    const QSize box = layout.size() * finer;
    const QPoint at = ((to - layout.topLeft()) * finer).toPoint();
    zwlr_virtual_pointer_v1_motion_absolute(
        m_pointer, now(), uint32_t(std::min(at.x(), box.width())),
        uint32_t(std::min(at.y(), box.height())), uint32_t(box.width()), uint32_t(box.height()));
    zwlr_virtual_pointer_v1_frame(m_pointer);
    roundTrip();
}

void SwayDesktop::sendButton(int button, bool isDown)
{
    constexpr std::array<uint32_t, 4> codes{0, BTN_LEFT, BTN_MIDDLE, BTN_RIGHT};
    zwlr_virtual_pointer_v1_button(m_pointer, now(), codes.at(size_t(button)), isDown);
    zwlr_virtual_pointer_v1_frame(m_pointer);
    roundTrip();
}

void SwayDesktop::click(QPointF at, int button)
{
    movePointer(at);
    press(button);
    release(button);
}

bool SwayDesktop::drag(QPointF from, QPointF to, const std::function<bool()> &arrived)
{
    return dragOn(*this, from, to, arrived);
}

void SwayDesktop::wheel(int clicks)
{
    constexpr int length = 15;  // of a click, as sway's own devices tell it
    const int step = clicks < 0 ? -1 : 1;
    for (int click = 0; click != clicks; click += step) {
        zwlr_virtual_pointer_v1_axis_source(m_pointer, WL_POINTER_AXIS_SOURCE_WHEEL);
        zwlr_virtual_pointer_v1_axis_discrete(m_pointer, now(), WL_POINTER_AXIS_VERTICAL_SCROLL,
                                              wl_fixed_from_int(step * length), step);
        zwlr_virtual_pointer_v1_frame(m_pointer);
        roundTrip();
    }
}

// sway tells programs of modifiers only what it is told, whatever keys are down.
void SwayDesktop::sendKey(xkb_keysym_t keysym, bool isDown)
{
    constexpr xkb_keycode_t firstKeycode = 8;  // what xkb adds to the kernel's numbers
    xkb_keycode_t code = xkb_keymap_max_keycode(m_keymap.get());
    const xkb_keysym_t *keysyms = nullptr;
    while (code > firstKeycode &&
           (xkb_keymap_key_get_syms_by_level(m_keymap.get(), code, 0, 0, &keysyms) != 1 ||
            *keysyms != keysym))
        --code;
    zwp_virtual_keyboard_v1_key(m_keyboard, now(), code - firstKeycode, isDown);
    xkb_state *keys = m_keys.get();
    xkb_state_update_key(keys, code, isDown ? XKB_KEY_DOWN : XKB_KEY_UP);
    zwp_virtual_keyboard_v1_modifiers(m_keyboard,
                                      xkb_state_serialize_mods(keys, XKB_STATE_MODS_DEPRESSED),
                                      xkb_state_serialize_mods(keys, XKB_STATE_MODS_LATCHED),
                                      xkb_state_serialize_mods(keys, XKB_STATE_MODS_LOCKED), 0);
    roundTrip();
}

void SwayDesktop::key(xkb_keysym_t keysym, const QList<xkb_keysym_t> &modifiers)
{
    for (const xkb_keysym_t modifier : modifiers)
        keyDown(modifier);
    keyDown(keysym);
    keyUp(keysym);
    for (const xkb_keysym_t modifier : modifiers)
        keyUp(modifier);
}

QImage SwayDesktop::picture(const QString &output)
{
    // An output that has come meanwhile tells its name in a second answer.
    roundTrip();
    roundTrip();
    const auto screen = std::find_if(m_screens.begin(), m_screens.end(),
                                     [&](const auto &one) { return one->name == output; });
    if (screen == m_screens.end())
        return {};
    struct Frame {
        QSize size{};
        int stride = 0;
        uint32_t format = 0;
        bool isUpsideDown = false;
        bool isReady = false;
        bool hasFailed = false;
    } frame;
    static const zwlr_screencopy_frame_v1_listener s_listener{
        .buffer =
            [](void *data, auto, uint32_t format, uint32_t width, uint32_t height,
               uint32_t stride) {
                *static_cast<Frame *>(data) = {.size = QSize(int(width), int(height)),
                                               .stride = int(stride),
                                               .format = format};
            },
        .flags =
            [](void *data, auto, uint32_t flags) {
                static_cast<Frame *>(data)->isUpsideDown =
                    (flags & ZWLR_SCREENCOPY_FRAME_V1_FLAGS_Y_INVERT) != 0;
            },
        .ready = [](void *data, auto...) { static_cast<Frame *>(data)->isReady = true; },
        .failed = [](void *data, auto...) { static_cast<Frame *>(data)->hasFailed = true; },
        .damage = [](auto...) {},
        .linux_dmabuf = [](auto...) {},
        .buffer_done = [](auto...) {},
    };
    constexpr int withoutPointer = 0;
    zwlr_screencopy_frame_v1 *copy =
        zwlr_screencopy_manager_v1_capture_output(m_screencopy, withoutPointer, (*screen)->output);
    zwlr_screencopy_frame_v1_add_listener(copy, &s_listener, &frame);
    QImage image;
    QFile memory;
    if (listenUntil([&] { return frame.hasFailed || frame.size.isValid(); }) && !frame.hasFailed &&
        openShared(memory)) {
        const int bytes = frame.stride * frame.size.height();
        memory.resize(bytes);
        wl_shm_pool *pool = wl_shm_create_pool(m_shm, memory.handle(), bytes);
        wl_buffer *buffer = wl_shm_pool_create_buffer(
            pool, 0, frame.size.width(), frame.size.height(), frame.stride, frame.format);
        zwlr_screencopy_frame_v1_copy(copy, buffer);
        if (listenUntil([&] { return frame.hasFailed || frame.isReady; }) && frame.isReady) {
            const QByteArray shown = memory.read(bytes);
            image = QImage(reinterpret_cast<const uchar *>(shown.constData()), frame.size.width(),
                           frame.size.height(), frame.stride, QImage::Format_RGB32)
                        .copy();
        }
        wl_buffer_destroy(buffer);
        wl_shm_pool_destroy(pool);
    }
    zwlr_screencopy_frame_v1_destroy(copy);
    if (frame.isUpsideDown)
        image = image.mirrored();
    // The compositor has it as the screen's memory does.
    const int transform = (*screen)->transform;
    image = image.transformed(QTransform().rotate(90 * (transform & WL_OUTPUT_TRANSFORM_270)));
    return transform & WL_OUTPUT_TRANSFORM_FLIPPED ? image.mirrored(true, false) : image;
}
