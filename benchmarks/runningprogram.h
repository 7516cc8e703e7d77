#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QList>
#include <QProcess>
#include <QRect>
#include <QTemporaryDir>
#include <QThread>

#include <array>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include <unistd.h>
#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>
#include <xcb/xtest.h>

constexpr int startLimit = 20000;  // milliseconds

/// Access to the X server's screen, pointer and keyboard. The pixel in the middle of the screen has
/// the root's colour until a window is painted over it.
class PixelWatch
{
public:
    PixelWatch() : m_connection(xcb_connect(nullptr, nullptr))
    {
        m_screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
    }
    ~PixelWatch() { xcb_disconnect(m_connection); }
    PixelWatch(const PixelWatch &) = delete;
    PixelWatch &operator=(const PixelWatch &) = delete;

    /// Presses keys in this order and releases them in reverse order; keys are given by their
    /// codes.
    void press(const QList<uint8_t> &keys)
    {
        for (const uint8_t key : keys)
            fake(XCB_KEY_PRESS, key);
        for (auto key = keys.crbegin(); key != keys.crend(); ++key)
            fake(XCB_KEY_RELEASE, *key);
        xcb_flush(m_connection);
    }
    QList<uint8_t> codes(const QList<xcb_keysym_t> &keysyms)
    {
        xcb_key_symbols_t *symbols = xcb_key_symbols_alloc(m_connection);
        QList<uint8_t> result;
        for (const xcb_keysym_t keysym : keysyms) {
            xcb_keycode_t *code = xcb_key_symbols_get_keycode(symbols, keysym);
            result.append(code ? *code : 0);
            std::free(code);
        }
        xcb_key_symbols_free(symbols);
        return result;
    }
    /// Drags over the middle of the screen, from one side of it to the other, until that is seen.
    bool dragOverCentre(QPoint from, QPoint to)
    {
        const uint32_t before = centre();
        movePointer(from);
        fake(XCB_BUTTON_PRESS, XCB_BUTTON_INDEX_1);
        movePointer(from + QPoint(20, 20));
        movePointer(to);
        const bool isSeen = waitForChange(before);
        fake(XCB_BUTTON_RELEASE, XCB_BUTTON_INDEX_1);
        xcb_flush(m_connection);
        return isSeen;
    }
    void movePointer(QPoint to)
    {
        xcb_test_fake_input(m_connection, XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, m_screen->root,
                            static_cast<int16_t>(to.x()), static_cast<int16_t>(to.y()), 0);
        xcb_flush(m_connection);
    }
    /// The visible window of this size; none if there is no such window.
    xcb_window_t findWindow(QSize size)
    {
        auto *tree = xcb_query_tree_reply(m_connection,
                                          xcb_query_tree(m_connection, m_screen->root), nullptr);
        xcb_window_t found = XCB_NONE;
        for (int i = 0; tree && i < xcb_query_tree_children_length(tree); ++i) {
            const xcb_window_t window = xcb_query_tree_children(tree)[i];
            auto *geometry = xcb_get_geometry_reply(
                m_connection, xcb_get_geometry(m_connection, window), nullptr);
            if (geometry && QSize(geometry->width, geometry->height) == size)
                found = window;
            std::free(geometry);
        }
        std::free(tree);
        return found;
    }
    void resize(xcb_window_t window, QSize size)
    {
        const std::array<uint32_t, 2> values{static_cast<uint32_t>(size.width()),
                                             static_cast<uint32_t>(size.height())};
        xcb_configure_window(m_connection, window,
                             XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, values.data());
        xcb_flush(m_connection);
    }

    /// The title of the window that shows a new picture; empty if none does.
    QByteArray pictureTitle()
    {
        QByteArray result;
        auto *tree = xcb_query_tree_reply(m_connection,
                                          xcb_query_tree(m_connection, m_screen->root), nullptr);
        for (int i = 0; tree && i < xcb_query_tree_children_length(tree); ++i) {
            auto *title = xcb_get_property_reply(
                m_connection,
                xcb_get_property(m_connection, 0, xcb_query_tree_children(tree)[i],
                                 XCB_ATOM_WM_NAME, XCB_GET_PROPERTY_TYPE_ANY, 0, 64),
                nullptr);
            const QByteArray text(title ? static_cast<const char *>(xcb_get_property_value(title))
                                        : nullptr,
                                  title ? xcb_get_property_value_length(title) : 0);
            if (text.contains("untitled"))
                result = text;
            std::free(title);
        }
        std::free(tree);
        return result;
    }

    /// Waits until the middle of the screen has another colour. Returns false if that does not
    /// happen.
    bool waitForChange(uint32_t before)
    {
        QElapsedTimer timer;
        timer.start();
        while (centre() == before) {
            if (timer.elapsed() > startLimit)
                return false;
            QCoreApplication::processEvents();
        }
        return true;
    }

    uint32_t centre() { return pixels(QRect(screen().center() + QPoint(1, 1), QSize(1, 1)))[0]; }

    QRect screen() const { return {0, 0, m_screen->width_in_pixels, m_screen->height_in_pixels}; }

    /// The pixels of a part of the screen; at least one.
    QList<uint32_t> pixels(const QRect &area)
    {
        auto *reply = xcb_get_image_reply(
            m_connection,
            xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, m_screen->root,
                          static_cast<int16_t>(area.x()), static_cast<int16_t>(area.y()),
                          static_cast<uint16_t>(area.width()), static_cast<uint16_t>(area.height()),
                          ~0U),
            nullptr);
        QList<uint32_t> result(qsizetype(area.width()) * area.height());
        if (reply)
            std::memcpy(result.data(), xcb_get_image_data(reply), result.size() * 4);
        std::free(reply);
        return result;
    }

private:
    void fake(uint8_t type, uint8_t key)
    {
        xcb_test_fake_input(m_connection, type, key, XCB_CURRENT_TIME, m_screen->root, 0, 0, 0);
    }

    xcb_connection_t *m_connection;
    const xcb_screen_t *m_screen = nullptr;
};

/// A program with a home folder that is kept between starts, so that second and later starts are
/// measured.
class Program
{
public:
    explicit Program(const char *path) : m_path(path)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), m_home.path());
        environment.insert(QStringLiteral("XDG_DATA_HOME"), m_home.path());
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_home.path());
        m_process.setProcessEnvironment(environment);
    }
    ~Program() { stop(); }
    Program(const Program &) = delete;
    Program &operator=(const Program &) = delete;

    /// Seconds from the start to the first paint; negative if nothing was painted.
    double start(const QStringList &arguments = {})
    {
        PixelWatch watch;
        const uint32_t before = watch.centre();
        QElapsedTimer timer;
        timer.start();
        m_process.start(QString::fromLocal8Bit(m_path), arguments);
        while (watch.centre() == before) {
            if (timer.elapsed() > startLimit)
                return -1;
            usleep(200);
        }
        return static_cast<double>(timer.nsecsElapsed()) * 1e-9;
    }
    void stop()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    QByteArray proc(const char *name) const
    {
        QFile file(QStringLiteral("/proc/%1/%2")
                       .arg(m_process.processId())
                       .arg(QString::fromLatin1(name)));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    long ticks() const
    {
        // The process name in parentheses may contain blanks, so counts from there; user and system
        // time are fields 14 and 15.
        const QByteArray stat = proc("stat");
        const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
        return fields.value(11).toLong() + fields.value(12).toLong();
    }
    /// Processor time of all threads in seconds; more precise than ticks().
    double processorTime() const
    {
        clockid_t clock = 0;
        timespec time{};
        if (clock_getcpuclockid(static_cast<pid_t>(m_process.processId()), &clock) != 0 ||
            clock_gettime(clock, &time) != 0)
            return 0;
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
    }
    double residentMegabytes() const
    {
        for (const QByteArray &line : proc("status").split('\n')) {
            if (line.startsWith("VmRSS:"))
                return line.simplified().split(' ').value(1).toDouble() / 1024;
        }
        return 0;
    }
    /// Waits until the process has used no processor time for a second.
    void settle() const
    {
        long before = -1;
        while (before != ticks()) {
            before = ticks();
            QThread::sleep(1);
        }
    }

private:
    const char *m_path;
    QTemporaryDir m_home;
    QProcess m_process;
};
