#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// The result of checking a drawing file (SVG) before it is rendered.
struct DrawingCheck {
    QString failure{};  ///< why it must not be rendered, for the user; empty if it may be
    qint64 pixels = 0;  ///< number of pixels of the pictures embedded in it
};

/// Whether the drawing refers to no other files and can be rendered in finite time. Takes the
/// unpacked text.
DrawingCheck checkDrawing(const QByteArray &text);

/// The text of a drawing file, which may be packed. No value if it can't be unpacked or is too
/// large.
std::optional<QByteArray> drawingText(const QByteArray &content);
