#pragma once

#include <QImage>
#include <QList>
#include <QStringList>

/// A row that was read from a picture by the code at its beginning.
struct CodedRow {
    int number = 0;
    QPoint at{};
    int height = 0;

    bool operator==(const CodedRow &) const = default;
};

/// The codes of a picture, line by line. What a cut has left of one counts.
QList<CodedRow> codesIn(const QImage &picture);

/// Codes that stand beside each other as one row. One that is not made of `columns` that follow
/// each other, the last of `count` codes in all, has the number -1.
QList<CodedRow> rowsOf(const QList<CodedRow> &codes, int columns, int count);

/// What is wrong with the rows of a picture that should have so many.
QStringList faultsOf(const QList<CodedRow> &rows, int expected);

/// How often `strip` stands in a picture at column `x`, one below the other.
int countStrips(const QImage &picture, const QImage &strip, int x);
