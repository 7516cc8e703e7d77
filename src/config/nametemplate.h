#pragma once

#include <QCoreApplication>
#include <QDateTime>
#include <QList>
#include <QString>

/// What the files of pictures are called, as the user has put it together: text, with words in
/// braces for what differs from picture to picture.
///
///   {date}, {time}           when it was taken; {date:dd.MM.yy} in a format as QDateTime has them
///   {counter}, {counter:3}   the first number from 1 on whose name is free, in that many digits
///   {application}, {title}   what was in front, and the title of its window
///
/// A brace of the text is doubled.
class NameTemplate
{
    Q_DECLARE_TR_FUNCTIONS(NameTemplate)

public:
    explicit NameTemplate(const QString &text);

    static QString usual() { return QStringLiteral("{application} {date} {time}"); }

    /// What is wrong with it and at which character, for the user; empty if it can be used.
    const QString &fault() const { return m_fault; }

    struct Values {
        QDateTime time{};
        QString application{};  ///< may be empty, as the next one
        QString title{};
    };
    /// A name without a folder, whatever the values are: visible, and at most 255 bytes in UTF-8
    /// with the ending (without a dot), which is what file systems take. Other counters give other
    /// names, whether the template has a place for them or not.
    QString fileName(const Values &values, int counter, const QString &ending) const;

private:
    enum class Kind { Text, Date, Time, Counter, Application, Title };
    struct Piece {
        Kind kind = Kind::Text;
        QString text{};  ///< itself, or the format; empty for the usual one
    };

    void parse(const QString &text);
    void addWord(const QString &word, qsizetype place);
    static QString valueOf(const Piece &piece, const Values &values, int counter);

    QList<Piece> m_pieces{};
    QString m_fault{};
};
