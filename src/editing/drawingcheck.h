#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// What a drawing file (SVG) holds that is not only this drawing.
struct DrawingCheck {
    QString failure{};  ///< why it must not be drawn, for the user; empty where it may be
    qint64 pixels = 0;  ///< of the pictures inside
};

/// Whether a drawing can be drawn without another file being read, and comes to an end. Takes its
/// text, unpacked.
DrawingCheck checkDrawing(const QByteArray &text);

/// The text of a drawing file, unpacked if it is packed. Nothing where it can't be unpacked, or
/// would be too large.
std::optional<QByteArray> drawingText(const QByteArray &content);
