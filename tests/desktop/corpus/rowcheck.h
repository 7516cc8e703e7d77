#pragma once

#include <QImage>
#include <QList>
#include <QString>

/// A row that was read from a picture by its code.
struct CodedRow {
    int number = 0;
    QPoint at{};
    int height = 0;

    bool operator==(const CodedRow &) const = default;
};

/// The rows of a picture, from top to bottom. What a cut through a code has left of it counts.
QList<CodedRow> codedRows(const QImage &picture);

/// What is wrong with the rows of a picture, by their numbers.
struct RowFaults {
    int found = 0;
    QList<int> missing{};
    QList<int> doubled{};
    QList<int> torn{};  ///< not as high as the others, or not as far from the last one
    QList<int> disordered{};

    bool isEmpty() const;
    QString text() const;
};

/// Looks for all numbers below `expected`.
RowFaults faultsOf(const QList<CodedRow> &rows, int expected);

/// How often `strip` stands in a picture at column `x`, one below the other.
int countStrips(const QImage &picture, const QImage &strip, int x);
