#include "helper/menucapture.h"

#include "platform/services.h"

#include <algorithm>
#include <utility>

namespace {

constexpr int s_lookInterval = 40;  // ms

QImage windowPicture(int number) { return services().pictures->ofWindows(std::nullopt, {number}); }

}  // namespace

MenuCapture::~MenuCapture() { end(); }

void MenuCapture::start()
{
    m_isLooking = true;
    services().keys->start({Qt::Key_Escape}, [this](Qt::Key) { giveUp(); });
    look();
}

void MenuCapture::giveUp()
{
    end();
    emit ended();
}

void MenuCapture::abort() { end(); }

void MenuCapture::end()
{
    if (!std::exchange(m_isLooking, false))
        return;
    services().keys->stop();
    m_ring.reset();
}

void MenuCapture::lookSoon()
{
    services().clock->after(s_lookInterval, this, [this] {
        if (m_isLooking)
            look();
    });
}

void MenuCapture::look()
{
    QList<WindowCatalogue::Entry> windows =
        services().windows->windows(WindowCatalogue::List::OnScreen, 0);
    if (m_ring) {
        const int ring = services().ownWindows->numberOf(m_ring.get());
        windows.removeIf([ring](const auto &window) { return window.number == ring; });
    }
    // An undeclared window that fills a screen is probably a screen lock and not a menu.
    const QList<QRect> screens = services().screens->areas();
    for (WindowCatalogue::Entry &window : windows) {
        if (std::any_of(screens.begin(), screens.end(),
                        [&window](const QRect &screen) { return window.bounds.contains(screen); }))
            window.kind = WindowCatalogue::Kind::Other;
    }
    const QPoint pointer = services().hands->pointer();
    switch (m_watch.look(windows, pointer, services().clock->now())) {
    case MenuWatch::State::Waiting:
        m_ring.reset();
        lookSoon();
        break;
    case MenuWatch::State::Resting:
        if (!m_ring)
            m_ring = std::make_unique<DwellRing>();
        m_ring->show(pointer, m_watch.menus(), m_watch.rest());
        lookSoon();
        break;
    case MenuWatch::State::Ready: {
        end();
        const QImage picture = pictureOfMenus(m_watch.menus(), windowPicture);
        if (picture.isNull())
            emit failed(NoPicture, tr("The menu gave no picture"));
        else
            emit taken(picture);
        break;
    }
    case MenuWatch::State::TimedOut:
        end();
        emit ended();
        break;
    }
}
