#pragma once

#include "editing/history.h"
#include "recognition/codereader.h"
#include "recognition/secrets.h"
#include "recognition/textreader.h"

#include <QCoreApplication>
#include <QImage>
#include <QList>
#include <QObject>
#include <QRect>

#include <functional>

class Notices;
class QWidget;
class Workbench;

/// Reads the text and the codes in the current picture for the user, shapes included, and tells
/// what came of it. Workers do it, and it can be given up. No text that is found goes anywhere but
/// to the user.
class PictureReading
{
    Q_DECLARE_TR_FUNCTIONS(PictureReading)

public:
    /// All outlive this object, and `work` hands it what its jobs have read. Dialogs lie over
    /// `window`.
    PictureReading(QWidget &window, Workbench &work, Notices &notices);

    /// Looks again at what is installed.
    void refresh();
    /// Why there is no text, or no code, to be had, for the user, as it was at the last refresh();
    /// empty where there is.
    const QString &textLack() const { return m_textLack; }
    const QString &codeLack() const { return m_codeLack; }

    /// Copies the text of a part of the current picture, or of all of it.
    void copyText(const QRect &part = {});
    /// Copies the text of a picture that need not be open. `done` hears what to tell the user, and
    /// whether a text was copied.
    void copyTextOf(const QImage &picture,
                    const std::function<void(const QString &told, bool isCopied)> &done);
    /// Shows what is in the codes, one after the other. Nothing is opened unasked.
    void readCodes();
    /// Looks for secrets in the text, shows them, and covers those that the user wants hidden.
    void hideText();

private:
    /// What was found in a picture, and the picture as it was then.
    struct Proposal {
        int document = 0;  ///< its number
        EditHistory history{};
        QImage picture{};  ///< with its shapes
        QList<Secret> secrets{};
    };

    /// What the bar offers to show.
    struct Offer {
        QString text{};
        int document = 0;
        EditHistory history{};
    };

    QImage picture() const;
    int startAnew() const;
    void read(const QImage &image, std::function<void(const ReadText &)> then);
    void start(const QImage &image, int document, std::function<void(const ReadText *)> then);
    void propose(const Proposal &proposal);
    void checkOffer();
    void withdrawOffer();
    void ask(const Proposal &proposal);
    void hide(const Proposal &proposal, const QList<Secret> &chosen, stateEnum tool);
    bool returnsTo(const Proposal &proposal);
    void tellOutdated();
    QString copied(const ReadText &read);
    void tellCodes(const CodeReader::Result &read);
    void tellCode(const ReadCode &code, qsizetype number, qsizetype count);

    QWidget &m_window;
    Workbench &m_work;
    Notices &m_notices;
    TextReader m_textReader;
    CodeReader m_codeReader;
    QString m_textLack;
    QString m_codeLack;
    bool m_toldOfLanguages = false;
    Offer m_offer{};    ///< the last one, without text if there is none
    QObject m_watch{};  ///< its connections end with it
};
