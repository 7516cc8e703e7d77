#include "testdesktop.h"

#include "pattern.h"

#include <array>

#include <X11/keysym.h>
#include <xcb/xtest.h>

using namespace Qt::StringLiterals;

namespace {

template<typename T> std::unique_ptr<T, decltype(&free)> owned(T *reply) { return {reply, &free}; }

template<auto reply, typename Cookie> auto answer(xcb_connection_t *connection, Cookie cookie)
{
    return owned(reply(connection, cookie, nullptr));
}

}  // namespace

TestDesktop::TestDesktop(const Options &options)
{
    m_ready = startServer(options) && startBus() && startWindowManager(options);
}

TestDesktop::~TestDesktop()
{
    if (m_symbols)
        xcb_key_symbols_free(m_symbols);
    if (m_connection)
        xcb_disconnect(m_connection);
}

bool TestDesktop::startServer(const Options &options)
{
    const QString screen = u"%1x%2x24"_s.arg(options.size.width()).arg(options.size.height());
    // SNAP_SHOW shows the test in a window of the developer's own desktop.
    const bool isShown = qEnvironmentVariableIsSet("SNAP_SHOW");
    QStringList arguments{u"-displayfd"_s, u"1"_s, u"-noreset"_s, u"-nolisten"_s, u"tcp"_s};
    arguments +=
        isShown ? QStringList{u"-screen"_s, screen} : QStringList{u"-screen"_s, u"0"_s, screen};
    QProcess *server = start(isShown ? u"Xephyr"_s : u"Xvfb"_s, arguments,
                             isShown ? QProcessEnvironment::systemEnvironment() : m_environment);
    if (!server || !waitFor([&] { return server->canReadLine(); }))
        return false;
    const QString display = u":"_s + QString::fromLatin1(server->readLine().trimmed());
    m_environment.insert(u"DISPLAY"_s, display);
    m_connection = xcb_connect(display.toLatin1().constData(), nullptr);
    if (xcb_connection_has_error(m_connection))
        return false;
    m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
    m_symbols = xcb_key_symbols_alloc(m_connection);
    for (const QStringList &monitor : options.monitors) {
        if (!run(u"xrandr"_s, QStringList{u"--setmonitor"_s} + monitor))
            return false;
    }
    if (!options.xftDpi.isEmpty()) {
        const QByteArray resources = "Xft.dpi:\t" + options.xftDpi + '\n';
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_root, XCB_ATOM_RESOURCE_MANAGER,
                            XCB_ATOM_STRING, 8, static_cast<uint32_t>(resources.size()),
                            resources.constData());
    }
    // Some colour that is neither a window's nor black.
    const uint32_t background = 0x336699;
    xcb_change_window_attributes(m_connection, m_root, XCB_CW_BACK_PIXEL, &background);
    xcb_clear_area(m_connection, 0, m_root, 0, 0, 0, 0);
    xcb_flush(m_connection);
    return true;
}

bool TestDesktop::startWindowManager(const Options &options)
{
    m_bare = options.windowManager.isEmpty();
    if (m_bare)
        return true;
    if (!start(options.windowManager.first(), options.windowManager.mid(1), m_environment))
        return false;
    if (!options.compositor.isEmpty() &&
        !start(options.compositor.first(), options.compositor.mid(1), m_environment))
        return false;
    const bool compositing =
        !options.compositor.isEmpty() || options.windowManager.contains(u"--compositor=on"_s);
    return waitFor([&] {
        if (property(m_root, "_NET_SUPPORTING_WM_CHECK").isEmpty())
            return false;
        const auto owner = answer<xcb_get_selection_owner_reply>(
            m_connection, xcb_get_selection_owner(m_connection, atom("_NET_WM_CM_S0")));
        return !compositing || (owner && owner->owner != XCB_NONE);
    });
}

QProcess *TestDesktop::startPattern(const QRect &area, const QString &name, bool framed)
{
    QStringList arguments{QString::number(area.x()), QString::number(area.y()),
                          QString::number(area.width()), QString::number(area.height()), name};
    if (framed)
        arguments.append(u"framed"_s);
    const QImage expected = pattern(area.size());
    const QPoint probe(5, 3);
    if (framed) {
        QProcess *process = start(QStringLiteral(SNAP_PATTERN), arguments, m_environment);
        Window window;
        if (!process || !waitFor([&] {
                window = find([&](const Window &other) {
                    return other.viewable && other.title == u"pattern" &&
                           other.area.size() == area.size();
                });
                return window.id != XCB_NONE;
            }))
            return nullptr;
        placeWindow(window, area);
        return process;
    }
    const auto shown = [&] { return pixel(area.topLeft() + probe) == expected.pixel(probe); };
    const auto active = [&] { return m_bare || activeTitle() == u"pattern"; };
    // A window manager that is still busy with its own start may lose a window, and never show it.
    QProcess *process = nullptr;
    for (int attempt = 0; attempt < 3 && !shown(); ++attempt) {
        if (process)
            process->kill();
        process = start(QStringLiteral(SNAP_PATTERN), arguments, m_environment);
        waitFor(shown, 7000);
    }
    if (!process || !shown())
        return nullptr;
    // A window manager may leave the focus with a program that starts at the same time.
    if (!waitFor(active, 2000))
        click(area.topLeft() + probe);
    return waitFor(active) && shown() ? process : nullptr;
}

QString TestDesktop::longProgram() { return QStringLiteral(SNAP_LONG_WINDOW); }

void TestDesktop::fake(uint8_t type, uint8_t detail, QPoint at)
{
    xcb_test_fake_input(m_connection, type, detail, XCB_CURRENT_TIME, m_root,
                        static_cast<int16_t>(at.x()), static_cast<int16_t>(at.y()), 0);
    // The answer to any request says that the server has taken the input in.
    answer<xcb_get_input_focus_reply>(m_connection, xcb_get_input_focus(m_connection));
}

void TestDesktop::movePointer(QPoint to) { fake(XCB_MOTION_NOTIFY, 0, to); }

void TestDesktop::press(int button)
{
    fake(XCB_BUTTON_PRESS, static_cast<uint8_t>(button));
    waitForWindowManager();
}

void TestDesktop::release(int button)
{
    fake(XCB_BUTTON_RELEASE, static_cast<uint8_t>(button));
    waitForWindowManager();
}

// A window manager looks at each press before the program below gets it, and holds the pointer
// meanwhile: what a hand never does, to click again within the same millisecond, can be lost. It
// answers a question after all that it was told before.
void TestDesktop::waitForWindowManager()
{
    if (m_bare)
        return;
    const xcb_atom_t answer = atom("_NET_FRAME_EXTENTS");
    if (m_question == XCB_NONE) {
        m_question = xcb_generate_id(m_connection);
        xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_question, m_root, 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_COPY_FROM_PARENT, XCB_COPY_FROM_PARENT, 0, nullptr);
    }
    xcb_delete_property(m_connection, m_question, answer);
    send(m_root, m_question, "_NET_REQUEST_FRAME_EXTENTS", 0);
    waitFor([&] { return !property(m_question, "_NET_FRAME_EXTENTS").isEmpty(); });
}

void TestDesktop::click(QPoint at, int button)
{
    movePointer(at);
    press(button);
    release(button);
}

bool TestDesktop::drag(QPoint from, QPoint to, const std::function<bool()> &arrived)
{
    return dragOn(*this, from, to, arrived);
}

xcb_keycode_t TestDesktop::keycode(xcb_keysym_t keysym)
{
    const auto codes = owned(xcb_key_symbols_get_keycode(m_symbols, keysym));
    return codes ? *codes : 0;
}

void TestDesktop::keyDown(xcb_keysym_t keysym) { fake(XCB_KEY_PRESS, keycode(keysym)); }

void TestDesktop::keyUp(xcb_keysym_t keysym) { fake(XCB_KEY_RELEASE, keycode(keysym)); }

void TestDesktop::key(xcb_keysym_t keysym, const QList<xcb_keysym_t> &modifiers)
{
    for (const xcb_keysym_t modifier : modifiers)
        keyDown(modifier);
    keyDown(keysym);
    keyUp(keysym);
    for (const xcb_keysym_t modifier : modifiers)
        keyUp(modifier);
}

bool TestDesktop::isTaken(xcb_keysym_t keysym)
{
    const xcb_keycode_t code = keycode(keysym);
    const auto refusal = owned(xcb_request_check(
        m_connection, xcb_grab_key_checked(m_connection, 0, m_root, 0, code, XCB_GRAB_MODE_ASYNC,
                                           XCB_GRAB_MODE_ASYNC)));
    if (!refusal)
        xcb_ungrab_key(m_connection, code, m_root, 0);
    xcb_flush(m_connection);
    return refusal != nullptr;
}

bool TestDesktop::isPointerTaken()
{
    const auto reply = answer<xcb_grab_pointer_reply>(
        m_connection, xcb_grab_pointer(m_connection, 0, m_root, 0, XCB_GRAB_MODE_ASYNC,
                                       XCB_GRAB_MODE_ASYNC, XCB_NONE, XCB_NONE, XCB_CURRENT_TIME));
    if (reply && reply->status == XCB_GRAB_STATUS_SUCCESS)
        xcb_ungrab_pointer(m_connection, XCB_CURRENT_TIME);
    xcb_flush(m_connection);
    return reply && reply->status == XCB_GRAB_STATUS_ALREADY_GRABBED;
}

void TestDesktop::type(const QString &text)
{
    for (const QChar character : text) {
        const auto keysym = static_cast<xcb_keysym_t>(character.unicode());
        const bool shifted = xcb_key_symbols_get_keysym(m_symbols, keycode(keysym), 0) != keysym;
        key(keysym, shifted ? QList<xcb_keysym_t>{XK_Shift_L} : QList<xcb_keysym_t>{});
    }
}

QImage TestDesktop::screenshot()
{
    const auto geometry =
        answer<xcb_get_geometry_reply>(m_connection, xcb_get_geometry(m_connection, m_root));
    return screenshot({0, 0, geometry->width, geometry->height});
}

QImage TestDesktop::screenshot(const QRect &area)
{
    const auto reply = answer<xcb_get_image_reply>(
        m_connection, xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, m_root,
                                    static_cast<int16_t>(area.x()), static_cast<int16_t>(area.y()),
                                    static_cast<uint16_t>(area.width()),
                                    static_cast<uint16_t>(area.height()), ~0U));
    return reply ? QImage(xcb_get_image_data(reply.get()), area.width(), area.height(),
                          QImage::Format_RGB32)
                       .copy()
                 : QImage();
}

QRgb TestDesktop::pixel(QPoint at)
{
    const QImage image = screenshot({at, QSize(1, 1)});
    return image.isNull() ? 0 : image.pixel(0, 0);
}

xcb_atom_t TestDesktop::atom(const char *name)
{
    const auto reply = answer<xcb_intern_atom_reply>(
        m_connection, xcb_intern_atom(m_connection, 0, static_cast<uint16_t>(strlen(name)), name));
    return reply->atom;
}

QByteArray TestDesktop::property(xcb_window_t window, const char *name)
{
    const auto reply = answer<xcb_get_property_reply>(
        m_connection,
        xcb_get_property(m_connection, 0, window, atom(name), XCB_GET_PROPERTY_TYPE_ANY, 0, 1024));
    if (!reply)
        return {};
    return {static_cast<const char *>(xcb_get_property_value(reply.get())),
            xcb_get_property_value_length(reply.get())};
}

void TestDesktop::collect(xcb_window_t window, bool child, QList<Window> &result)
{
    const auto tree =
        answer<xcb_query_tree_reply>(m_connection, xcb_query_tree(m_connection, window));
    const auto attributes = answer<xcb_get_window_attributes_reply>(
        m_connection, xcb_get_window_attributes(m_connection, window));
    const auto geometry =
        answer<xcb_get_geometry_reply>(m_connection, xcb_get_geometry(m_connection, window));
    const auto origin = answer<xcb_translate_coordinates_reply>(
        m_connection, xcb_translate_coordinates(m_connection, window, m_root, 0, 0));
    if (!tree || !attributes || !geometry || !origin)
        return;
    const QString title = titleOf(window);
    if (child || !title.isEmpty())
        result.append({.id = window,
                       .title = title,
                       .area = {origin->dst_x, origin->dst_y, geometry->width, geometry->height},
                       .overrideRedirect = attributes->override_redirect != 0,
                       .viewable = attributes->map_state == XCB_MAP_STATE_VIEWABLE});
    const xcb_window_t *children = xcb_query_tree_children(tree.get());
    for (int i = xcb_query_tree_children_length(tree.get()) - 1; i >= 0; --i)
        collect(children[i], window == m_root, result);
}

QList<TestDesktop::Window> TestDesktop::windows()
{
    QList<Window> result;
    collect(m_root, false, result);
    return result;
}

TestDesktop::Window TestDesktop::find(const std::function<bool(const Window &)> &isIt)
{
    const QList<Window> all = windows();
    const auto found = std::find_if(all.begin(), all.end(), isIt);
    return found == all.end() ? Window() : *found;
}

TestDesktop::Window TestDesktop::waitForNewWindow(const QList<Window> &before, int limit)
{
    const auto isNew = [&](const Window &window) {
        return window.viewable && !property(window.id, "WM_TRANSIENT_FOR").isEmpty() &&
               std::none_of(before.begin(), before.end(),
                            [&](const Window &other) { return other.id == window.id; });
    };
    Window found;
    waitFor([&] { return (found = find(isNew)).id != XCB_NONE; }, limit);
    return found;
}

bool TestDesktop::waitForFocus(const Window &window)
{
    // Without a window manager nobody gives a dialog the keyboard.
    if (m_bare)
        xcb_set_input_focus(m_connection, XCB_INPUT_FOCUS_PARENT, window.id, XCB_CURRENT_TIME);
    return waitFor([&] {
        const auto focus =
            answer<xcb_get_input_focus_reply>(m_connection, xcb_get_input_focus(m_connection));
        return focus && (focus->focus == window.id || isInside(focus->focus, window.id));
    });
}

bool TestDesktop::isInside(xcb_window_t window, xcb_window_t ancestor)
{
    const auto tree =
        answer<xcb_query_tree_reply>(m_connection, xcb_query_tree(m_connection, window));
    return tree && tree->parent != XCB_NONE &&
           (tree->parent == ancestor || isInside(tree->parent, ancestor));
}

xcb_window_t TestDesktop::activeWindow()
{
    const QByteArray active = property(m_root, "_NET_ACTIVE_WINDOW");
    return active.size() < 4 ? XCB_NONE
                             : *reinterpret_cast<const xcb_window_t *>(active.constData());
}

QString TestDesktop::activeTitle()
{
    const xcb_window_t window = activeWindow();
    return window ? titleOf(window) : QString();
}

// Old programs have only the old property.
QString TestDesktop::titleOf(xcb_window_t window)
{
    const QByteArray title = property(window, "_NET_WM_NAME");
    return QString::fromUtf8(title.isEmpty() ? property(window, "WM_NAME") : title);
}

void TestDesktop::send(xcb_window_t to, xcb_window_t window, const char *type, uint32_t value)
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom(type);
    message.data.data32[0] = value;
    const uint32_t windowManager =
        XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT;
    xcb_send_event(m_connection, 0, to, to == m_root ? windowManager : 0,
                   reinterpret_cast<const char *>(&message));
    xcb_flush(m_connection);
}

void TestDesktop::closeWindow(const Window &window)
{
    send(window.id, window.id, "WM_PROTOCOLS", atom("WM_DELETE_WINDOW"));
}

void TestDesktop::minimise(const Window &window)
{
    constexpr uint32_t iconic = 3;
    send(m_root, window.id, "WM_CHANGE_STATE", iconic);
}

void TestDesktop::placeWindow(const Window &window, const QRect &area)
{
    const std::array<uint32_t, 4> values{
        static_cast<uint32_t>(area.x()), static_cast<uint32_t>(area.y()),
        static_cast<uint32_t>(area.width()), static_cast<uint32_t>(area.height())};
    xcb_configure_window(m_connection, window.id,
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                             XCB_CONFIG_WINDOW_HEIGHT,
                         values.data());
    xcb_flush(m_connection);
}
