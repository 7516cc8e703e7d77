#include "helper/menuwatch.h"

#include <QPainter>

#include <algorithm>

namespace {

constexpr qint64 s_restTime = 1000;    // ms
constexpr qint64 s_idleLimit = 60000;  // ms
constexpr int s_restTolerance = 3;     // movement of a resting hand, in pixels

}  // namespace

MenuWatch::State MenuWatch::look(const QList<WindowCatalogue::Entry> &windows, QPoint pointer,
                                 qint64 time)
{
    using Kind = WindowCatalogue::Kind;
    if (!m_begun) {
        m_begun = true;
        m_idleSince = time;
        for (const auto &window : windows) {
            if (window.kind == Kind::Unnamed)
                m_before.insert(window.number);
        }
    }
    const auto isMenu = [this](const WindowCatalogue::Entry &window) {
        return window.kind == Kind::Menu ||
               (window.kind == Kind::Unnamed && !m_before.contains(window.number));
    };
    const auto under = std::find_if(windows.begin(), windows.end(), [&](const auto &window) {
        return window.bounds.toRect().contains(pointer);
    });
    const bool onMenu = under != windows.end() && isMenu(*under);
    if (std::any_of(windows.begin(), windows.end(), isMenu))
        m_idleSince = time;
    else if (time - m_idleSince >= s_idleLimit)
        return State::TimedOut;

    QList<WindowCatalogue::Entry> menus;
    if (onMenu) {
        std::copy_if(windows.begin(), windows.end(), std::back_inserter(menus),
                     [&](const auto &window) {
                         return isMenu(window) && window.process == under->process &&
                                window.owner == under->owner;
                     });
    }
    // The rest starts again if a submenu opens or closes under the resting pointer.
    const auto sameNumbers = [](const auto &left, const auto &right) {
        return left.number == right.number;
    };
    const bool sameMenus =
        std::equal(menus.begin(), menus.end(), m_menus.begin(), m_menus.end(), sameNumbers);
    m_menus = menus;
    if (!onMenu || !sameMenus || m_restSince < 0 ||
        (pointer - m_pointer).manhattanLength() > s_restTolerance) {
        m_pointer = pointer;
        m_restSince = onMenu ? time : -1;
    }
    m_rest = onMenu ? std::min(1.0, double(time - m_restSince) / s_restTime) : 0;
    if (!onMenu)
        return State::Waiting;
    return m_rest < 1 ? State::Resting : State::Ready;
}

QImage pictureOfMenus(const QList<WindowCatalogue::Entry> &menus,
                      const std::function<QImage(int)> &pictureOf)
{
    QRect bounds;
    for (const WindowCatalogue::Entry &menu : menus)
        bounds |= menu.bounds.toRect();
    if (bounds.isEmpty())
        return {};
    QImage result(bounds.size(), QImage::Format_ARGB32_Premultiplied);
    result.fill(Qt::transparent);
    QPainter painter(&result);
    bool painted = false;
    for (auto menu = menus.crbegin(); menu != menus.crend(); ++menu) {
        const QImage picture = pictureOf(menu->number);
        painted |= !picture.isNull();
        painter.drawImage(menu->bounds.toRect().topLeft() - bounds.topLeft(), picture);
    }
    painter.end();
    return painted ? result : QImage();
}
