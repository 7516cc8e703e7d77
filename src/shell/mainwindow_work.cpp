#include "shell/mainwindow.h"

#include "platform/services.h"
#include "shell/progressplate.h"

#include <QCoreApplication>

#include <algorithm>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_packInterval = 10'000;      // ms
constexpr qint64 s_unseenTime = 60'000;     // ms
constexpr int s_keepLimit = 20'000;         // ms; who ends the program does not wait for ever
constexpr qint64 s_quickPixels = 16 << 20;  // these come back from their packing at once

qint64 pixelsOf(QSize size) { return static_cast<qint64>(size.width()) * size.height(); }

}  // namespace

bool MainWindow::startRecovery(const QString &folder)
{
    m_Recovery = std::make_unique<Recovery>(folder, *this, *services().clock);
    connect(m_Recovery.get(), &Recovery::paused, this, [this](const QString &reason) {
        m_RecoveryNotice =
            tr("What is not saved can't be kept for the next start at the moment: %1").arg(reason);
        say(m_RecoveryNotice);
    });
    connect(m_Recovery.get(), &Recovery::resumed, this, [this] {
        if (m_pNotice)
            m_pNotice->withdraw(m_RecoveryNotice);
    });
    if (m_Recovery->folder().isEmpty())
        return false;
    const RecoveryFolder::Content content = m_Recovery->folder().read();
    bringBack(content);
    return !content.entries.isEmpty() || !content.damaged.isEmpty() || !content.newer.isEmpty();
}

// Told once, when the last picture has come.
struct MainWindow::Returning {
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

void MainWindow::bringBack(const RecoveryFolder::Content &content)
{
    const auto returning =
        std::make_shared<Returning>(Returning{.expected = static_cast<int>(content.entries.size()),
                                              .damaged = content.damaged,
                                              .newer = content.newer});
    const auto before = static_cast<int>(m_Documents.size());
    for (const RecoveryFolder::Entry &entry : content.entries) {
        QPictureDocument &document =
            m_Documents.emplace_back(QPictureDocument::awaited(entry.work));
        document.m_Modified = true;
        m_Recovery->adopt(document.m_Number, entry.name, entry.hasPicture);
        // What is grabbed from now on gets a number of its own.
        if (document.IsNewFile()) {
            const auto [known, isNew] =
                g_mapNameIndex.try_emplace(document.m_FileName, document.m_NameIndex);
            if (!isNew)
                known->second = std::max(known->second, document.m_NameIndex);
        }
    }
    if (content.entries.isEmpty()) {
        if (const QString text = returning->told(); !text.isEmpty())
            say(text);
        return;
    }
    RefillTabList();
    SetCurDocumentIndex(static_cast<int>(m_Documents.size()) - 1);
    for (int i = 0; i < content.entries.size(); ++i) {
        const int number = m_Documents[before + i].m_Number;
        const RecoveryFolder folder = m_Recovery->folder();
        const RecoveryFolder::Entry &entry = content.entries.at(i);
        awaitPicture(
            number, PictureJobs::Kind::Fetch, tr("Bringing back \"%1\"..."),
            [folder, entry](PictureProgress &) {
                return PictureRead{.picture = folder.picture(entry)};
            },
            [this, returning, number, folder, entry](bool hasPicture) {
                const int index = indexOf(number);
                if (hasPicture) {
                    ++returning->came;
                    if (!entry.hasPicture)
                        touchRecovery(number);
                } else if (isDocument(index)) {
                    m_Recovery->release(number);
                    returning->damaged.append(folder.setAside(entry.name));
                    dropDocument(index);
                }
                if (--returning->expected == 0)
                    say(returning->told());
            });
    }
}

void MainWindow::keepUnsaved()
{
    if (!m_Recovery)
        return;
    // The answer to a question holds for what it was asked about.
    if (m_isDiscarded) {
        for (const QPictureDocument &document : m_Documents)
            m_Recovery->touchAtOnce(document.m_Number);
    }
    m_Recovery->finish(s_keepLimit);
}

std::optional<UnsavedWork> MainWindow::unsaved(int document)
{
    const int index = indexOf(document);
    if (!isDocument(index) || m_isDiscarded)
        return {};
    const QPictureDocument &found = m_Documents[index];
    UnsavedWork work = found.unsavedWork();
    bool isUnsaved = found.m_Modified;
    if (index == m_CurDocument) {
        work.shapes = m_pEditor->getVecUnDo();
        work.undone = m_pEditor->getVecReDo();
        // What is being typed comes back as it would have been recorded.
        if (const EntryPtr text = m_pEditor->typedText()) {
            work.shapes.prepend(text);
            isUnsaved = true;
        }
    }
    return isUnsaved ? std::optional(work) : std::nullopt;
}

std::function<QImage()> MainWindow::unsavedPicture(int document)
{
    const QPictureDocument &found = m_Documents[indexOf(document)];
    return found.hasPicture() ? found.pictureLater() : nullptr;
}

void MainWindow::touchRecovery()
{
    m_isDiscarded = false;
    if (m_Recovery && isDocument(m_CurDocument))
        m_Recovery->touch(m_Documents[m_CurDocument].m_Number);
}

void MainWindow::touchRecovery(int number)
{
    m_isDiscarded = m_isDiscarded && !isDocument(indexOf(number));
    if (m_Recovery)
        m_Recovery->touchAtOnce(number);
}

void MainWindow::awaitPicture(int number, PictureJobs::Kind kind, const QString &text,
                              std::function<PictureRead(PictureProgress &)> read,
                              std::function<void(bool hasPicture)> done)
{
    struct Result {
        PictureRead read{};
        PackedPicture packed{};
    };
    const auto result = std::make_shared<Result>();
    QPictureDocument &document = m_Documents[indexOf(number)];
    document.m_IsAwaited = true;
    const bool isSeen = indexOf(number) == m_CurDocument;
    m_Jobs->start(
        kind, number, text.arg(document.GetShowName()),
        [read = std::move(read), result, isSeen](PictureProgress &progress) {
            result->read = read(progress);
            // Who opens many looks at one.
            if (!isSeen)
                result->packed = PackedPicture(result->read.picture);
            if (!result->packed.isNull())
                result->read.picture = {};
        },
        [this, number, result, done = std::move(done)] {
            takePicture(number, std::move(result->read), result->packed);
            const int index = indexOf(number);
            done(isDocument(index) && m_Documents[index].hasPicture());
        });
}

void MainWindow::takePicture(int number, PictureRead read, const PackedPicture &packed)
{
    const int index = indexOf(number);
    if (!isDocument(index))
        return;
    QPictureDocument &document = m_Documents[index];
    document.m_IsAwaited = false;
    document.m_Failure = read.failure;
    if (read.file)
        document.m_File = read.file;
    if (!packed.isNull())
        document.m_Packed = packed;
    else if (!read.picture.isNull() || !document.hasPicture())
        document.setPicture(std::move(read.picture));
    if (index == m_CurDocument)
        RedrawPicture();
}

bool MainWindow::waitForJobs(int number)
{
    for (;;) {
        auto job = m_Jobs->find(PictureJobs::Kind::Write, number);
        if (!job)
            job = m_Jobs->find(PictureJobs::Kind::Read, number);
        if (!job)
            job = m_Jobs->find(PictureJobs::Kind::Fetch, number);
        if (!job)
            return isDocument(indexOf(number));
        if (!PictureJobs::waitFor(job))
            return false;
    }
}

void MainWindow::packUnseen()
{
    const qint64 now = services().clock->now();
    for (int i = 0; isDocument(i); ++i) {
        const QPictureDocument &document = m_Documents[i];
        if (i == m_CurDocument || document.m_Pixmap.isNull() ||
            now - document.m_LastLook < s_unseenTime ||
            m_Jobs->find(PictureJobs::Kind::Pack, document.m_Number))
            continue;
        const auto packed = std::make_shared<PackedPicture>();
        m_Jobs->start(
            PictureJobs::Kind::Pack, document.m_Number, {},
            [picture = document.m_Pixmap.toImage(), packed](PictureProgress &) {
                *packed = PackedPicture(picture);
            },
            [this, number = document.m_Number, packed, now] {
                const int index = indexOf(number);
                if (!isDocument(index) || index == m_CurDocument)
                    return;
                QPictureDocument &unseen = m_Documents[index];
                // One that can't be packed is not tried again for a while.
                unseen.m_LastLook = now;
                if (packed->isNull())
                    return;
                unseen.m_Packed = *packed;
                unseen.m_Pixmap = {};
            });
    }
    services().clock->after(s_packInterval, this, [this] { packUnseen(); });
}

// A large one comes back as it came in the first place, with a word of how far it is.
void MainWindow::unpack(QPictureDocument &document)
{
    if (document.m_Packed.isNull() || document.m_IsAwaited)
        return;
    if (pixelsOf(document.m_Packed.size()) <= s_quickPixels) {
        // Where there is no memory for it, it stays packed.
        if (QImage picture = document.picture(); !picture.isNull())
            document.setPicture(std::move(picture));
        return;
    }
    awaitPicture(
        document.m_Number, PictureJobs::Kind::Fetch, tr("Showing \"%1\"..."),
        [packed = document.m_Packed](PictureProgress &) {
            return PictureRead{.picture = packed.unpacked()};
        },
        [](bool) {});
}
