#include "editing/pendefaults.h"

#include "config/settings.h"
#include "editing/tools/tooltable.h"
#include "editing/toolstyles.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype s_mostRecent = 8;
const QString s_wholeColor = u"LineColor.Whole"_s;

QString styleKey(const Tool &tool) { return u"ToolStyle."_s + QLatin1StringView(tool.id); }

// The values of "name=value" pairs that blanks divide.
class Values
{
public:
    explicit Values(const QString &text) : m_pairs(text.split(u' ', Qt::SkipEmptyParts)) {}

    QString text(QStringView name) const
    {
        for (const QString &pair : m_pairs) {
            if (pair.startsWith(name) && pair.size() > name.size() && pair.at(name.size()) == u'=')
                return pair.mid(name.size() + 1);
        }
        return {};
    }
    // Only a number from `least` to `most` reaches `to`.
    template<typename Number> void take(QStringView name, int least, int most, Number &to) const
    {
        bool isNumber = false;
        const int number = text(name).toInt(&isNumber);
        if (isNumber && number >= least && number <= most)
            to = static_cast<Number>(number);
    }

private:
    QStringList m_pairs;
};

EditMsg styleFrom(const QString &stored, EditMsg style)
{
    const Values values(stored);
    if (const QColor color = QColor::fromString(values.text(u"color")); color.isValid())
        style.color = color;
    values.take(u"width", 1, s_widestLine, style.width);
    values.take(u"fill", 0, static_cast<int>(Fill::Solid), style.fill);
    values.take(u"dashes", 0, static_cast<int>(Dashes::Dotted), style.dashes);
    values.take(u"heads", 0, static_cast<int>(Heads::Open), style.heads);
    values.take(u"ground", 0, static_cast<int>(TextGround::Outlined), style.ground);
    values.take(u"shadow", 0, 1, style.hasShadow);
    values.take(u"round", 0, 1, style.isRound);
    return style;
}

}  // namespace

PenDefaults readPenDefaults()
{
    PenDefaults result;
    if (const QString color = GetConfigString(u"LineColor"_s); !color.isEmpty())
        result.color = QColor(static_cast<QRgb>(color.toInt()));
    if (const QColor kept = QColor::fromString(GetConfigString(s_wholeColor));
        kept.isValid() && GetConfigString(u"KeepLineColour"_s) == u"1")
        result.color = kept.rgb();
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
    SetConfigString(s_wholeColor, color.name());
}

QList<QColor> readRecentColors()
{
    QList<QColor> result;
    for (const QString &name : GetConfigString(u"RecentColors"_s).split(u' ', Qt::SkipEmptyParts)) {
        if (const QColor color = QColor::fromString(name);
            color.isValid() && result.size() < s_mostRecent && !result.contains(color))
            result.append(color);
    }
    return result;
}

void storeRecentColor(const QColor &color)
{
    QStringList names{color.name()};
    for (const QColor &older : readRecentColors()) {
        if (names.size() < s_mostRecent && !names.contains(older.name()))
            names.append(older.name());
    }
    SetConfigString(u"RecentColors"_s, names.join(u' '));
}

void readToolStyles(ToolStyles &styles)
{
    for (const Tool *tool : allTools()) {
        if (const QString stored = GetConfigString(styleKey(*tool)); !stored.isEmpty())
            styles.set(tool->state, styleFrom(stored, styles.of(tool->state)));
    }
}

void storeToolStyle(const Tool &tool, const ToolStyles &styles)
{
    const EditMsg &style = styles.of(tool.state);
    const auto number = [](auto value) { return QString::number(static_cast<int>(value)); };
    SetConfigString(
        styleKey(tool),
        u"width=%1 color=%2 fill=%3 dashes=%4 heads=%5 ground=%6 shadow=%7 round=%8"_s.arg(
            number(style.width), style.color.name(), number(style.fill), number(style.dashes),
            number(style.heads), number(style.ground), number(style.hasShadow),
            number(style.isRound)));
}
