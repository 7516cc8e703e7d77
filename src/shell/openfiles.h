#pragma once

#include "editing/picturedocument.h"

#include <QHash>
#include <QString>

#include <utility>
#include <vector>

/// Finds the document that is bound to a file, whatever path or link leads there, at the cost of
/// one look at each document however many are asked for.
class OpenFiles
{
public:
    explicit OpenFiles(const std::vector<QPictureDocument> &documents);

    /// The place among the documents; -1 for none.
    int indexOf(const QString &path) const;
    /// One more is open, at the place `index`.
    void add(const QString &path, int index);

private:
    using File = std::pair<quint64, quint64>;  // device and inode

    QHash<QString, int> m_byPath{};
    QHash<File, int> m_byFile{};
};
