#pragma once

#include "editing/shapes.h"

#include <QJsonArray>

#include <optional>

/// Converts recorded shapes to a list of JSON objects, oldest first, with kind, position and style.
/// Positions are picture coordinates. Both functions may be called on any thread.
QJsonArray toJson(const EditHistory &history);
/// No value if a shape is unknown or incomplete, or if its numbers are out of range.
std::optional<EditHistory> historyFromJson(const QJsonArray &shapes);
