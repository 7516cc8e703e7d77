#include "platform/wayland/kwinroute.h"

#include <QDBusConnectionInterface>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_lookLimit = 3000;  // ms

// As a screen shows it: nothing shines through.
QImage opaque(const KWinShot &shot, QSize pixels)
{
    return fitted(shot.picture().convertToFormat(QImage::Format_RGB32), pixels);
}

}  // namespace

bool KWinRoute::isThere(const QDBusConnection &bus)
{
    return bus.isConnected() && bus.interface()->isServiceRegistered(u"org.kde.KWin"_s);
}

void KWinRoute::take(const ScreenLayout &layout, Answer answer)
{
    drop();
    m_layout = layout;
    m_answer = std::move(answer);
    m_missing = layout.screens().size();
    for (const ScreenLayout::Screen &screen : layout.screens()) {
        m_shots.push_back(KWinShot::ofScreen(m_bus, screen.name, m_showsPointer, m_limit));
        m_shots.back()->whenDone([this] {
            --m_missing;
            answerIfDone();
        });
    }
    if (layout.screens().isEmpty())
        QMetaObject::invokeMethod(this, &KWinRoute::answerIfDone, Qt::QueuedConnection);
}

void KWinRoute::answerIfDone()
{
    if (m_missing > 0 || !m_answer)
        return;
    Result result{.outcome = m_shots.empty() ? Outcome::Failed : Outcome::Taken};
    for (size_t i = 0; i < m_shots.size(); ++i) {
        const KWinShot &shot = *m_shots[i];
        switch (shot.outcome()) {
        case KWinShot::Outcome::Taken:
            result.pictures.append(
                opaque(shot, m_layout.screens().at(static_cast<qsizetype>(i)).pixels));
            break;
        case KWinShot::Outcome::Refused:
            result.trouble =
                tr("KWin gives pictures of the screen only to programs that are installed with a "
                   "desktop entry which asks for them. Install Snap Workbench by its package.");
            [[fallthrough]];
        case KWinShot::Outcome::Absent:
            result.outcome = Outcome::Absent;
            break;
        case KWinShot::Outcome::Late:
            result.trouble = tr("The desktop did not give its picture in time.");
            [[fallthrough]];
        case KWinShot::Outcome::Failed:
            result.outcome = Outcome::Failed;
            break;
        }
    }
    m_shots.clear();
    std::exchange(m_answer, nullptr)(result);
}

void KWinRoute::drop()
{
    m_answer = nullptr;
    m_shots.clear();
}

QList<QImage> KWinRoute::takeNow(const ScreenLayout &layout, const QRect &area)
{
    QList<QImage> pictures;
    for (const ScreenLayout::Screen &screen : layout.screens()) {
        pictures.append(QImage());
        if (!screen.area.intersects(area))
            continue;
        const std::unique_ptr<KWinShot> shot =
            KWinShot::ofScreen(m_bus, screen.name, false, s_lookLimit);
        shot->wait();
        if (shot->picture().isNull())
            return {};
        pictures.last() = opaque(*shot, screen.pixels);
    }
    return pictures;
}
