#include "helper/menucapture.h"

#include "platform/services.h"

#include <algorithm>
#include <utility>

namespace {

constexpr int s_lookInterval = 40;  // ms
constexpr int s_hintDistance = 60;  // between the pointer and the hint, in device pixels

QImage windowPicture(int number) { return services().pictures->ofWindows(std::nullopt, {number}); }

}  // namespace

MenuCapture::~MenuCapture() { end(); }

void MenuCapture::start()
{
    m_isLooking = true;
    m_hint = std::make_unique<HintPlate>(nullptr);
    m_hint->setHeadline(tr("Open a menu, and let the pointer rest on it"));
    m_hint->addLine(tr("Esc"), tr("gives up"));
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
    m_hint.reset();
}

void MenuCapture::lookSoon()
{
    services().clock->after(s_lookInterval, this, [this] {
        if (m_isLooking)
            look();
    });
}

// It is told before the first menu is open, and is not in the way of the pointer.
void MenuCapture::placeHint(QPoint pointer)
{
    const QRect near(pointer - QPoint(s_hintDistance, s_hintDistance),
                     QSize(2 * s_hintDistance, 2 * s_hintDistance));
    if (!m_hint->isVisible() || m_hint->covered().intersects(near))
        m_hint->showAwayFrom(pointer);
}

void MenuCapture::look()
{
    QList<WindowCatalogue::Entry> windows =
        services().windows->windows(WindowCatalogue::List::OnScreen, 0);
    const QPoint pointer = services().hands->pointer();
    if (m_watch.menus().isEmpty())
        placeHint(pointer);
    else
        m_hint->hide();
    for (const QWidget *own :
         {static_cast<QWidget *>(m_ring.get()), static_cast<QWidget *>(m_hint.get())}) {
        const int number = own ? services().ownWindows->numberOf(own) : 0;
        windows.removeIf(
            [number](const auto &window) { return number && window.number == number; });
    }
    // An undeclared window that fills a screen is probably a screen lock and not a menu.
    const QList<QRect> screens = services().screens->areas();
    for (WindowCatalogue::Entry &window : windows) {
        if (std::any_of(screens.begin(), screens.end(),
                        [&window](const QRect &screen) { return window.bounds.contains(screen); }))
            window.kind = WindowCatalogue::Kind::Other;
    }
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
