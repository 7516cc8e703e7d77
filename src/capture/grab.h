#pragma once

#include <QFlags>
#include <QPainterPath>
#include <QPixmap>
#include <QPoint>
#include <QPolygonF>
#include <QString>

#include <optional>
#include <variant>

/// What becomes of a grab's picture.
enum class GrabGoal {
    Tab = 1,      ///< opens in the main window
    Copy = 2,     ///< on the clipboard
    Save = 4,     ///< a file with a name by the template, without a question
    Notify = 8,   ///< a notification with a small picture
    Text = 16,    ///< its text is read, and on the clipboard
    Caller = 32,  ///< handed to the program that has asked for it over the bus
    Pin = 64      ///< stays above all windows
};
Q_DECLARE_FLAGS(GrabGoals, GrabGoal)
Q_DECLARE_OPERATORS_FOR_FLAGS(GrabGoals)

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
    /// Of the window that was chosen; both empty where none was, and the one in front counts.
    QString application{};
    QString title{};
    /// Where the desktop showed its top left pixel, in global device pixels; none where that says
    /// nothing, as for a window that was covered.
    std::optional<QPoint> place{};
    /// What the user has asked for this one; without it, what the hot key or the preferences say.
    std::optional<GrabGoals> goals{};
};
