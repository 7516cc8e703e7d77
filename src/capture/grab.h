#pragma once

#include <QPainterPath>
#include <QPixmap>
#include <QPolygonF>
#include <QString>

#include <variant>

/// The result of one grab.
// clang-tidy assumes that moving a variant can throw. NOLINTNEXTLINE(bugprone-exception-escape)
struct Grab {
    QPixmap picture{};  ///< in device pixels; null if nothing could be read
    /// The outline of the pixels to keep, in the picture's coordinates; without one all pixels are
    /// kept.
    std::variant<std::monostate, QPainterPath, QPolygonF> outline{};
    QString name{};    ///< name for the document; may be empty
    QString kind{};    ///< "rectangle", "window" and so on
    QString note{};    ///< what the user is to be told of it; may be empty
    uint process = 0;  ///< process of the application that was active before; 0 if unknown
};
