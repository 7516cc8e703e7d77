#pragma once

#include <QColor>
#include <QFont>

#include <optional>

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
/// The brightness is what is kept, and it is read back as a colour. A reader would expect the
/// colour itself; that a restart does not bring it back is kept on purpose.
void storeLineColor(const QColor &color);
