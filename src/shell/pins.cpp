#include "shell/pins.h"

#include "platform/desktoppictures.h"
#include "platform/services.h"
#include "shell/notices.h"
#include "shell/pinfolder.h"
#include "shell/preferences.h"
#include "shell/workbench.h"

#include <QDateTime>
#include <QUuid>

#include <algorithm>

namespace {

constexpr int s_storeTime = 2000;   // ms in which changes gather
constexpr int s_shareOfScreen = 2;  // a picture without a place takes the half of each side at most

// The screen with the pointer, or the first one.
QRect screenWithPointer()
{
    const QList<QRect> screens = services().screens->areas();
    const QPoint pointer = services().hands->pointer();
    const auto found = std::find_if(screens.begin(), screens.end(), [pointer](const QRect &area) {
        return area.contains(pointer);
    });
    if (found != screens.end())
        return *found;
    return screens.isEmpty() ? desktopBox() : screens.constFirst();
}

}  // namespace

Pins::Pins(Workbench &work, GrabDelivery &delivery, Notices &notices)
    : m_work(work), m_delivery(delivery), m_notices(notices)
{
    connect(&delivery, &GrabDelivery::pinned, this,
            [this](const QImage &picture, const QString &name, const std::optional<QPoint> &place) {
                add(picture, name, place);
            });
}

Pins::~Pins()
{
    for (Pin *pin : std::as_const(m_pins))
        delete pin;
}

void Pins::add(const QImage &picture, const QString &name, const std::optional<QPoint> &place)
{
    if (picture.isNull())
        return;
    PinnedPicture pinned{
        .id = QUuid::createUuid().toString(QUuid::Id128), .picture = picture, .name = name};
    if (place) {
        pinned.place = *place;
    } else {
        const QRect screen = screenWithPointer();
        const QSize room = screen.size() / s_shareOfScreen;
        pinned.zoom = std::min({1.0, double(room.width()) / picture.width(),
                                double(room.height()) / picture.height()});
        pinned.zoom = std::max(pinned.zoom, PinnedPicture::s_leastZoom);
        const QSize size = pinned.shownSize();
        pinned.place = screen.center() - QPoint(size.width() / 2, size.height() / 2);
    }
    open(pinned);
    storeSoon();
}

Pin *Pins::open(const PinnedPicture &pinned)
{
    auto *pin = new Pin(pinned);
    m_pins.append(pin);
    emit changed();
    connect(pin, &Pin::changed, this, &Pins::storeSoon);
    connect(pin, &Pin::closed, this, [this, pin] {
        m_pins.removeOne(pin);
        emit changed();
        storeSoon();
    });
    connect(pin, &Pin::copyWanted, this, [this, pin] { goTo(GrabGoal::Copy, *pin); });
    connect(pin, &Pin::saveWanted, this, [this, pin] { goTo(GrabGoal::Save, *pin); });
    connect(pin, &Pin::editWanted, this, [this, pin] {
        goTo(GrabGoal::Tab, *pin);
        emit editWanted();
    });
    connect(pin, &Pin::nextWanted, this, &Pins::focusNext);
    connect(pin, &Pin::closeAllWanted, this, &Pins::closeAll, Qt::QueuedConnection);
    pin->appear();
    if (!m_isOnScreen)
        pin->setOnScreen(false);
    return pin;
}

void Pins::goTo(GrabGoal goal, const Pin &pin)
{
    m_delivery.deliver({.picture = QPixmap::fromImage(pin.pinned().picture),
                        .name = pin.pinned().name,
                        .origin = {.time = QDateTime::currentDateTime(),
                                   .kind = QStringLiteral("pin"),
                                   .title = pin.pinned().name},
                        .goals = goal});
}

QList<const QWidget *> Pins::shown() const
{
    QList<const QWidget *> result;
    if (m_isOnScreen)
        result.append(QList<const QWidget *>(m_pins.begin(), m_pins.end()));
    return result;
}

void Pins::leaveScreen()
{
    m_isOnScreen = false;
    m_active.clear();
    for (Pin *pin : std::as_const(m_pins)) {
        if (pin->isActiveWindow())
            m_active = pin;
        pin->setOnScreen(false);
    }
}

void Pins::comeBack(bool withKeyboard)
{
    if (std::exchange(m_isOnScreen, true))
        return;
    for (Pin *pin : std::as_const(m_pins))
        pin->setOnScreen(true);
    if (withKeyboard && m_active)
        m_active->focus();
}

void Pins::focusNext()
{
    if (m_pins.isEmpty()) {
        m_notices.say(tr("Nothing is pinned to the screen."));
        return;
    }
    const auto active = std::find_if(m_pins.begin(), m_pins.end(),
                                     [](const Pin *pin) { return pin->isActiveWindow(); });
    const qsizetype next = active == m_pins.end() ? 0 : active - m_pins.begin() + 1;
    m_pins.at(next % m_pins.size())->focus();
}

void Pins::closeAll()
{
    const QList<Pin *> pins = m_pins;
    for (Pin *pin : pins)
        pin->close();
}

void Pins::keepIn(const QString &folder)
{
    m_folder = folder;
    if (!Preferences::keepsPins()) {
        PinFolder(m_folder).write({});
        return;
    }
    for (const PinnedPicture &pinned : PinFolder(m_folder).read())
        open(pinned);
}

void Pins::storeSoon()
{
    if (m_folder.isEmpty() || !Preferences::keepsPins() || std::exchange(m_isToStore, true))
        return;
    services().clock->after(s_storeTime, this, [this] { store(); });
}

QList<PinnedPicture> Pins::toStore() const
{
    QList<PinnedPicture> pinned;
    if (Preferences::keepsPins()) {
        for (const Pin *pin : m_pins)
            pinned.append(pin->pinned());
    }
    return pinned;
}

void Pins::store()
{
    m_isToStore = false;
    if (m_folder.isEmpty())
        return;
    const auto trouble = std::make_shared<QString>();
    m_work.jobs().start(
        PictureJobs::Kind::Write, 0, tr("Keeping the pins..."),
        [folder = PinFolder(m_folder), pins = toStore(), trouble](PictureProgress &) {
            *trouble = folder.write(pins);
        },
        [this, trouble] { tell(*trouble); });
}

void Pins::end()
{
    if (!m_folder.isEmpty())
        PinFolder(std::exchange(m_folder, {})).write(toStore());
}

// Once, until it goes well again.
void Pins::tell(const QString &trouble)
{
    if (trouble.isEmpty()) {
        m_notices.withdraw(std::exchange(m_trouble, {}));
    } else if (m_trouble.isEmpty()) {
        m_trouble = tr("The pins can't be kept for the next start: %1").arg(trouble);
        m_notices.say(m_trouble);
    }
}
