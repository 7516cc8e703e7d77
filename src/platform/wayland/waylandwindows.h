#pragma once

#include "platform/wayland/waylandconnection.h"
#include "platform/windowcatalogue.h"

#include <QImage>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QRegion>
#include <QWindow>

#include <functional>
#include <memory>

/// A window as a compositor tells of it.
struct WaylandWindow {
    WindowCatalogue::Entry entry{};  ///< in logical units
    bool isVisible = false;          ///< on a work space that is shown
    bool isFocused = false;
    int fullscreen = 0;  ///< 0: not, 1: on its screen, 2: on all screens
};

/// The windows of all programs, as they were when they were last read. What a compositor has to say
/// comes late, so that each look asks for the next one, and gives what is known.
///
/// This class stands for a compositor that tells nothing: each screen counts as a window, in which
/// something can be pointed at.
class WaylandWindows : public QObject
{
    Q_OBJECT
public:
    explicit WaylandWindows(std::shared_ptr<WaylandConnection> connection)
        : m_connection(std::move(connection))
    {
    }

    /// Whether the compositor tells of its windows at all.
    virtual bool areKnown() const { return false; }

    /// Reads them. `done` is called once, from the event loop, also if nothing could be read.
    void read(std::function<void()> done);
    /// What has been read stays, until thaw(), after which nothing is known until it has been read
    /// again.
    virtual void freeze() { m_isFrozen = true; }
    virtual void thaw();

    /// Front to back.
    const QList<WaylandWindow> &all();
    /// Null if there is none.
    const WaylandWindow *focused();
    /// Global device pixels; empty if there is no such window.
    QRectF boundsOf(int number);
    /// What no other window covers, in global device pixels; empty if its work space isn't shown.
    QRegion visibleOf(int number);
    QRectF toGlobal(const QRectF &logical) const;

    /// Whether pictureOf() gives pictures.
    virtual bool havePictures() const { return false; }
    /// All of a window with its frame, whatever covers it, in the pixels of its screen; null if the
    /// compositor gives none.
    virtual QImage pictureOf(int /*number*/) { return {}; }

    /// Gives the focus to a window of this program, as soon as the compositor knows it, where
    /// asking for it does not suffice.
    virtual void focusOwn(QWindow *window);
    /// All windows of this program are no longer seen, or are seen again.
    virtual void setOwnSeen(bool /*seen*/) {}

protected:
    using Answer = std::function<void(QList<WaylandWindow>)>;
    /// Asks the compositor. `answer` is called once, from the event loop; empty if it fails.
    virtual void ask(Answer answer);
    /// Gives the focus to one of `all`, a window of this program.
    virtual void focus(const WaylandWindow & /*window*/, const QList<WaylandWindow> & /*all*/) {}

    static bool isOwn(const WaylandWindow &window);
    bool isFrozen() const { return m_isFrozen; }
    /// What is known now, for a change to it.
    QList<WaylandWindow> &known() { return m_windows; }
    /// Null if there is none.
    const WaylandWindow *find(int number);

private:
    void focusWanted(int triesLeft);

    std::shared_ptr<WaylandConnection> m_connection;
    QList<WaylandWindow> m_windows;
    QPointer<QWindow> m_wanted;  // which is to get the focus
    bool m_isFrozen = false;
    bool m_isAsked = false;
};
