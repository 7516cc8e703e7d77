#include "shell/canvasdialog.h"

#include "base/palette.h"
#include "shell/colorpopup.h"

#include <QButtonGroup>
#include <QFormLayout>
#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QSpinBox>
#include <QToolButton>
#include <QtMath>

#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_columns = 3;
constexpr int s_centre = 4;
constexpr QSize s_anchorSize(32, 32);  // logical pixels

constexpr std::array s_anchorNames{
    QT_TRANSLATE_NOOP("CanvasDialog", "Top left"),    QT_TRANSLATE_NOOP("CanvasDialog", "Top"),
    QT_TRANSLATE_NOOP("CanvasDialog", "Top right"),   QT_TRANSLATE_NOOP("CanvasDialog", "Left"),
    QT_TRANSLATE_NOOP("CanvasDialog", "Centre"),      QT_TRANSLATE_NOOP("CanvasDialog", "Right"),
    QT_TRANSLATE_NOOP("CanvasDialog", "Bottom left"), QT_TRANSLATE_NOOP("CanvasDialog", "Bottom"),
    QT_TRANSLATE_NOOP("CanvasDialog", "Bottom right")};

// A dot where the picture is, and elsewhere an arrow that points there from the middle.
QIcon iconOf(int anchor, qreal scale)
{
    const QSize size = s_anchorSize / 2;
    QIcon icon;
    for (const auto state : {QIcon::Off, QIcon::On}) {
        QPixmap pixmap(size * scale);
        pixmap.setDevicePixelRatio(scale);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF field(QPointF(), size);
        if (state == QIcon::On) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(Palette::accentDown);
            painter.drawRoundedRect(field.adjusted(1, 1, -1, -1), 3, 3);
        } else if (anchor != s_centre) {
            painter.setPen(
                QPen(Palette::nameOnBoth, 1.75, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
            painter.translate(field.center());
            const QPoint way(anchor % s_columns - 1, anchor / s_columns - 1);
            painter.rotate(qRadiansToDegrees(std::atan2(way.y(), way.x())));
            painter.drawPolyline(QPolygonF{{1, -4}, {5, 0}, {1, 4}});
            painter.drawLine(-5, 0, 5, 0);
        }
        painter.end();
        icon.addPixmap(pixmap, QIcon::Normal, state);
    }
    return icon;
}

// How much of a side's new pixels come before the picture: nothing, half of them or all.
int before(int added, int place) { return added * place / 2; }

}  // namespace

CanvasDialog::CanvasDialog(QSize picture, QWidget *parent)
    : SizeDialog(tr("Canvas Size"), parent), m_picture(picture), m_width(new QSpinBox),
      m_height(new QSpinBox), m_anchors(new QButtonGroup(this)), m_button(new QPushButton)
{
    m_width->setObjectName(u"SpinWidth"_s);
    m_height->setObjectName(u"SpinHeight"_s);
    for (QSpinBox *field : {m_width, m_height}) {
        field->setRange(1, s_mostPixels);
        field->setValue(field == m_width ? picture.width() : picture.height());
        connect(field, &QSpinBox::valueChanged, this, &CanvasDialog::check);
    }
    form().addRow(tr("&Width"), m_width);
    form().addRow(tr("&Height"), m_height);
    addAnchors();
    m_button->setObjectName(u"BtnGround"_s);
    form().addRow(tr("&Ground"), m_button);
    connect(m_button, &QPushButton::clicked, this, [this] {
        ColorPopup::open(*m_button, m_ground, [this](const QColor &color) { setGround(color); });
    });
    setGround(m_ground);
    check();
    m_width->setFocus();
    m_width->selectAll();
}

// As one group the buttons are one stop for Tab, and the arrow keys go through them.
void CanvasDialog::addAnchors()
{
    auto *field = new QWidget;
    auto *grid = new QGridLayout(field);
    grid->setContentsMargins({});
    grid->setSpacing(2);
    for (int i = 0; i < int(s_anchorNames.size()); ++i) {
        auto *button = new QToolButton;
        button->setCheckable(true);
        button->setFixedSize(s_anchorSize);
        button->setIcon(iconOf(i, devicePixelRatioF()));
        button->setIconSize(s_anchorSize / 2);
        button->setFocusPolicy(i == s_centre ? Qt::StrongFocus : Qt::ClickFocus);
        button->setAccessibleName(tr(s_anchorNames.at(i)));
        button->setToolTip(button->accessibleName());
        m_anchors->addButton(button, i);
        grid->addWidget(button, i / s_columns, i % s_columns);
    }
    grid->setColumnStretch(s_columns, 1);
    QAbstractButton *centre = m_anchors->button(s_centre);
    centre->setChecked(true);
    auto *label = new QLabel(tr("&Picture's place"));
    label->setBuddy(centre);
    form().addRow(label, field);
}

void CanvasDialog::setGround(const QColor &color)
{
    m_ground = color;
    ColorPopup::showOn(*m_button, color);
}

QSize CanvasDialog::wanted() const { return {m_width->value(), m_height->value()}; }

QRect CanvasDialog::frame() const
{
    const QSize added = wanted() - m_picture;
    const int place = m_anchors->checkedId();
    return {QPoint(-before(added.width(), place % s_columns),
                   -before(added.height(), place / s_columns)),
            wanted()};
}
