#include "shell/unsavedpictures.h"

#include "editing/covering.h"
#include "editing/rendering.h"
#include "platform/services.h"
#include "shell/notices.h"
#include "shell/workbench.h"

#include <utility>

namespace {

constexpr int s_keepLimit = 20'000;  // ms; who ends the program does not wait for ever

}  // namespace

// Told once, when the last picture has come.
struct UnsavedPictures::Returning {
    int expected = 0;
    int came = 0;
    QStringList damaged{};
    QStringList newer{};

    QString told() const
    {
        QStringList texts;
        if (came > 0)
            texts.append(tr("Pictures that had not been saved are back: %1").arg(came));
        for (const QString &path : damaged)
            texts.append(
                tr("A picture that had not been saved is damaged. What is left of it is in %1.")
                    .arg(path));
        for (const QString &path : newer)
            texts.append(tr("A later version of this program has left a picture in %1. It was not "
                            "touched.")
                             .arg(path));
        return texts.join(u'\n');
    }
};

UnsavedPictures::UnsavedPictures(Workbench &work, Notices &notices)
    : m_work(work), m_notices(notices)
{
    connect(&m_work, &Workbench::edited, this, &UnsavedPictures::touchCurrent);
    connect(&m_work, &Workbench::changed, this, &UnsavedPictures::touch);
}

UnsavedPictures::~UnsavedPictures() = default;

bool UnsavedPictures::start(const QString &folder)
{
    m_recovery = std::make_unique<Recovery>(folder, *this, *services().clock);
    connect(m_recovery.get(), &Recovery::paused, this, [this](const QString &reason) {
        m_pause =
            tr("What is not saved can't be kept for the next start at the moment: %1").arg(reason);
        m_notices.say(m_pause);
    });
    connect(m_recovery.get(), &Recovery::resumed, this, [this] { m_notices.withdraw(m_pause); });
    if (m_recovery->folder().isEmpty())
        return false;
    const RecoveryFolder::Content content = m_recovery->folder().read();
    bringBack(content);
    return !content.entries.isEmpty() || !content.damaged.isEmpty() || !content.newer.isEmpty();
}

void UnsavedPictures::bringBack(const RecoveryFolder::Content &content)
{
    const auto returning =
        std::make_shared<Returning>(Returning{.expected = static_cast<int>(content.entries.size()),
                                              .damaged = content.damaged,
                                              .newer = content.newer});
    if (content.entries.isEmpty()) {
        if (const QString text = returning->told(); !text.isEmpty())
            m_notices.say(text);
        return;
    }
    QList<int> numbers;
    for (const RecoveryFolder::Entry &entry : content.entries) {
        const int index = m_work.documents().addReturned(entry.work);
        numbers.append(m_work.documents()[index].m_Number);
        m_recovery->adopt(numbers.last(), entry.name, entry.hasPicture);
    }
    m_work.refresh();
    m_work.show(m_work.documents().size() - 1);
    for (qsizetype i = 0; i < numbers.size(); ++i)
        bringBack(content.entries.at(i), numbers.at(i), returning);
}

void UnsavedPictures::bringBack(const RecoveryFolder::Entry &entry, int number,
                                const std::shared_ptr<Returning> &returning)
{
    const RecoveryFolder folder = m_recovery->folder();
    m_work.awaitPicture(
        number, PictureJobs::Kind::Fetch, tr("Bringing back \"%1\"..."),
        [folder, entry](PictureProgress &) {
            return PictureRead{.picture = folder.picture(entry)};
        },
        [this, returning, number, folder, entry](bool hasPicture) {
            if (hasPicture) {
                ++returning->came;
                if (!entry.hasPicture)
                    touch(number);
            } else if (const int index = m_work.documents().indexOf(number); index >= 0) {
                m_recovery->release(number);
                returning->damaged.append(folder.setAside(entry.name));
                m_work.drop(index);
            }
            if (--returning->expected == 0)
                m_notices.say(returning->told());
        });
}

void UnsavedPictures::keep()
{
    if (!m_recovery)
        return;
    // The answer to a question holds for what it was asked about.
    if (m_isDiscarded) {
        for (const int number : m_work.documents().numbers())
            m_recovery->touchAtOnce(number);
    }
    m_recovery->finish(s_keepLimit);
}

std::optional<UnsavedWork> UnsavedPictures::unsaved(int document)
{
    const QPictureDocument *found = m_work.documents().find(document);
    if (!found || m_isDiscarded)
        return {};
    bool isUnsaved = found->m_Modified;
    UnsavedWork work = workOf(*found, &isUnsaved);
    if (!isUnsaved)
        return {};
    work.isCovered = !found->m_Covered.isEmpty();
    if (work.isCovered) {
        work.shapes.clear();
        work.undone.clear();
    }
    return work;
}

// The data of a document, whether it is unsaved or not; `isUnsaved` is set if a text is being typed
// in it.
UnsavedWork UnsavedPictures::workOf(const QPictureDocument &document, bool *isUnsaved) const
{
    UnsavedWork work = document.unsavedWork();
    if (&document == m_work.documents().currentDocument()) {
        const TPictureEditor &editor = m_work.editor();
        work.shapes = editor.getVecUnDo();
        work.undone = editor.getVecReDo();
        // What is being typed comes back as it would have been recorded.
        if (const OperationPtr text = editor.typedText()) {
            work.shapes.prepend(text);
            *isUnsaved = true;
        }
    }
    return work;
}

std::function<QImage()> UnsavedPictures::unsavedPicture(int document)
{
    const QPictureDocument *found = m_work.documents().find(document);
    if (!found || !found->hasPicture())
        return nullptr;
    if (found->m_Covered.isEmpty())
        return found->pictureLater();
    bool isUnsaved = false;
    return [picture = found->pictureLater(), shapes = workOf(*found, &isUnsaved).shapes,
            covered = found->m_Covered] {
        const QImage whole = picture();
        return replayed(whole, stillCovered(shapes, covered, whole.size()), Qt::transparent);
    };
}

void UnsavedPictures::touchCurrent()
{
    m_isDiscarded = false;
    const QPictureDocument *current = m_work.documents().currentDocument();
    if (m_recovery && current)
        m_recovery->touch(current->m_Number);
}

void UnsavedPictures::touch(int number)
{
    m_isDiscarded = m_isDiscarded && !m_work.documents().find(number);
    if (m_recovery)
        m_recovery->touchAtOnce(number);
}
