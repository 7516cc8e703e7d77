#include "shell/fontbox.h"

#include <QAbstractItemView>
#include <QFontDatabase>
#include <QLineEdit>
#include <QScreen>
#include <QScrollBar>
#include <QSignalBlocker>

#include <algorithm>

FontBox::FontBox(QWidget *parent) : QComboBox(parent), m_font(font())
{
    setEditable(true);
    setInsertPolicy(QComboBox::NoInsert);
    setEditText(m_font.family());
    connect(this, &QComboBox::textActivated, this, &FontBox::choose);
    connect(lineEdit(), &QLineEdit::editingFinished, this, [this] { choose(currentText()); });
}

void FontBox::setCurrentFont(const QFont &font)
{
    const bool changed = font != m_font;
    m_font = font;
    setEditText(font.family());
    if (changed)
        emit currentFontChanged(m_font);
}

void FontBox::showPopup()
{
    fill();
    // The list is as wide as the box, and cuts longer names, unless it is told otherwise.
    const int beside = 2 * view()->frameWidth() + view()->verticalScrollBar()->sizeHint().width();
    view()->setMinimumWidth(
        std::min(view()->sizeHintForColumn(0) + beside, screen()->availableSize().width()));
    QComboBox::showPopup();
}

void FontBox::focusInEvent(QFocusEvent *event)
{
    fill();
    QComboBox::focusInEvent(event);
}

void FontBox::fill()
{
    if (m_filled)
        return;
    m_filled = true;
    const QSignalBlocker blocker(this);
    const QString family = currentText();
    for (const QString &name : QFontDatabase::families()) {
        if (!QFontDatabase::isPrivateFamily(name))
            addItem(name);
    }
    setCurrentIndex(findText(family));
    setEditText(family);
}

// A family that doesn't exist leaves the font as it is.
void FontBox::choose(const QString &family)
{
    fill();
    const int index = findText(family, Qt::MatchFixedString);
    if (index < 0) {
        setEditText(m_font.family());
        return;
    }
    QFont font = m_font;
    font.setFamily(itemText(index));
    setCurrentFont(font);
}
