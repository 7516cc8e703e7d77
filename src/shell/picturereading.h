#pragma once

#include "recognition/codereader.h"
#include "recognition/textreader.h"

#include <QCoreApplication>
#include <QRect>

class Notices;
class Workbench;

/// Reads the text and the codes in the current picture for the user, shapes included, and tells
/// what came of it. Workers do it, and it can be given up.
class PictureReading
{
    Q_DECLARE_TR_FUNCTIONS(PictureReading)

public:
    /// Both outlive this object, and `work` hands it what its jobs have read.
    PictureReading(Workbench &work, Notices &notices) : m_work(work), m_notices(notices) {}

    /// Looks again at what is installed.
    void refresh();
    /// Why there is no text, or no code, to be had, for the user, as it was at the last refresh();
    /// empty where there is.
    const QString &textLack() const { return m_textLack; }
    const QString &codeLack() const { return m_codeLack; }

    /// Copies the text of a part of the current picture, or of all of it.
    void copyText(const QRect &part = {});
    /// Shows what is in the codes, one after the other. Nothing is opened unasked.
    void readCodes();

private:
    QImage picture() const;
    int startAnew() const;
    void tellText(const ReadText &read);
    void tellCodes(const CodeReader::Result &read);
    void tellCode(const ReadCode &code, qsizetype number, qsizetype count);

    Workbench &m_work;
    Notices &m_notices;
    TextReader m_textReader;
    CodeReader m_codeReader;
    QString m_textLack;
    QString m_codeLack;
    bool m_toldOfLanguages = false;
};
