#include "shell/picturereading.h"

#include "editing/tools/tooltable.h"
#include "shell/hidetextdialog.h"
#include "shell/notices.h"
#include "shell/workbench.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QUrl>
#include <QWidget>

#include <memory>
#include <optional>
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

PictureReading::PictureReading(QWidget &window, Workbench &work, Notices &notices)
    : m_window(window), m_work(work), m_notices(notices)
{
    // Of a change is told before it is in the history.
    const auto check = [this] { checkOffer(); };
    QObject::connect(&work, &Workbench::changed, &m_watch, check, Qt::QueuedConnection);
    QObject::connect(&work, &Workbench::edited, &m_watch, check, Qt::QueuedConnection);
}

void PictureReading::refresh()
{
    m_textLack = m_textReader.lack();
    m_codeLack = m_codeReader.lack();
}

// Null, which is told, while it is still to come.
QImage PictureReading::picture() const
{
    QImage result = m_work.unitedPicture().toImage();
    if (result.isNull() && m_work.documents().currentDocument())
        m_notices.say(tr("The picture is not there yet. Try again when it is shown."));
    return result;
}

// The number of the current document; whatever is read of any is given up, for the user wants
// something else now.
int PictureReading::startAnew() const
{
    if (const auto job = m_work.jobs().find(PictureJobs::Kind::Recognize, 0))
        m_work.jobs().giveUp(*job);
    return m_work.documents().currentDocument()->m_Number;
}

// `then` hears of nothing that was given up.
void PictureReading::read(const QImage &image, std::function<void(const ReadText &)> then)
{
    start(image, startAnew(), [then = std::move(then)](const ReadText *text) {
        if (text)
            then(*text);
    });
}

// `then` hears null where it was given up.
void PictureReading::start(const QImage &image, int document,
                           std::function<void(const ReadText *)> then)
{
    const auto text = std::make_shared<std::unique_ptr<ReadText>>();
    m_work.jobs().start(
        PictureJobs::Kind::Recognize, document, tr("Reading the text..."),
        [reader = m_textReader, image, text](PictureProgress &progress) {
            const auto goesOn = [&progress](int permille) {
                progress.permille = permille;
                return !progress.isCancelled;
            };
            ReadText result = reader.read(image, goesOn);
            if (!progress.isCancelled)
                *text = std::make_unique<ReadText>(std::move(result));
        },
        [text, then = std::move(then)] { then(text->get()); });
}

void PictureReading::copyText(const QRect &part)
{
    const QImage whole = picture();
    if (!whole.isNull())
        read(part.isNull() ? whole : whole.copy(part),
             [this](const ReadText &text) { m_notices.sayDone(copied(text)); });
}

void PictureReading::copyTextOf(const QImage &picture,
                                const std::function<void(const QString &, bool)> &done)
{
    start(picture, 0, [this, done](const ReadText *text) {
        if (text)
            done(copied(*text), !text->text().isEmpty());
        else
            done(tr("The text was not read."), false);
    });
}

void PictureReading::hideText()
{
    const QImage whole = picture();
    if (whole.isNull())
        return;
    withdrawOffer();
    Proposal asRead{m_work.documents().currentDocument()->m_Number, m_work.editor().getVecUnDo(),
                    whole};
    read(whole, [this, proposal = std::move(asRead)](const ReadText &text) mutable {
        proposal.secrets = secretsIn(text.lines);
        if (!text.failure.isEmpty())
            m_notices.say(text.failure);
        else if (proposal.secrets.isEmpty())
            m_notices.say(tr("Nothing was found that you may want to hide. Look at the picture "
                             "yourself: recognition can miss something."));
        else
            propose(proposal);
    });
}

// A dialog would disturb whatever the user has gone on to meanwhile, a grab or another picture.
void PictureReading::propose(const Proposal &proposal)
{
    const QPictureDocument *current = m_work.documents().currentDocument();
    if (current && current->m_Number == proposal.document && m_window.isActiveWindow()) {
        ask(proposal);
        return;
    }
    const QPictureDocument *of = m_work.documents().find(proposal.document);
    m_offer = {
        tr("%n place(s) to hide found in %1.", nullptr, static_cast<int>(proposal.secrets.size()))
            .arg(of ? of->GetShowName() : QString()),
        proposal.document, proposal.history};
    m_notices.say(m_offer.text, {{tr("Sh&ow"), [this, proposal] { ask(proposal); }}});
}

// Only a picture that is shown can be changed.
void PictureReading::checkOffer()
{
    const QPictureDocument *current = m_work.documents().currentDocument();
    const bool isChanged = current && current->m_Number == m_offer.document &&
                           m_work.editor().getVecUnDo() != m_offer.history;
    if (isChanged || !m_work.documents().find(m_offer.document))
        withdrawOffer();
}

void PictureReading::withdrawOffer() { m_notices.withdraw(std::exchange(m_offer, {}).text); }

void PictureReading::ask(const Proposal &proposal)
{
    if (!returnsTo(proposal)) {
        tellOutdated();
        return;
    }
    auto *dialog = new HideTextDialog(proposal.picture, proposal.secrets, &m_window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(dialog, &QDialog::accepted, dialog, [this, proposal, dialog] {
        hide(proposal, dialog->chosen(), dialog->tool());
    });
    // While the dialog is up the bus or the tray may close the picture.
    QObject::connect(&m_work, &Workbench::changed, dialog, [this, proposal, dialog](int number) {
        if (number != proposal.document || m_work.documents().find(number))
            return;
        dialog->reject();
        tellOutdated();
    });
    dialog->open();
}

void PictureReading::hide(const Proposal &proposal, const QList<Secret> &chosen, stateEnum tool)
{
    if (!returnsTo(proposal)) {
        tellOutdated();
        return;
    }
    TPictureEditor &editor = m_work.editor();
    EditMsg style = editor.styles().of(tool);
    style.type = tool;
    SeveralChanges covers;
    for (const Secret &secret : chosen) {
        for (const QRect &area : secret.areas) {
            if (std::optional<Geometry> cover =
                    shapeFrom(tool, {.box = area & proposal.picture.rect()}))
                covers.changes.append(adding({std::move(*cover), style}));
        }
    }
    editor.record(operation(std::move(covers)));
    m_notices.say(tr("%n place(s) hidden. Look at the picture: recognition can miss something.",
                     nullptr, static_cast<int>(chosen.size())));
}

// Shows the picture of a proposal again. False if that is gone, or something was done to it.
bool PictureReading::returnsTo(const Proposal &proposal)
{
    const int index = m_work.documents().indexOf(proposal.document);
    if (!m_work.documents().has(index))
        return false;
    m_work.show(index);
    m_work.editor().EndEdit();
    return m_work.editor().getVecUnDo() == proposal.history;
}

void PictureReading::tellOutdated()
{
    m_notices.say(tr("Nothing was hidden: the picture was changed or closed meanwhile."));
}

// Copies it, and gives what to tell the user.
QString PictureReading::copied(const ReadText &read)
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
    return told;
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
    QList<NoticeBar::Action> actions{{tr("Cop&y"), copy}};
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
