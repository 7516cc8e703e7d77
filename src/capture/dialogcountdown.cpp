#include "capture/dialogcountdown.h"

#include "platform/services.h"
#include "ui_dialogcountdown.h"

#include <QBitmap>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_interval = 1000;  // ms
constexpr int s_cancelled = -100;
constexpr qreal s_radius = 20;
constexpr int s_hintMargin = 8;  // to each edge of the panel
constexpr QColor s_panelColor(0, 0, 0, 170);

void drawPanel(QPaintDevice &device, const QRect &rect, const QColor &color)
{
    QPainter painter(&device);
    painter.setRenderHint(QPainter::Antialiasing, device.depth() > 1);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(rect, s_radius, s_radius, Qt::AbsoluteSize);
}

// Sets the form's font size, or a smaller one that fits, because the number may be long.
void fitFont(QLabel &label, int width)
{
    QFont font = label.font();
    int size = QFontInfo(font).pixelSize();
    do
        font.setPixelSize(size);
    while (QFontMetrics(font).horizontalAdvance(label.text()) > width && --size > 1);
    label.setFont(font);
}

}  // namespace

DialogCountDown::DialogCountDown(QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::DialogCountDown>())
{
    m_ui->setupUi(this);
    setStyleSheet(u"QDialog{background-color: rgba(35, 40, 45, 0%);}"_s);
    setWindowFlags(Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    setAttribute(Qt::WA_TranslucentBackground);
    // Without a compositor nothing is translucent, so the corners are cut off.
    if (!services().ownWindows->isComposited()) {
        QBitmap mask(size());
        mask.clear();
        drawPanel(mask, rect(), Qt::color1);
        setMask(mask);
    }
    services().ownWindows->keepOutOfTaskBar(this);
    m_ui->lblHint->setText(tr("Press ESC to cancel"));
    fitFont(*m_ui->lblHint, m_ui->lblHint->width() - 2 * s_hintMargin);
    tickLater();
}

DialogCountDown::~DialogCountDown() = default;

void DialogCountDown::setSecond(int second)
{
    m_Second = std::min(second, s_longest);
    m_ui->lblSecond->setText(QString::number(m_Second));
    fitFont(*m_ui->lblSecond, m_ui->lblSecond->width());
    timerEvent(nullptr);
}

void DialogCountDown::restart(int second)
{
    ++m_count;
    tickLater();
    setSecond(second);
}

void DialogCountDown::tickLater()
{
    services().clock->after(s_interval, this, [this, count = m_count] {
        if (count != m_count)
            return;
        tickLater();
        timerEvent(nullptr);
    });
}

void DialogCountDown::timerEvent(QTimerEvent * /*event*/)
{
    if (m_Second <= s_cancelled)
        return;
    m_ui->lblSecond->setText(QString::number(m_Second));
    --m_Second;
    if (m_Second < 0) {
        m_Result = 1;
        accept();
    }
}

// Also stops the count, however the panel is closed.
void DialogCountDown::reject()
{
    m_Second = s_cancelled;
    QDialog::reject();
}

// The caller's loop closes the panel; other keys are ignored.
void DialogCountDown::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        m_Second = s_cancelled;
}

void DialogCountDown::paintEvent(QPaintEvent * /*event*/)
{
    drawPanel(*this, rect(), s_panelColor);
}
