#pragma once

#include "editing/history.h"

#include <QHash>
#include <QJsonArray>

#include <optional>

/// The numbers of shapes in one file, from 1 on, and their ids in this run of the program.
/// Histories that name the same shapes share them.
class ShapeNumbers
{
public:
    /// The number of a shape that is written. Each shape gets the next one when it is first asked
    /// for.
    qint64 numberOf(ShapeId id);
    /// The id of a shape that is read, a new one for each number.
    ShapeId idOf(qint64 number);

private:
    QHash<ShapeId, qint64> m_numbers;
    QHash<qint64, ShapeId> m_ids;
};

/// Converts recorded operations to a list of JSON objects, oldest first. Those that add a shape
/// have its kind, position and style. Positions are picture coordinates. Both functions may be
/// called on any thread.
QJsonArray toJson(const EditHistory &history, ShapeNumbers &numbers);

/// What became of reading a history.
struct HistoryRead {
    std::optional<EditHistory> history{};  ///< none if a part is incomplete or out of range
    bool isNewer = false;  ///< none since a later version of the program has named a part
};
HistoryRead historyFromJson(const QJsonArray &operations, ShapeNumbers &numbers);
