#include "capture/mouseshot.h"

#include "platform/applicationwatch.h"
#include "platform/services.h"
#include "platform/windowlist.h"
#include "ui_mouseshot.h"

#include <QKeyEvent>
#include <QPainter>

#include <array>

namespace {

constexpr int s_pickInterval = 200;  // ms
constexpr QColor s_tint(0, 0, 0, 100);
constexpr size_t s_nameCapacity = 256;

}  // namespace

mouseShot::mouseShot(QWidget *parent)
    : CaptureOverlay(parent, 0), m_ui(std::make_unique<Ui::mouseShot>())
{
    m_ui->setupUi(this);
    setSurface(m_ui->widget);
    pickLater();
    // Before the list is read: the first window in it is this one.
    show();
    raise();
    readWindows();
    pickWindow();
}

mouseShot::~mouseShot() = default;

void mouseShot::readWindows()
{
    QList<WindowOutlines::Window> windows(GetWindowList(1, 0));
    for (int i = 0; i < windows.size(); ++i) {
        int x = 0;
        int y = 0;
        int width = 0;
        int height = 0;
        GetWindowGeometry(i, &x, &y, &width, &height);
        windows[i] = {.bounds = {x, y, width, height}, .level = GetWindowLevel(i)};
    }
    m_outlines = WindowOutlines(windows, services().windows->screens(), [](int index) {
        return GrabWindow(index, nullptr, nullptr, nullptr).size();
    });
}

void mouseShot::pickWindow()
{
    const int except = g_widgetExcept ? GetWindowId(g_widgetExcept) : 0;
    const int pick = m_outlines.pick(pointer(), m_currentIndex, [except](int index) {
        return g_widgetExcept && getWinid(index) == except;
    });
    if (pick == m_currentIndex)
        return;
    m_currentIndex = pick;
    updateAll();
}

void mouseShot::readAgain()
{
    readWindows();
    m_currentIndex = 0;
    pickWindow();
}

void mouseShot::updateAll() { m_ui->widget->update(); }

std::optional<WindowServer::Entry> mouseShot::picked() const
{
    if (m_currentIndex <= 0 || m_currentIndex >= g_WindowList.WindowInfo.size())
        return std::nullopt;
    return g_WindowList.WindowInfo[m_currentIndex];
}

Grab mouseShot::take()
{
    Grab grab;
    grab.picture = getPixmap(&grab.name);
    return grab;
}

QPixmap mouseShot::getPixmap(QString *name)
{
    if (m_currentIndex <= 0)
        return {};
    std::array<wchar_t, s_nameCapacity> owner{};
    const QImage picture = GrabWindow(m_currentIndex, nullptr, owner.data(), nullptr);
    if (name)
        *name = QString::fromWCharArray(owner.data());
    return QPixmap::fromImage(picture);
}

void mouseShot::pickLater()
{
    services().clock->after(s_pickInterval, this, [this] {
        pickLater();
        pickWindow();
        looked();
    });
}

bool mouseShot::eventFilter(QObject *watched, QEvent *event)
{
    if (isHeldEnd(*event))
        return true;
    if (watched != m_ui->widget)
        return CaptureOverlay::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::Paint:
        paintSheet(static_cast<QPaintEvent *>(event)->region(),
                   [this](QPainter &painter) { draw(painter); });
        return true;
    case QEvent::MouseButtonPress: {
        const Qt::MouseButtons buttons = static_cast<QMouseEvent *>(event)->buttons();
        if (buttons & Qt::LeftButton)
            accept();
        else if (buttons & Qt::RightButton)
            reject();
        return true;
    }
    case QEvent::KeyPress: {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Escape)
            reject();
        else if (key == Qt::Key_Return)
            accept();
        return true;
    }
    default:
        return CaptureOverlay::eventFilter(watched, event);
    }
}

void mouseShot::draw(QPainter &painter)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(s_tint);
    const QPolygon tinted = m_outlines.visible(m_currentIndex).translated(-area().topLeft());
    painter.drawPolygon(tinted, Qt::OddEvenFill);
}
