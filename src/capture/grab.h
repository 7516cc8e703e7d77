#pragma once

#include <QPainterPath>
#include <QPixmap>
#include <QPolygonF>
#include <QString>

#include <variant>

/// What one grab brings.
// The check believes that moving a variant can throw. NOLINTNEXTLINE(bugprone-exception-escape)
struct Grab {
    QPixmap picture{};  ///< device pixels; null where nothing could be read
    /// What is kept of the picture, in its coordinates; all of it where there is none.
    std::variant<std::monostate, QPainterPath, QPolygonF> outline{};
    QString name{};    ///< the document's; may be empty
    QString kind{};    ///< "rectangle", "window" and the like
    uint process = 0;  ///< that was in front before; 0 where it didn't tell
};
