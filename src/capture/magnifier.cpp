#include "capture/magnifier.h"

#include "capture/captureoverlay.h"
#include "capture/magnifierpanel.h"
#include "config/settings.h"
#include "platform/desktoppictures.h"
#include "platform/windowlist.h"

using namespace Qt::StringLiterals;

void Magnifier::request(QWidget *parent, EShowMagOpr opr, QPoint pos, int type,
                        const Settings &settings)
{
    if (opr == eMagClose) {
        close();
        return;
    }
    if (opr == eMagChangeMode) {
        changeMode();
        return;
    }
    const bool create = opr == eMagOpen && !m_panel && settings.wanted;
    if (create) {
        m_panel = new DigDetail(static_cast<CaptureOverlay *>(parent));
        m_panel->SetType(type);
        m_panel->SetViewMode(GetConfigNumber(u"MagnificationMode"_s, m_panel->GetViewMode(),
                                             DigDetail::s_full, DigDetail::s_small));
    }
    if (!m_panel)
        return;
    update(pos, settings.multiple);
    if (create)
        m_panel->open();
}

void Magnifier::close()
{
    if (m_panel) {
        // It fades unseen, as its overlay does.
        m_panel->moveTo(offScreen());
        m_panel->close();
    }
    delete m_panel;
}

void Magnifier::changeMode()
{
    if (!m_panel)
        return;
    const QRect before = m_panel->area();
    const int mode =
        m_panel->GetViewMode() == DigDetail::s_full ? DigDetail::s_small : DigDetail::s_full;
    m_panel->SetViewMode(mode);
    SetConfigString(u"MagnificationMode"_s, QString::number(mode));
    QRect screen;
    getOneScreen(before.center().x(), before.center().y(), screen);
    m_panel->moveTo(magnifierResized(before, m_panel->area().size(), screen).topLeft());
}

void Magnifier::update(QPoint pos, int multiple)
{
    QRect screen;
    const int number = getOneScreen(pos.x(), pos.y(), screen);
    m_panel->enter(pos);
    const QRect area = m_panel->area();
    const bool moves = number != m_screen || magnifierIsInTheWay(area, pos);
    m_screen = number;
    m_panel->SetMultiple(multiple);
    m_panel->SetCoordX(u"%1 px"_s.arg(pos.x()));
    m_panel->SetCoordY(u"%1 px"_s.arg(pos.y()));
    m_panel->ReDrawZoomin(pos, nullptr);
    if (moves)
        m_panel->moveTo(magnifierPlace(area.size(), screen, pos));
}
