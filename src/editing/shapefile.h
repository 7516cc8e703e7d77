#pragma once

#include "editing/shapes.h"

#include <QJsonArray>

#include <optional>

/// Recorded shapes as they stand in files: a list of objects, the oldest first, that name kind,
/// place and looks. Positions are in picture coordinates. Both run in any thread.
QJsonArray toJson(const EditHistory &history);
/// Nothing where a shape is unknown, incomplete, or out of every proportion.
std::optional<EditHistory> historyFromJson(const QJsonArray &shapes);
