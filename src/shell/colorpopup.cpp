#include "shell/colorpopup.h"

#include "base/palette.h"
#include "editing/pendefaults.h"
#include "editing/tools/tool.h"
#include "shell/windowreach.h"

#include <QAbstractButton>
#include <QColorDialog>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>

#include <algorithm>
#include <array>
#include <utility>

namespace {

// Logical pixels.
constexpr int s_swatch = 30;
constexpr qreal s_inset = 4;
constexpr qreal s_radius = 4;
constexpr int s_field = 16;  // logical pixels
constexpr int s_margin = 10;
constexpr int s_columns = 8;

struct Named {
    QRgb color = 0;
    const char *name = nullptr;
};

// The least that two of them differ, for the usual eye and for those that lack one of the three
// receptors, is as large as it gets with sixteen that have a name: 17 in CIELAB.
constexpr std::array s_palette{Named{0x000000, QT_TRANSLATE_NOOP("ColorPopup", "Black")},
                               Named{0x4d4d4d, QT_TRANSLATE_NOOP("ColorPopup", "Dark grey")},
                               Named{0xc8c8c8, QT_TRANSLATE_NOOP("ColorPopup", "Light grey")},
                               Named{0xffffff, QT_TRANSLATE_NOOP("ColorPopup", "White")},
                               Named{0x10206e, QT_TRANSLATE_NOOP("ColorPopup", "Dark blue")},
                               Named{0x0066ff, QT_TRANSLATE_NOOP("ColorPopup", "Blue")},
                               Named{0x4cc3ff, QT_TRANSLATE_NOOP("ColorPopup", "Light blue")},
                               Named{0x7b2fbf, QT_TRANSLATE_NOOP("ColorPopup", "Purple")},
                               Named{0x800000, QT_TRANSLATE_NOOP("ColorPopup", "Dark red")},
                               Named{0xff0000, QT_TRANSLATE_NOOP("ColorPopup", "Red")},
                               Named{0xff9a1f, QT_TRANSLATE_NOOP("ColorPopup", "Orange")},
                               Named{0xffe100, QT_TRANSLATE_NOOP("ColorPopup", "Yellow")},
                               Named{0x006b3c, QT_TRANSLATE_NOOP("ColorPopup", "Dark green")},
                               Named{0x00a651, QT_TRANSLATE_NOOP("ColorPopup", "Green")},
                               Named{0x98e69a, QT_TRANSLATE_NOOP("ColorPopup", "Light green")},
                               Named{0xcc79a7, QT_TRANSLATE_NOOP("ColorPopup", "Pink")}};

class Swatch : public QAbstractButton
{
public:
    Swatch(const QColor &color, bool isCurrent) : m_color(color), m_isCurrent(isCurrent)
    {
        setFixedSize(s_swatch, s_swatch);
        setFocusPolicy(Qt::StrongFocus);
        setAttribute(Qt::WA_Hover);
        setAccessibleName(ColorPopup::nameOf(color));
        setToolTip(accessibleName());
    }

protected:
    // The arrow keys go by rows and columns, which the popup knows.
    void keyPressEvent(QKeyEvent *event) override
    {
        if (event->key() == Qt::Key_Space)
            QAbstractButton::keyPressEvent(event);
        else
            event->ignore();
    }

    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF plate = QRectF(rect()).adjusted(s_inset, s_inset, -s_inset, -s_inset);
        painter.setPen(Palette::nameOnBoth);
        painter.setBrush(m_color);
        painter.drawRoundedRect(plate.adjusted(0.5, 0.5, -0.5, -0.5), s_radius, s_radius);
        if (m_isCurrent) {
            painter.setPen(
                QPen(contrastTo(m_color), 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
            const QPointF middle = plate.center();
            painter.drawPolyline(QPolygonF{middle + QPointF(-4.5, 0), middle + QPointF(-1.5, 3.5),
                                           middle + QPointF(4.5, -3.5)});
        }
        if (!hasFocus() && !underMouse())
            return;
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(hasFocus() ? Palette::accentDown : Palette::accent, 2));
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), s_radius + 2, s_radius + 2);
    }

private:
    QColor m_color;
    bool m_isCurrent;
};

// Colours that differ more are no shades of one that has a name.
constexpr int s_sameName = 13'000;

// The eye tells a hint of colour from grey where the numbers hardly differ.
bool isGrey(const QColor &color)
{
    constexpr int hint = 32;
    const auto [least, most] = std::minmax({color.red(), color.green(), color.blue()});
    return most - least <= hint;
}

// How much two colours differ for the eye, roughly: green counts most, and red more among reds.
int difference(const QColor &a, QRgb b)
{
    const int red = a.red() - qRed(b);
    const int green = a.green() - qGreen(b);
    const int blue = a.blue() - qBlue(b);
    const int reds = (a.red() + qRed(b)) / 2;
    return (512 + reds) * red * red / 256 + 4 * green * green + (767 - reds) * blue * blue / 256;
}

}  // namespace

void ColorPopup::open(const QWidget &anchor, const QColor &current,
                      std::function<void(const QColor &)> take)
{
    QWidget *window = anchor.window();
    auto *popup = new ColorPopup(window, current);
    const auto use = [take = std::move(take)](const QColor &color) {
        storeRecentColor(color);
        take(color);
    };
    connect(popup, &ColorPopup::chosen, window, use);
    // The dialog has a loop of its own, in which the popup goes.
    connect(
        popup, &ColorPopup::moreWanted, window,
        [window, current, use] {
            if (const QColor color = QColorDialog::getColor(current, window); color.isValid())
                use(color);
        },
        Qt::QueuedConnection);
    popup->move(placeBeside(anchor, popup->sizeHint()));
    popup->show();
    QAbstractButton *first = popup->m_rows.constFirst().constFirst();
    for (const auto &row : std::as_const(popup->m_rows)) {
        for (QAbstractButton *swatch : row) {
            if (swatch->accessibleName() == nameOf(current))
                first = swatch;
        }
    }
    first->setFocus(Qt::PopupFocusReason);
}

QString ColorPopup::nameOf(const QColor &color)
{
    const auto *nearest =
        std::min_element(s_palette.begin(), s_palette.end(), [&](const Named &a, const Named &b) {
            return difference(color, a.color) < difference(color, b.color);
        });
    if (difference(color, nearest->color) > s_sameName || isGrey(color) != isGrey(nearest->color))
        return color.name();
    //: A colour's name and its value, such as "Red, #ff0000".
    return tr("%1, %2").arg(tr(nearest->name), color.name());
}

ColorPopup::ColorPopup(QWidget *window, const QColor &current) : QFrame(window, Qt::Popup)
{
    setObjectName(QStringLiteral("ColorPopup"));
    setAccessibleName(tr("Colours"));
    setAttribute(Qt::WA_DeleteOnClose);
    // A press beside it only closes it, and does not open it again from its button.
    setAttribute(Qt::WA_NoMouseReplay);
    setFrameStyle(QFrame::StyledPanel | QFrame::Plain);
    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(s_margin, s_margin, s_margin, s_margin);
    grid->setSpacing(0);
    addRows(*grid, tr("Last used"), readRecentColors(), current);
    QList<QColor> palette;
    for (const Named &named : s_palette)
        palette.append(QColor(named.color));
    addRows(*grid, tr("Palette"), palette, current);
    auto *more = new QPushButton(tr("&More Colours..."));
    more->setAutoDefault(false);
    grid->setRowMinimumHeight(grid->rowCount(), s_margin);
    grid->addWidget(more, grid->rowCount(), 0, 1, s_columns);
    m_rows.append({more});
    connect(more, &QPushButton::clicked, this, [this] {
        emit moreWanted();
        close();
    });
}

void ColorPopup::addRows(QGridLayout &grid, const QString &title, const QList<QColor> &colors,
                         const QColor &current)
{
    if (colors.isEmpty())
        return;
    if (!m_rows.isEmpty())
        grid.setRowMinimumHeight(grid.rowCount(), s_margin / 2);
    grid.addWidget(new QLabel(title), grid.rowCount(), 0, 1, s_columns);
    for (qsizetype i = 0; i < colors.size(); ++i) {
        const QColor &color = colors.at(i);
        if (i % s_columns == 0)
            m_rows.append(QList<QAbstractButton *>());
        auto *swatch = new Swatch(color, color.rgb() == current.rgb());
        grid.addWidget(swatch, grid.rowCount() - (i % s_columns == 0 ? 0 : 1),
                       static_cast<int>(i % s_columns));
        m_rows.last().append(swatch);
        connect(swatch, &QAbstractButton::clicked, this, [this, color] {
            emit chosen(color);
            close();
        });
    }
}

void ColorPopup::keyPressEvent(QKeyEvent *event)
{
    auto *focused = qobject_cast<QAbstractButton *>(focusWidget());
    const bool isDone = event->key() == Qt::Key_Left    ? moveFocus(-1, 0)
                        : event->key() == Qt::Key_Right ? moveFocus(1, 0)
                        : event->key() == Qt::Key_Up    ? moveFocus(0, -1)
                        : event->key() == Qt::Key_Down  ? moveFocus(0, 1)
                                                        : false;
    if (isDone)
        return;
    if (event->key() == Qt::Key_Escape)
        close();
    else if (focused && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter))
        focused->click();
    else
        QFrame::keyPressEvent(event);
}

bool ColorPopup::moveFocus(int across, int down)
{
    for (qsizetype row = 0; row < m_rows.size(); ++row) {
        const qsizetype column =
            m_rows.at(row).indexOf(qobject_cast<QAbstractButton *>(focusWidget()));
        if (column < 0)
            continue;
        const auto &target = m_rows.at(std::clamp<qsizetype>(row + down, 0, m_rows.size() - 1));
        target.at(std::clamp<qsizetype>(column + across, 0, target.size() - 1))
            ->setFocus(Qt::OtherFocusReason);
        return true;
    }
    return false;
}

void ColorPopup::showOn(QAbstractButton &on, const QColor &color)
{
    const qreal scale = on.devicePixelRatioF();
    QPixmap pixmap(QSize(s_field, s_field) * scale);
    pixmap.fill(Palette::nameOnBoth);
    const int edge = qRound(scale);
    QPainter(&pixmap).fillRect(pixmap.rect().adjusted(edge, edge, -edge, -edge), color);
    pixmap.setDevicePixelRatio(scale);
    on.setIcon(pixmap);
    on.setText(nameOf(color));
}
