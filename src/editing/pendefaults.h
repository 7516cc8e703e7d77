#pragma once

#include <QColor>
#include <QFont>
#include <QList>

#include <optional>

class ToolStyles;
struct Tool;

/// What the editor draws with at a start, as the settings tell.
struct PenDefaults {
    QColor color{Qt::red};
    std::optional<int> width{};   ///< picture pixels; nothing where none was ever chosen
    std::optional<QFont> font{};  ///< the same
};

PenDefaults readPenDefaults();

// Each is written as soon as it is chosen.
void storeLineWidth(int width);
void storeTextFont(const QFont &font);
/// The brightness is read back as a colour, unless the user wants the colour itself, which stands
/// beside it. A reader would expect that of any start; that it has to be asked for is on purpose.
void storeLineColor(const QColor &color);

/// The colours that were chosen last, eight at the most and each of them once, the newest first.
QList<QColor> readRecentColors();
/// Puts a colour in front of them.
void storeRecentColor(const QColor &color);

/// Gives each tool the style that is stored for it. What is missing or out of range stays as it is.
void readToolStyles(ToolStyles &styles);
void storeToolStyle(const Tool &tool, const ToolStyles &styles);
