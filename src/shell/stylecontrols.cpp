#include "shell/stylecontrols.h"

#include "editing/pendefaults.h"
#include "editing/pictureeditor.h"
#include "editing/tools/tooltable.h"
#include "shell/colorpopup.h"
#include "shell/preferences.h"
#include "shell/stylemenu.h"
#include "shell/windowreach.h"
#include "ui_mainwindow.h"

#include <QInputDialog>
#include <QSignalBlocker>

#include <algorithm>

namespace {

constexpr int s_widestOffered = 20;  // for tools that share a style, in picture pixels

}  // namespace

StyleControls::StyleControls(Ui::MainWindow &ui, TPictureEditor &editor)
    : QObject(ui.widPictureStyle), m_ui(ui), m_editor(editor),
      m_menu(new StyleMenu(ui.widPictureStyle))
{
    connect(m_menu, &StyleMenu::chosen, this, &StyleControls::change);
    connect(m_menu, &StyleMenu::numberWanted, this, &StyleControls::askForNumber);
    const PenDefaults pen = readPenDefaults();
    editor.setPenColor(pen.color);
    if (pen.width)
        editor.setLineWidth(*pen.width);
    if (pen.font) {
        ui.CmbFont->setCurrentFont(*pen.font);
        const int size = ui.CmbFontSize->findText(QString::number(pen.font->pointSize()));
        if (size >= 0)
            ui.CmbFontSize->setCurrentIndex(size);
    }
    editor.set_m_Font(pen.font ? *pen.font : sized(ui.CmbFont->currentFont()));
    if (Preferences::remembersStyles()) {
        editor.styles().setApart(true);
        readToolStyles(editor.styles());
    }
    refresh();
}

void StyleControls::refresh()
{
    showWidth();
    emit refreshed();
}

// A tool with a style of its own may draw far wider than the others. The slider goes no further
// than what anybody wants of a tool; a setting may have brought more, which the number tells.
void StyleControls::showWidth()
{
    int widest = s_widestOffered;
    for (const Tool *tool : toolsInHand())
        widest = std::max(widest, 2 * tool->ownWidth);
    const QSignalBlocker blocker(m_ui.SliderLineWidth);
    m_ui.SliderLineWidth->setMaximum(widest - 1);
    m_ui.SliderLineWidth->setValue(m_editor.getLineWidth() - 1);
    const auto text = [](int width) { return tr("%1 px").arg(width); };
    m_ui.lblLineWidth->setText(text(m_editor.getLineWidth()));
    m_ui.SliderLineWidth->setAccessibleDescription(m_ui.lblLineWidth->text());
    // What is beside it stays where it is.
    m_ui.lblLineWidth->setMinimumWidth(
        m_ui.lblLineWidth->fontMetrics().horizontalAdvance(text(100)));
}

// Those of the shapes that are chosen, else the one with which the user draws.
QList<const Tool *> StyleControls::toolsInHand() const
{
    QList<const Tool *> tools;
    for (const EntryPtr &shape : m_editor.chosen())
        tools.append(&toolOf(shape->geometry));
    return tools.isEmpty() ? QList{&toolOf(m_editor.getState())} : tools;
}

void StyleControls::askForNumber()
{
    bool isChosen = false;
    const int number =
        QInputDialog::getInt(m_ui.widPictureStyle->window(), tr("Next Number"),
                             tr("Number of the next marker, or of the one that is "
                                "chosen:"),
                             m_editor.nextNumber(), 1, MarkerShape::s_highest, 1, &isChosen);
    if (isChosen)
        m_editor.setNextNumber(number);
}

void StyleControls::remember(bool isRemembering)
{
    ToolStyles &styles = m_editor.styles();
    if (styles.isApart() == isRemembering)
        return;
    styles.setApart(isRemembering);
    // What each tool draws with now is what it will draw with at the next start.
    for (const Tool *tool : allTools()) {
        if (isRemembering)
            storeToolStyle(*tool, styles);
    }
    refresh();
}

// What the first tools share is kept by itself. A tool with a style of its own begins with its
// first one, unless each is remembered.
void StyleControls::store(const std::function<void()> &shared) const
{
    const Tool &tool = toolOf(m_editor.getState());
    // What is chosen has its own style, and the pen keeps its.
    if (m_editor.hasSelection())
        return;
    if (m_editor.styles().isApart())
        storeToolStyle(tool, m_editor.styles());
    else if (tool.ownWidth == 0)
        shared();
}

void StyleControls::setWidth(int width)
{
    m_editor.setLineWidth(width);
    store([width] { storeLineWidth(width); });
    refresh();
}

void StyleControls::setColor(const QColor &color)
{
    m_editor.setPenColor(color);
    store([&color] { storeLineColor(color); });
    refresh();
}

void StyleControls::setFont(const QFont &font)
{
    m_editor.set_m_Font(font);
    if (!m_editor.hasSelection())
        storeTextFont(font);
}

void StyleControls::change(const std::function<void(EditMsg &)> &change)
{
    m_editor.changeStyle(change);
    store([] {});
    refresh();
}

void StyleControls::offerColors()
{
    ColorPopup::open(*m_ui.BtnColor, m_editor.getPenColor(),
                     [this](const QColor &color) { setColor(color); });
    emit refreshed();
}

void StyleControls::offerStyles()
{
    unsigned uses = 0;
    for (const Tool *tool : toolsInHand())
        uses |= tool->uses;
    m_menu->follow(m_editor.style(), uses);
    m_menu->popup(placeBeside(*m_ui.BtnStyle, m_menu->sizeHint()));
    emit refreshed();
}

QFont StyleControls::sized(const QFont &font) const
{
    QFont result = font;
    if (const int size = m_ui.CmbFontSize->currentText().toInt(); size > 0)
        result.setPointSize(size);
    return result;
}
