#pragma once

#include <QCoreApplication>
#include <QImage>
#include <QList>
#include <QRect>
#include <QString>
#include <QStringList>

#include <functional>

/// A word of a picture.
struct ReadWord {
    QString text{};
    QRect box{};  ///< pixels of the picture
};

struct ReadLine {
    QString text{};
    QList<ReadWord> words{};  ///< in reading order
    bool beginsBlock = false;
};

struct ReadText {
    QList<ReadLine> lines{};  ///< in reading order
    QString failure{};        ///< why nothing was read, for the user; empty if that was given up
    /// The packages with the user's languages that are not installed; the others were read.
    QStringList missing{};

    /// All lines, with an empty one before each block but the first.
    QString text() const;
    QList<ReadWord> words() const;
};

/// Reads the text in pictures, where libtesseract is installed.
class TextReader
{
    Q_DECLARE_TR_FUNCTIONS(TextReader)

public:
    /// `libraries` are the names that are tried, the best one first.
    explicit TextReader(QStringList libraries = usualLibraries());

    /// Why no text can be read, for the user; empty where it looks as if it could.
    QString lack() const;

    /// Hears every now and then how far it is, in thousandths; false gives up.
    using GoesOn = std::function<bool(int permille)>;
    static constexpr int s_limit = 30'000;  ///< ms

    /// Reads in the languages of the user and in English. Takes its time, and may be called on any
    /// thread. What takes longer than `limit` milliseconds fails.
    ReadText read(const QImage &picture, const GoesOn &goesOn, int limit = s_limit) const;

    /// The codes of the data for languages as QLocale::uiLanguages() has them, for the first few of
    /// them, and for English.
    static QStringList codesOf(const QStringList &languages);

private:
    static QStringList usualLibraries();

    QStringList m_libraries;
};
