#include "shell/zoombox.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QLocale>
#include <QRegularExpression>
#include <QWheelEvent>

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array s_offered{0.25F, 0.5F, 1.0F, 2.0F, 4.0F, 8.0F};
// The frame, the arrow and their margins, in logical pixels.
constexpr int s_besideText = 38;
// Below, a percentage needs a digit after the point.
constexpr float s_small = 0.1F;

}  // namespace

ZoomBox::ZoomBox(QWidget *parent) : QComboBox(parent)
{
    setEditable(true);
    setInsertPolicy(QComboBox::NoInsert);
    setCompleter(nullptr);
    addItem(tr("Fit"), 0.0F);
    for (const float zoom : s_offered)
        addItem(textOf(zoom), zoom);
    connect(this, &QComboBox::activated, this, [this](int index) {
        const float zoom = itemData(index).toFloat();
        if (zoom > 0)
            emit zoomWanted(zoom);
        else
            emit fitWanted();
        // What was chosen may not be what is in force.
        showZoom(m_zoom);
        emit left();
    });
    showZoom(0);
}

void ZoomBox::showZoom(float zoom)
{
    m_zoom = zoom;
    setEnabled(zoom > 0);
    setCurrentIndex(findData(zoom > 0 ? zoom : -1));
    setEditText(zoom > 0 ? textOf(zoom) : QString());
}

QSize ZoomBox::sizeHint() const
{
    const int text = fontMetrics().horizontalAdvance(textOf(s_offered.back()));
    return {text + s_besideText, QComboBox::sizeHint().height()};
}

QString ZoomBox::textOf(float zoom)
{
    const double percent = static_cast<double>(zoom) * 100;
    return tr("%1%").arg(QLocale().toString(percent, 'f', zoom < s_small ? 1 : 0));
}

// Whatever stands around a number. What is none leaves the zoom as it is.
void ZoomBox::take()
{
    static const QRegularExpression s_number(u"\\d+([.,]\\d+)?"_s);
    const QString number = s_number.match(currentText()).captured().replace(u',', u'.');
    if (const float zoom = number.toFloat() / 100; zoom > 0)
        emit zoomWanted(zoom);
    showZoom(m_zoom);
}

void ZoomBox::focusOutEvent(QFocusEvent *event)
{
    QComboBox::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason)
        showZoom(m_zoom);
}

void ZoomBox::keyPressEvent(QKeyEvent *event)
{
    const int key = event->key();
    const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (isPlain && (key == Qt::Key_Return || key == Qt::Key_Enter)) {
        take();
        emit left();
    } else if (isPlain && key == Qt::Key_Escape) {
        showZoom(m_zoom);
        emit left();
    } else if (isPlain && (key == Qt::Key_Up || key == Qt::Key_Down)) {
        emit stepWanted(key == Qt::Key_Up ? 1 : -1);
        lineEdit()->selectAll();
    } else {
        QComboBox::keyPressEvent(event);
    }
}

// Over the box it zooms as over the picture, but for the place that stays.
void ZoomBox::wheelEvent(QWheelEvent *event)
{
    if (m_zoom > 0 && event->angleDelta().y() != 0)
        emit stepWanted(event->angleDelta().y() > 0 ? 1 : -1);
    event->accept();
}
