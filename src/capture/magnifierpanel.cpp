#include "capture/magnifierpanel.h"

#include "base/palette.h"
#include "capture/captureoverlay.h"
#include "config/settings.h"
#include "platform/desktoppictures.h"
#include "platform/services.h"
#include "ui_magnifierpanel.h"

#include <QBitmap>
#include <QEvent>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace {

// Sizes in logical pixels, as in all windows of this program.
constexpr QSize s_texts(108, 122);  // the difference between the full view and the small one
constexpr QSize s_polygonTexts(108, 151);
constexpr QSize s_textGap(8, 10);  // included in both
constexpr int s_height = 314;
constexpr int s_polygonHeight = 343;
constexpr int s_helpHeight = 112;
constexpr int s_polygonHelpHeight = 141;
constexpr int s_helpFont = 12;

const char *const s_regionHelp =
    QT_TRANSLATE_NOOP("DigDetail", "Mouse Left   Accept point\n"
                                   "Mouse Right  Popup menu\n"
                                   "Command+E    Change view mode\n"
                                   "Arrows       Move region\n"
                                   "             Alter size with Shift\n"
                                   "             Alter to edge with Alt\n"
                                   "             Regular with Command\n"
                                   "Esc          Abort capture\n"
                                   "Enter        Finish capture");
const char *const s_polygonHelp =
    QT_TRANSLATE_NOOP("DigDetail", "Mouse Left   Accept point\n"
                                   "Mouse Right  Popup menu\n"
                                   "\n"
                                   "Hold Command key for 45 deg.\n"
                                   "Command+E    Change view mode\n"
                                   "Arrows       Move by 1pixel\n"
                                   "             10 pixels with Shift\n"
                                   "             to edge with Alt\n"
                                   "Esc          Abort capture\n"
                                   "Enter        Finish capture\n"
                                   "Backspace    Delete last point");

QPixmap maskedIcon(const QString &path)
{
    QPixmap icon(path);
    if (!icon.isNull())
        icon.setMask(icon.createHeuristicMask(true));
    return icon;
}

}  // namespace

DigDetail::DigDetail(CaptureOverlay *overlay)
    : QDialog(overlay), m_ui(std::make_unique<Ui::DigDetail>()), m_overlay(overlay),
      m_isWindow(services().ownWindows->placesWindows()), m_Desktop(desktopBox()),
      m_GrabRect(m_Desktop)
{
    m_ui->setupUi(this);
    if (m_isWindow) {
        setWindowFlags(windowFlags() | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                       Qt::WindowTransparentForInput);
        setAttribute(Qt::WA_ShowWithoutActivating);
    } else {
        setWindowFlags(Qt::Widget);
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }
    setStyleSheet(u"QDialog{background-color: rgba(237, 237, 237, 80%);}"_s);
    m_ui->LblHP->setPixmap(maskedIcon(GetBtnAttr(this, u"BtnCoordFlag"_s, SkinNormal)));
    m_ui->LblCP->setPixmap(maskedIcon(GetBtnAttr(this, u"BtnColorFlag"_s, SkinNormal)));
    QFont helpFont = m_ui->label->font();
    helpFont.setPixelSize(s_helpFont);
    m_ui->label->setFont(helpFont);
    m_ui->label->installEventFilter(this);
    setFocusPolicy(Qt::ClickFocus);
    setPanelSize(size());
    m_ui->m_Label->installEventFilter(this);
}

DigDetail::~DigDetail() = default;

void DigDetail::SetMultiple(int multiple)
{
    if (multiple > 0)
        m_Multiple = multiple;
}

void DigDetail::SetCoordX(const QString &text) { m_ui->LblX->setText(u"X: "_s + text); }

void DigDetail::SetCoordY(const QString &text) { m_ui->LblY->setText(u"Y: "_s + text); }

void DigDetail::SetType(int type)
{
    m_Type = type;
    const bool region = type == s_region;
    m_ui->widget_2->setFixedHeight(region ? s_helpHeight : s_polygonHelpHeight);
    setPanelSize({width(), region ? s_height : s_polygonHeight});
    m_ui->label->setText(tr(region ? s_regionHelp : s_polygonHelp));
}

void DigDetail::SetViewMode(int mode)
{
    if (mode == m_ViewMode)
        return;
    m_ViewMode = mode;
    const QSize texts = m_Type == s_region ? s_texts : s_polygonTexts;
    m_ui->WidCurInfo->setVisible(mode == s_full);
    m_ui->widget_2->setVisible(mode == s_full);
    // Without the texts the gaps would remain and take width from the view.
    m_ui->gridLayout->setHorizontalSpacing(mode == s_full ? s_textGap.width() : 0);
    m_ui->gridLayout->setVerticalSpacing(mode == s_full ? s_textGap.height() : 0);
    setPanelSize(mode == s_full ? size() + texts : size() - texts);
}

void DigDetail::setPanelSize(QSize size)
{
    setFixedSize(size);
    // Done at once, even if the panel is not shown yet, because the view's size is needed next.
    layout()->activate();
    m_ui->widget_2->layout()->activate();
}

MagnifierView DigDetail::view() const
{
    return {(QSizeF(m_ui->m_Label->size()) * devicePixelRatioF()).toSize(), m_Multiple};
}

QRect DigDetail::area() const
{
    return {m_Corner,
            m_isWindow ? (QSizeF(size()) * devicePixelRatioF()).toSize() : pane().toPixels(size())};
}

// Of the pane's two widgets the window is the one that all children lie in.
const Pane &DigDetail::pane() const
{
    const QList<Pane> &panes = m_overlay->panes();
    const auto own = std::find_if(panes.begin(), panes.end(), [this](const Pane &pane) {
        return &pane.window() == parentWidget();
    });
    return *own;
}

void DigDetail::enter(QPoint point)
{
    QWidget &window = m_overlay->paneAt(point - m_overlay->area().topLeft()).window();
    if (m_isWindow || parentWidget() == &window)
        return;
    const bool isShown = !isHidden();
    setParent(&window);
    setVisible(isShown);
}

void DigDetail::moveTo(QPoint corner)
{
    m_Corner = corner;
    if (!m_isWindow)
        move(pane().toLogical(corner - m_overlay->area().topLeft()));
    else if (isVisible())
        services().ownWindows->moveWindow(this, corner);
}

void DigDetail::open()
{
    if (m_isWindow)
        services().ownWindows->coverArea(this, area());
    show();
}

void DigDetail::ReDrawZoomin(const QPoint &point, QPixmap *source)
{
    const MagnifierView shown = view();
    m_GrabRect = shown.source(point);
    const QImage grabbed = source && !source->isNull() ? source->copy(m_GrabRect).toImage()
                                                       : pictureBehind(m_GrabRect, *m_overlay);
    m_Zoom = grabbed.isNull() ? grabbed : grabbed.scaled(shown.pictureSize());
    m_CenterColor = m_Zoom.isNull() ? qRgb(0, 0, 0) : m_Zoom.pixel(shown.centre());
    m_ui->LblR->setText(u"R: %1"_s.arg(qRed(m_CenterColor)));
    m_ui->LblG->setText(u"G: %1"_s.arg(qGreen(m_CenterColor)));
    m_ui->LblB->setText(u"B: %1"_s.arg(qBlue(m_CenterColor)));
    m_ui->LblHex->setText(u"%1"_s.arg(m_CenterColor & RGB_MASK, 6, 16, QChar(u'0')));
    m_ui->m_Label->update();
}

bool DigDetail::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_ui->m_Label && event->type() == QEvent::Paint)
        paintView();
    if (watched == m_ui->label && event->type() == QEvent::Paint) {
        paintHelp();
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

// Distributes the lines over the available height; the font's own line spacing would need more
// height or a smaller font.
void DigDetail::paintHelp()
{
    QPainter painter(m_ui->label);
    painter.setPen(m_ui->label->palette().color(QPalette::WindowText));
    const QStringList lines = m_ui->label->text().split(u'\n');
    const qreal pitch = m_ui->label->height() / static_cast<qreal>(lines.size());
    QRectF line(0, 0, m_ui->label->width(), pitch);
    for (const QString &text : lines) {
        painter.drawText(line, Qt::AlignVCenter | Qt::TextDontClip, text);
        line.translate(0, pitch);
    }
}

// The frame separates the panel from a light desktop.
void DigDetail::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setPen(Palette::magnifierFrame);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

// Ignores keys, which belong to the overlay.
void DigDetail::keyPressEvent(QKeyEvent * /*event*/) {}

void DigDetail::paintView()
{
    const MagnifierView shown = view();
    QPainter painter(m_ui->m_Label);
    painter.scale(1 / devicePixelRatioF(), 1 / devicePixelRatioF());
    const QRect whole(QPoint(), shown.pictureSize());
    const QRect visible = shown.visible(m_GrabRect, m_Desktop);
    if (visible != whole)
        painter.fillRect(whole, Qt::black);
    painter.drawImage(visible, m_Zoom, visible);
    painter.setPen(QPen(Palette::magnifierFrame, 2));
    painter.drawRect(QRect(visible.topLeft() + QPoint(1, 1), visible.bottomRight() - QPoint(1, 1)));
    painter.setPen(QColor::fromRgb(~m_CenterColor | 0xff000000U));
    painter.drawRect(shown.centreMark());
}
