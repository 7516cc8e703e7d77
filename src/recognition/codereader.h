#pragma once

#include <QCoreApplication>
#include <QImage>
#include <QList>
#include <QRect>
#include <QString>
#include <QStringList>

/// A QR or bar code in a picture.
struct ReadCode {
    QString type{};  ///< as its standard is called, for example "QR-Code" or "EAN-13"
    QString text{};
    QRect box{};  ///< pixels of the picture
};

/// Reads QR and bar codes, where libzbar is installed.
class CodeReader
{
    Q_DECLARE_TR_FUNCTIONS(CodeReader)

public:
    /// `libraries` are the names that are tried, the best one first.
    explicit CodeReader(QStringList libraries = usualLibraries());

    /// Why no codes can be read, for the user; empty where it looks as if they could.
    QString lack() const;

    struct Result {
        QList<ReadCode> codes{};  ///< each once, from top to bottom
        QString failure{};        ///< why none was looked for, for the user
    };
    /// Takes its time, and may be called on any thread.
    Result read(const QImage &picture) const;

private:
    static QStringList usualLibraries();

    QStringList m_libraries;
};
