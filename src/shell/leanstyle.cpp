#include "shell/leanstyle.h"

#include "base/palette.h"

#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QStyleOption>

#include <algorithm>

namespace {

constexpr int s_titleRoom = 6;  // logical pixels

// The two chevrons of a bar that does not show all that it holds.
class MoreIcon : public QIconEngine
{
public:
    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode,
               QIcon::State /*state*/) override
    {
        constexpr qreal unit = 1.0 / 12;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.topLeft());
        painter->scale(rect.width() * unit, rect.height() * unit);
        painter->setPen(QPen(mode == QIcon::Disabled ? Qt::gray : Palette::glyphOnDark, 1.2,
                             Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        for (const qreal x : {2.5, 6.5})
            painter->drawPolyline(QPolygonF({{x, 3}, {x + 3, 6}, {x, 9}}));
        painter->restore();
    }
    QIconEngine *clone() const override { return new MoreIcon; }
};

}  // namespace

QIcon LeanStyle::standardIcon(StandardPixmap standardIcon, const QStyleOption *option,
                              const QWidget *widget) const
{
    if (standardIcon == SP_ToolBarHorizontalExtensionButton)
        return QIcon(new MoreIcon);
    return QProxyStyle::standardIcon(standardIcon, option, widget);
}

QSize LeanStyle::sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &size,
                                  const QWidget *widget) const
{
    QSize result = QProxyStyle::sizeFromContents(type, option, size, widget);
    const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
    if (type == CT_MenuItem && item && item->text.contains(u'\t'))
        result.rwidth() += item->fontMetrics.height();
    const bool isTitle =
        item && item->menuItemType == QStyleOptionMenuItem::Separator && !item->text.isEmpty();
    if (type == CT_MenuItem && isTitle)
        result.rheight() = std::max(result.height(), item->fontMetrics.height() + s_titleRoom);
    return result;
}
