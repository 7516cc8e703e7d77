#include "editing/pendefaults.h"

#include "config/settings.h"
#include "editing/tools/tool.h"

#include <algorithm>

using namespace Qt::StringLiterals;

PenDefaults readPenDefaults()
{
    PenDefaults result;
    if (const QString color = GetConfigString(u"LineColor"_s); !color.isEmpty())
        result.color = QColor(static_cast<QRgb>(color.toInt()));
    if (const QString width = GetConfigString(u"LineWidth"_s); !width.isEmpty())
        result.width = std::clamp(width.toInt(), 1, s_widestLine);
    const QString text = GetConfigString(u"TextFont"_s);
    if (QFont font; !text.isEmpty() && font.fromString(text)) {
        if (font.pointSizeF() > s_largestText || font.pixelSize() > s_largestText)
            font.setPointSizeF(s_largestText);
        result.font = font;
    }
    return result;
}

void storeLineWidth(int width) { SetConfigString(u"LineWidth"_s, QString::number(width)); }

void storeTextFont(const QFont &font) { SetConfigString(u"TextFont"_s, font.toString()); }

void storeLineColor(const QColor &color)
{
    SetConfigString(u"LineColor"_s, QString::number(color.value()));
}
