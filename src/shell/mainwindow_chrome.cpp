#include "shell/mainwindow.h"

#include "platform/services.h"
#include "shell/focusring.h"
#include "shell/stripfold.h"
#include "ui_mainwindow.h"

#include <QApplication>
#include <QBitmap>
#include <QMouseEvent>
#include <QPainter>
#include <QTabBar>

using namespace Qt::StringLiterals;

namespace {

constexpr QColor s_bodyColor(35, 40, 45);
constexpr QColor s_tableColor(231, 238, 244);
constexpr QColor s_topBandColor(252, 253, 254);
constexpr QColor s_stripColor(223, 230, 236);
constexpr QColor s_stripEdgeColor(176, 183, 189);

constexpr QColor s_captionColor(215, 222, 228);
constexpr int s_captionSize = 13;  // pixels

constexpr QColor s_inkOnDark(201, 211, 220);
constexpr QColor s_inkOnBright(70, 82, 94);

constexpr int s_grip = 11;  // pixels at the corner that resizes

void drawIfThere(QPainter &painter, const QPoint &position, const QPixmap &pixmap)
{
    if (!pixmap.isNull())
        painter.drawPixmap(position, pixmap);
}

}  // namespace

// The caption and the menu bar stand on the body's colour of their own: a skin without the picture
// for the body must not take the ground from under bright letters.
void MainWindow::setUpCaption()
{
    QPalette palette = ui->LblCaption->palette();
    palette.setColor(QPalette::WindowText, s_captionColor);
    palette.setColor(QPalette::Window, s_bodyColor);
    ui->LblCaption->setPalette(palette);
    ui->LblCaption->setAutoFillBackground(true);
    QFont font = ui->LblCaption->font();
    font.setPixelSize(s_captionSize);
    ui->LblCaption->setFont(font);
}

void MainWindow::setUpPictureArea()
{
    QPalette palette = ui->WidScrollArea->palette();
    palette.setColor(QPalette::Window, s_tableColor);
    for (QWidget *widget : {ui->WidScrollArea, static_cast<QWidget *>(ui->scrollArea),
                            ui->scrollAreaWidgetContents, static_cast<QWidget *>(ui->lblPicture)})
        widget->setPalette(palette);
    ui->WidScrollArea->hide();
    new FocusRing(ui->scrollArea);
    for (QWidget *widget : {static_cast<QWidget *>(ui->tabWidget), ui->widTool, ui->widPictureEdit,
                            ui->widPicture, static_cast<QWidget *>(ui->scrollArea)})
        widget->installEventFilter(this);
    // The buttons stay as large as they are, and the boxes beside them grow with their font.
    for (int i = 0; i < ui->layPictureEdit->count(); ++i)
        ui->layPictureEdit->itemAt(i)->setAlignment(Qt::AlignVCenter);
}

// What is needed least, or has its keys, leaves first.
void MainWindow::setUpStrips()
{
    const auto isTool = [this](const QAbstractButton &button) { return isChosenTool(button); };
    new StripFold(
        ui->widPictureEdit,
        {{ui->CmbFont, ui->CmbFontSize},
         {ui->lblSep3, ui->BtnZoomIn, ui->BtnZoomOut, ui->BtnRealSize},
         {ui->lblLineMin, ui->SliderLineWidth, ui->lblLineMax},
         {ui->BtnColor},
         {ui->lblSep2, ui->BtnUndo, ui->BtnRedo},
         {ui->BtnCopy, ui->BtnSave},
         {ui->lblSep1, ui->BtnDrawText},
         {ui->BtnDrawPoly},
         {ui->BtnDrawArrow},
         {ui->BtnDrawEllipse}},
        {u"FoldPictureEdit"_s, tr("More tools"), tr("Ctrl+Shift+E"), s_inkOnBright, Qt::white},
        isTool);
    new StripFold(
        ui->widTool,
        {{ui->lblComm},
         {ui->BtnMenuCapture},
         {ui->BtnFullScreen},
         {ui->BtnAllWindows},
         {ui->BtnSelectWindow},
         {ui->BtnFramePolygon},
         {ui->BtnFrameEllipse}},
        {u"FoldTool"_s, tr("More commands"), tr("Ctrl+Shift+G"), s_inkOnDark, s_bodyColor}, isTool);
}

// A picture whose file is missing is asked for again at each paint.
const QPixmap &MainWindow::skinPicture(const QString &section, int attribute)
{
    QPixmap &picture = m_SkinPictures[{section, attribute}];
    if (picture.isNull())
        LoadPixmapFromXml(picture, section, attribute);
    return picture;
}

void MainWindow::paintEvent(QPaintEvent * /*event*/)
{
    const QString section = u"BtnBackground"_s;
    const QPixmap &topLeft = skinPicture(section, 4);
    const QPixmap &topRight = skinPicture(section, 6);
    const QPixmap &bottomLeft = skinPicture(section, 5);
    const QPixmap &bottomRight = skinPicture(section, 7);
    const int w = width();
    const int h = height();
    QPainter painter(this);
    // One picture's width serves all four corners, and without it the body stays bare.
    const int c = topLeft.width();
    if (c > 0 && m_isComposited && !GetMaximized()) {
        painter.fillRect(QRect(c, 0, w - 2 * c, h), s_bodyColor);
        painter.fillRect(QRect(0, c, c, h - 2 * c), s_bodyColor);
        painter.fillRect(QRect(w - c, c, c, h - 2 * c), s_bodyColor);
    } else if (c > 0) {
        // Corners that are cut need the body behind their soft edges.
        painter.fillRect(rect(), s_bodyColor);
    } else if (!m_isComposited) {
        painter.fillRect(rect(), palette().window());
    }
    drawIfThere(painter, {0, 0}, topLeft);
    drawIfThere(painter, {w - topRight.width(), 0}, topRight);
    drawIfThere(painter, {0, h - bottomLeft.height()}, bottomLeft);
    drawIfThere(painter, {w - bottomRight.width(), h - bottomRight.height()}, bottomRight);
}

void MainWindow::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    cutCorners();
    saveSettingsSoon();
}

void MainWindow::cutCorners()
{
    if (m_isComposited || GetMaximized()) {
        clearMask();
        return;
    }
    const QString section = u"BtnBackground"_s;
    QRegion shape(rect());
    const auto cut = [this, &shape](const QPixmap &corner, bool right, bool bottom) {
        const QPoint place(right ? width() - corner.width() : 0,
                           bottom ? height() - corner.height() : 0);
        if (!corner.hasAlphaChannel())
            return;
        // What is more than half there stays.
        const QBitmap solid = QBitmap::fromImage(
            corner.toImage().createAlphaMask(Qt::MonoOnly | Qt::ThresholdDither));
        shape -= QRegion(QRect(place, corner.size())) - QRegion(solid).translated(place);
    };
    cut(skinPicture(section, 4), false, false);
    cut(skinPicture(section, 6), true, false);
    cut(skinPicture(section, 5), false, true);
    cut(skinPicture(section, 7), true, true);
    setMask(shape);
}

void MainWindow::followCompositor()
{
    m_isComposited = services().windows->isComposited();
    cutCorners();
    update();
}

void MainWindow::DrawToolBackgound()
{
    const QString section = u"BtnToolBackground"_s;
    const QPixmap &leftEnd = skinPicture(section, 4);
    const QPixmap &rightEnd = skinPicture(section, 6);
    const QPixmap &tile = skinPicture(section, 5);
    const int w = ui->widTool->width();
    QPainter painter(ui->widTool);
    if (const int t = tile.width(); t > 0) {
        for (int i = 0; i < w / t + 1; ++i)
            painter.drawPixmap(t * i, 0, tile);
    }
    drawIfThere(painter, {0, 0}, leftEnd);
    drawIfThere(painter, {w - rightEnd.width(), 0}, rightEnd);
}

void MainWindow::DrawPictureBackgound()
{
    const QString section = u"BtnPictureBackground"_s;
    const QPixmap &topLeft = skinPicture(section, 5);
    const QPixmap &topRight = skinPicture(section, 4);
    const QPixmap &bottomLeft = skinPicture(section, 7);
    const QPixmap &bottomRight = skinPicture(section, 6);
    const int w = ui->widPicture->width();
    const int h = ui->widPicture->height();
    QPainter painter(ui->widPicture);
    painter.fillRect(QRect(0, 0, w, h), s_tableColor);
    painter.fillRect(QRect(0, 0, w, 12), s_topBandColor);
    painter.fillRect(QRect(0, 13, w, 14), s_stripColor);
    painter.setPen(s_stripEdgeColor);
    painter.drawLine(0, 26, w, 26);
    // The corners reach beyond the widget, by as much as their pictures are drawn for.
    drawIfThere(painter, {-2, 0}, topLeft);
    drawIfThere(painter, {w + 4 - topRight.width(), 0}, topRight);
    drawIfThere(painter, {-2, h + 3 - bottomLeft.height()}, bottomLeft);
    drawIfThere(painter, {w + 4 - bottomRight.width(), h + 3 - bottomRight.height()}, bottomRight);
}

// Any point of the window that no child takes moves it; its far corner resizes it.
bool MainWindow::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::ApplicationFontChange:
        // A new font does not reach what a style sheet is in force for. The tabs take theirs from
        // the widget that has the sheet: newer toolkits take back at once what is set on the bar
        // itself.
        for (QWidget *widget :
             {ui->layMenuBar->itemAt(0)->widget(), static_cast<QWidget *>(ui->tabWidget),
              static_cast<QWidget *>(ui->CmbFont), static_cast<QWidget *>(ui->CmbFontSize)})
            widget->setFont(QApplication::font());
        break;
    case QEvent::ScreenChangeInternal:
        holdToScreen();
        // The other screen may have another scale.
        PictureChanged(TPictureEditor::SizeChange, 0);
        break;
    // A press that follows another one soon is a press all the same.
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonPress: {
        const auto *mouse = static_cast<QMouseEvent *>(event);
        if (mouse->button() != Qt::LeftButton)
            break;
        const QPoint pos = mouse->position().toPoint();
        const bool inGrip = pos.x() > width() - 1 - s_grip && pos.y() > height() - 1 - s_grip;
        m_Drag = inGrip ? Drag::Resize : Drag::Move;
        m_DragPos = pos;
        m_DragSize = size();
        break;
    }
    case QEvent::MouseMove: {
        const auto *mouse = static_cast<QMouseEvent *>(event);
        if (m_Drag == Drag::Move) {
            // From the pointer's place on the desktop: its place in the window lags behind the
            // window's own moves, and counting from that would overshoot.
            const QPoint origin = mouse->globalPosition().toPoint() - m_DragPos;
            move(pos() + origin - geometry().topLeft());
        } else if (m_Drag == Drag::Resize) {
            // From the size at the press: the window manager's answers come later than the moves,
            // and differences added up would lose some.
            const QPoint moved = mouse->position().toPoint() - m_DragPos;
            resize(m_DragSize + QSize(moved.x(), moved.y()));
        }
        break;
    }
    case QEvent::MouseButtonRelease:
        m_Drag = Drag::None;
        break;
    default:
        break;
    }
    return QMainWindow::event(event);
}
