#include "shell/windowface.h"

#include "base/palette.h"
#include "editing/pictureeditor.h"
#include "editing/tools/tooltable.h"
#include "platform/applicationwatch.h"
#include "shell/stripfold.h"
#include "ui_mainwindow.h"

#include <QApplication>
#include <QEvent>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_captionSize = 13;     // pixels
constexpr size_t s_lastingTools = 2;  // that never leave their strip
const QString s_chosen = u"_Sel"_s;   // ends the sections of chosen tools

}  // namespace

WindowFace::WindowFace(Ui::MainWindow &ui, QWidget &window, Skin &skin,
                       const TPictureEditor &editor)
    : m_ui(ui), m_window(window), m_skin(skin), m_editor(editor)
{
    setUpCaption();
    setUpLabels();
    setUpStrips();
    for (const Tool *tool : allTools()) {
        const QString section = QString::fromLatin1(tool->button);
        const QString glyph = QString::fromLatin1(tool->glyph);
        m_skin.setGlyph(section, glyph);
        m_skin.setGlyph(section + s_chosen, glyph + s_chosen);
    }
    m_skin.setGlyph(m_ui.BtnStyle->objectName(), u"style"_s);
    for (auto *button : window.findChildren<SkinButton *>())
        leave(*button);
}

// The caption and the menu bar stand on the body's colour of their own: a skin without the picture
// for the body must not take the ground from under bright letters.
void WindowFace::setUpCaption()
{
    QPalette palette = m_ui.LblCaption->palette();
    palette.setColor(QPalette::WindowText, Palette::textOnDark);
    palette.setColor(QPalette::Window, Palette::dark);
    m_ui.LblCaption->setPalette(palette);
    m_ui.LblCaption->setAutoFillBackground(true);
    QFont font = m_ui.LblCaption->font();
    font.setPixelSize(s_captionSize);
    m_ui.LblCaption->setFont(font);
}

void WindowFace::setUpLabels()
{
    const auto label = [this](QLabel *target, const QString &section, SkinAttribute attribute) {
        QPixmap pixmap;
        m_skin.load(pixmap, section, attribute);
        target->setPixmap(pixmap);
    };
    label(m_ui.lblComm, u"BtnCommBackground"_s, SkinNormal);
    label(m_ui.lblLineMin, u"BtnLineWidth"_s, SkinNormal);
    label(m_ui.lblLineMax, u"BtnLineWidth"_s, SkinDown);
    for (QLabel *separator : {m_ui.lblSep1, m_ui.lblSep2, m_ui.lblSep3, m_ui.lblSep4})
        label(separator, u"BtnSep"_s, SkinNormal);
    m_ui.tabWidget->setStyleSheet(m_ui.tabWidget->styleSheet() + m_skin.tabCloseRules());
    m_ui.widSysTool->hide();
    // The buttons stay as large as they are, and the boxes beside them grow with their font.
    for (const QLayout *row : {m_ui.layPictureEdit, m_ui.layPictureStyle}) {
        for (int i = 0; i < row->count(); ++i)
            row->itemAt(i)->setAlignment(Qt::AlignVCenter);
    }
}

// What is needed least, or has its keys, leaves first.
void WindowFace::setUpStrips()
{
    const auto isTool = [this](const QAbstractButton &button) { return isChosenTool(button); };
    QList<StripFold::Unit> units{{m_ui.CmbZoom},
                                 {m_ui.lblSep3, m_ui.BtnZoomIn, m_ui.BtnZoomOut, m_ui.BtnRealSize},
                                 {m_ui.lblSep2, m_ui.BtnUndo, m_ui.BtnRedo},
                                 {m_ui.BtnCopy, m_ui.BtnSave}};
    for (size_t i = allTools().size(); i-- > s_lastingTools;)
        units.append({toolButton(*allTools()[i])});
    new StripFold(m_ui.widPictureEdit, units,
                  {u"FoldPictureEdit"_s, tr("More tools"), tr("Ctrl+Shift+E"),
                   Palette::glyphOnBright, Qt::white},
                  isTool);
    new StripFold(
        m_ui.widPictureStyle,
        {{m_ui.lblPictureSize},
         {m_ui.lblSep4, m_ui.CmbFont, m_ui.CmbFontSize},
         {m_ui.BtnStyle},
         {m_ui.lblLineMin, m_ui.SliderLineWidth, m_ui.lblLineMax, m_ui.lblLineWidth, m_ui.lblSep1}},
        {u"FoldPictureStyle"_s, tr("More styles"), tr("Ctrl+Shift+T"), Palette::glyphOnBright,
         Qt::white},
        isTool);
    new StripFold(m_ui.widTool,
                  {{m_ui.lblComm},
                   {m_ui.BtnMenuCapture},
                   {m_ui.BtnFullScreen},
                   {m_ui.BtnAllWindows},
                   {m_ui.BtnSelectWindow},
                   {m_ui.BtnFramePolygon},
                   {m_ui.BtnFrameEllipse}},
                  {u"FoldTool"_s, tr("More commands"), tr("Ctrl+Shift+G"), Palette::glyphOnDark,
                   Palette::dark},
                  isTool);
}

// A new font does not reach what a style sheet is in force for. The tabs take theirs from the
// widget that has the sheet: newer toolkits take back at once what is set on the bar itself.
void WindowFace::followFont()
{
    for (QWidget *widget :
         {m_ui.layMenuBar->itemAt(0)->widget(), static_cast<QWidget *>(m_ui.tabWidget),
          static_cast<QWidget *>(m_ui.CmbFont), static_cast<QWidget *>(m_ui.CmbFontSize),
          static_cast<QWidget *>(m_ui.lblLineWidth), static_cast<QWidget *>(m_ui.CmbZoom),
          static_cast<QWidget *>(m_ui.lblPictureSize)})
        widget->setFont(QApplication::font());
}

QPushButton *WindowFace::toolButton(const Tool &tool) const
{
    return m_window.findChild<QPushButton *>(QLatin1StringView(tool.button));
}

bool WindowFace::isChosenTool(const QAbstractButton &button) const
{
    return button.objectName() == QLatin1StringView(toolOf(m_editor.getState()).button);
}

bool WindowFace::takes(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Paint && watched == m_ui.widTool)
        m_skin.paintCaptureStrip(*m_ui.widTool);
    else if (event->type() == QEvent::Paint && watched == m_ui.widPicture)
        m_skin.paintTable(*m_ui.widPicture);
    auto *button = qobject_cast<SkinButton *>(watched);
    const auto state = button ? stateAfter(*button, *event) : std::nullopt;
    if (!state)
        return false;
    show(*button, *state);
    if (event->type() != QEvent::MouseButtonRelease)
        return false;
    button->setDown(false);
    button->click();
    return true;
}

void WindowFace::show(QPushButton &button, SkinAttribute state)
{
    const bool isControl =
        &button == m_ui.BtnClose || &button == m_ui.BtnMax || &button == m_ui.BtnMin;
    if (isControl && state == SkinNormal && !IsAppActive())
        state = SkinDisabled;
    const QString section = button.objectName() + (isChosenTool(button) ? s_chosen : QString());
    const qreal scale = m_window.devicePixelRatioF();
    // A picture that can't be read leaves the button with the one that it had.
    const auto fill =
        &button == m_ui.BtnColor ? std::optional(m_editor.getPenColor()) : std::nullopt;
    const auto look = button.isEnabled() ? m_skin.look(section, state, scale, fill)
                                         : m_skin.greyedLook(section, scale);
    if (!look)
        return;
    button.setIconSize(button.size());
    button.setIcon(*look);
}

void WindowFace::leave(QPushButton &button) { show(button, SkinNormal); }

void WindowFace::updateTools(QPushButton *over)
{
    for (const Tool *tool : allTools())
        leave(*toolButton(*tool));
    if (over)
        show(*over, SkinOver);
}

void WindowFace::updateTool(const Tool &tool) { leave(*toolButton(tool)); }

void WindowFace::updateControls()
{
    for (QPushButton *button : {m_ui.BtnClose, m_ui.BtnMax, m_ui.BtnMin})
        leave(*button);
}
