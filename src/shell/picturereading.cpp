#include "shell/picturereading.h"

#include "shell/notices.h"
#include "shell/workbench.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QUrl>

#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype s_shownText = 80;   // letters of what was copied
constexpr qsizetype s_shownCode = 600;  // letters of what a code has; a code holds up to 7,000
constexpr qsizetype s_mostCodes = 10;   // that are told one by one

// In one line, and not longer than that.
QString shortened(const QString &text, qsizetype most)
{
    const QString line = text.simplified();
    return line.size() <= most ? line : line.left(most - 1).trimmed() + u'\u2026';
}

// The address that a code leads to, if that is a page of the web and can be shown in full.
QUrl addressIn(const QString &text)
{
    const QUrl url(text.trimmed(), QUrl::StrictMode);
    const bool isOfWeb = url.scheme() == u"https" || url.scheme() == u"http";
    return isOfWeb && url.isValid() && !url.host().isEmpty() &&
                   url.toString(QUrl::FullyEncoded).size() <= s_shownCode
               ? url
               : QUrl();
}

}  // namespace

void PictureReading::refresh()
{
    m_textLack = m_textReader.lack();
    m_codeLack = m_codeReader.lack();
}

QImage PictureReading::picture() const { return m_work.unitedPicture().toImage(); }

// The number of the current document; whatever is read of any is given up, for the user wants
// something else now.
int PictureReading::startAnew() const
{
    if (const auto job = m_work.jobs().find(PictureJobs::Kind::Recognize, 0))
        m_work.jobs().giveUp(*job);
    return m_work.documents().currentDocument()->m_Number;
}

void PictureReading::copyText(const QRect &part)
{
    const QImage whole = picture();
    if (whole.isNull())
        return;
    // Stays null where it was given up.
    const auto read = std::make_shared<std::unique_ptr<ReadText>>();
    m_work.jobs().start(
        PictureJobs::Kind::Recognize, startAnew(), tr("Reading the text..."),
        [reader = m_textReader, image = part.isNull() ? whole : whole.copy(part),
         read](PictureProgress &progress) {
            const auto goesOn = [&progress](int permille) {
                progress.permille = permille;
                return !progress.isCancelled;
            };
            ReadText result = reader.read(image, goesOn);
            if (!progress.isCancelled)
                *read = std::make_unique<ReadText>(std::move(result));
        },
        [this, read] {
            if (*read)
                tellText(**read);
        });
}

void PictureReading::tellText(const ReadText &read)
{
    QString told = read.failure;
    if (const QString text = read.text(); !text.isEmpty()) {
        QGuiApplication::clipboard()->setText(text);
        told = tr("%n character(s) copied: %1", nullptr, static_cast<int>(text.size()))
                   .arg(shortened(text, s_shownText));
    } else if (told.isEmpty()) {
        told = tr("No text was found.");
    }
    if (!read.missing.isEmpty() && read.failure.isEmpty() &&
        !std::exchange(m_toldOfLanguages, true)) {
        told += u'\n' + tr("Texts in your language are read better with the package %1.")
                            .arg(read.missing.join(u", "_s));
    }
    m_notices.say(told);
}

void PictureReading::readCodes()
{
    const QImage whole = picture();
    if (whole.isNull())
        return;
    const auto read = std::make_shared<std::unique_ptr<CodeReader::Result>>();
    m_work.jobs().start(
        PictureJobs::Kind::Recognize, startAnew(), tr("Reading codes..."),
        [reader = m_codeReader, whole, read](PictureProgress &progress) {
            CodeReader::Result result = reader.read(whole);
            if (!progress.isCancelled)
                *read = std::make_unique<CodeReader::Result>(std::move(result));
        },
        [this, read] {
            if (*read)
                tellCodes(**read);
        });
}

void PictureReading::tellCodes(const CodeReader::Result &read)
{
    if (!read.failure.isEmpty()) {
        m_notices.say(read.failure);
        return;
    }
    if (read.codes.isEmpty()) {
        m_notices.say(tr("No QR or bar code was found."));
        return;
    }
    // The bar shows the last one first.
    const qsizetype count = std::min(read.codes.size(), s_mostCodes);
    for (qsizetype i = count; i-- > 0;)
        tellCode(read.codes[i], i + 1, read.codes.size());
}

void PictureReading::tellCode(const ReadCode &code, qsizetype number, qsizetype count)
{
    const auto copy = [text = code.text] { QGuiApplication::clipboard()->setText(text); };
    QList<NoticeBar::Action> actions{{tr("&Copy"), copy}};
    QString shown = shortened(code.text, s_shownCode);
    // As it is opened: letters that look like others can't hide where it leads.
    if (const QUrl address = addressIn(code.text); !address.isEmpty()) {
        shown = address.toString(QUrl::FullyEncoded);
        actions.append({tr("&Open"), [address] { QDesktopServices::openUrl(address); }});
    }
    const QString head =
        count == 1 ? code.type : tr("%1 (%2 of %3)").arg(code.type).arg(number).arg(count);
    m_notices.say(head + u":\n"_s + shown, actions);
}
