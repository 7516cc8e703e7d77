#pragma once

#include "platform/wayland/screenlayout.h"

#include <QObject>

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

struct org_kde_kwin_fake_input;
struct wl_display;
struct wl_output;
struct wl_registry;
struct wl_seat;
struct wl_shm;
struct zwlr_screencopy_manager_v1;
struct zwlr_virtual_pointer_manager_v1;
struct zxdg_output_manager_v1;
struct zxdg_output_v1;

/// A screen as the compositor tells of it.
struct WaylandOutput {
    uint32_t name = 0;  ///< in the registry
    wl_output *output = nullptr;
    zxdg_output_v1 *logical = nullptr;
    QString title{};        ///< as the compositor calls it
    QRect area{};           ///< in logical units
    QSize mode{};           ///< its pixels, as they lie in memory
    int32_t transform = 0;  ///< how they are turned before they are seen
    int32_t scale = 1;      ///< that programs are to paint with
};

/// The program's own connection to the compositor, beside the toolkit's, which lends its own to
/// nobody. Events are handled in the event loop.
class WaylandConnection : public QObject
{
    Q_OBJECT
public:
    /// Connects, and reads what the compositor has. Null if it doesn't answer.
    static std::shared_ptr<WaylandConnection> open();
    ~WaylandConnection() override;

    /// What the compositor has; null where it lacks that.
    wl_shm *shm() const { return m_shm; }
    wl_seat *seat() const { return m_seat; }
    zwlr_screencopy_manager_v1 *screencopy() const { return m_screencopy; }
    zwlr_virtual_pointer_manager_v1 *virtualPointers() const { return m_virtualPointers; }
    org_kde_kwin_fake_input *fakeInput() const { return m_fakeInput; }

    /// The screens that are there now, in no particular order.
    const std::vector<std::unique_ptr<WaylandOutput>> &outputs() const { return m_outputs; }
    ScreenLayout layout() const;

    /// Sends what has been requested.
    void flush();
    /// Handles events, and nothing else of the program's, until `isDone`. False if that takes
    /// longer than `limit` milliseconds or the connection is broken.
    bool waitFor(const std::function<bool()> &isDone, int limit);

signals:
    void outputGone(const WaylandOutput *output);
    /// The compositor has ended, or refused what was asked of it; nothing comes any more.
    void broken();

private:
    explicit WaylandConnection(wl_display *display);
    bool readGlobals();
    void global(uint32_t name, const char *interface, uint32_t version);
    void globalRemoved(uint32_t name);
    void addOutput(uint32_t name, uint32_t version);
    void tellLogical(WaylandOutput &output);
    static void destroy(WaylandOutput &output);
    void readEvents();
    void fail();
    bool sync(int limit);

    wl_display *m_display;
    wl_registry *m_registry = nullptr;
    wl_shm *m_shm = nullptr;
    wl_seat *m_seat = nullptr;
    zwlr_screencopy_manager_v1 *m_screencopy = nullptr;
    zwlr_virtual_pointer_manager_v1 *m_virtualPointers = nullptr;
    org_kde_kwin_fake_input *m_fakeInput = nullptr;
    zxdg_output_manager_v1 *m_logicalOutputs = nullptr;
    std::vector<std::unique_ptr<WaylandOutput>> m_outputs;
    bool m_isBroken = false;
};
