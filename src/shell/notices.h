#pragma once

#include "shell/noticebar.h"

#include <QPointer>

class QWidget;
class TrayIcon;

/// Tells the user something that needs no answer: in a quiet bar over an area of the window, and by
/// the tray where the window can't be seen. With no tray either, the bar waits until it can be.
class Notices
{
public:
    /// Both outlive this object; the bar is `area`'s sibling.
    Notices(QWidget &area, TrayIcon &tray) : m_area(area), m_tray(tray) {}

    void say(const QString &text, const QList<NoticeBar::Action> &actions = {});
    /// That something was done as it was ordered, which nobody has to read: it goes with what the
    /// user does next, if not before.
    void sayDone(const QString &text);
    /// The user has gone on.
    void passDone();
    /// Takes back what no longer holds; a text that is not there does nothing.
    void withdraw(const QString &text);

private:
    bool isUncovered(const QWidget &part) const;

    QWidget &m_area;
    TrayIcon &m_tray;
    QPointer<NoticeBar> m_bar;  ///< from its first use on
    QString m_done{};           ///< the last text of sayDone()
};
