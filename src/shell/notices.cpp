#include "shell/notices.h"

#include "config/applicationrecord.h"
#include "platform/services.h"
#include "shell/trayicon.h"

#include <QWindow>

#include <algorithm>
#include <utility>

void Notices::say(const QString &text, const QList<NoticeBar::Action> &actions)
{
    if (!m_bar)
        m_bar = new NoticeBar(&m_area);
    m_bar->tell(text, actions);
    // Once it has been told, who opens the window hours later need not hear of it.
    if (!isUncovered(*m_bar) && m_tray.tell(QString::fromWCharArray(g_AppName), text))
        m_bar->startTime();
}

void Notices::sayDone(const QString &text)
{
    m_done = text;
    say(text);
}

void Notices::passDone() { withdraw(std::exchange(m_done, {})); }

void Notices::withdraw(const QString &text)
{
    if (m_bar && !text.isEmpty())
        m_bar->withdraw(text);
}

// Whether the user can see all of a part of the window. A window that is covered is exposed all the
// same where there is a compositor.
bool Notices::isUncovered(const QWidget &part) const
{
    const QWidget &window = *m_area.window();
    if (!window.isVisible() || window.isMinimized() || !window.windowHandle() ||
        !window.windowHandle()->isExposed())
        return false;
    const int number = services().ownWindows->numberOf(&window);
    const auto above = services().windows->windows(WindowCatalogue::List::AtAndAbove, number);
    const auto own = std::find_if(above.begin(), above.end(),
                                  [&](const auto &entry) { return entry.number == number; });
    if (own == above.end())
        return true;
    const qreal scale = window.devicePixelRatioF();
    const QRectF area(own->bounds.topLeft() + QPointF(part.mapTo(&window, QPoint())) * scale,
                      QSizeF(part.size()) * scale);
    return std::none_of(above.begin(), own,
                        [&](const auto &entry) { return entry.bounds.intersects(area); });
}
