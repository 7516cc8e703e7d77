#include "shell/workbench.h"

#include "base/log.h"
#include "editing/zoom.h"
#include "platform/services.h"
#include "shell/notices.h"
#include "shell/progressplate.h"
#include "ui_mainwindow.h"

#include <QDir>
#include <QToolTip>

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_packInterval = 10'000;      // ms
constexpr qint64 s_unseenTime = 60'000;     // ms
constexpr qint64 s_quickPixels = 16 << 20;  // these come back from their packing at once

qint64 pixelsOf(QSize size) { return static_cast<qint64>(size.width()) * size.height(); }

}  // namespace

Workbench::Workbench(Ui::MainWindow &ui, QWidget &window, Notices &notices)
    : QObject(&window), m_ui(ui), m_notices(notices), m_tabs(ui, this),
      m_jobs(std::make_unique<PictureJobs>(*services().clock, this)),
      m_progress(new ProgressPlate(ui.tabWidget, *m_jobs, *services().clock)),
      m_editor(std::make_unique<TPictureEditor>(ui.lblPicture, &window))
{
    connect(m_jobs.get(), &PictureJobs::givenUp, this, [this](PictureJobs::Kind kind, int number) {
        const int index = m_documents.indexOf(number);
        if (kind == PictureJobs::Kind::Read && m_documents.has(index))
            drop(index);
    });
    connect(m_editor.get(), &TPictureEditor::typed, this, &Workbench::edited);
    connect(m_editor.get(), &TPictureEditor::zoomWanted, this, &Workbench::zoomAt);
    connect(ui.tabWidget, &TabWidget::tipWanted, this, &Workbench::showTip);
    packUnseen();
}

void Workbench::add(const QPixmap &picture, const QString &name, const PictureOrigin &origin)
{
    const int index = m_documents.add(picture, name, origin);
    const int number = m_documents[index].m_Number;
    refresh();
    show(index);
    emit changed(number);
}

void Workbench::open(const QStringList &paths,
                     const std::function<void(const QStringList &troubles)> &opened)
{
    const DocumentList::Opened added = m_documents.addFiles(paths);
    QList<int> numbers;
    for (const int index : added.all)
        numbers.append(m_documents[index].m_Number);
    // Each job holds them, and the last one to end tells.
    const auto waits = std::make_shared<int>(1);
    const auto end = [this, waits, opened, numbers, paths] {
        if (--*waits > 0)
            return;
        // In the order in which they were named, whichever was read first.
        for (const int number : numbers) {
            if (const QPictureDocument *document = m_documents.find(number);
                document && document->hasPicture())
                emit fileUsed(document->m_FileName);
        }
        if (!opened)
            return;
        QStringList troubles;
        for (qsizetype i = 0; i < numbers.size(); ++i) {
            const QPictureDocument *document = m_documents.find(numbers.at(i));
            troubles.append(document ? troubleOf(*document)
                                     : tr("\"%1\" was closed meanwhile.").arg(paths.at(i)));
        }
        troubles.removeAll(QString());
        opened(troubles);
    };
    if (added.first >= 0) {
        refresh();
        show(added.first);
    } else if (added.known >= 0) {
        show(added.known);
    }
    for (int i = added.first; m_documents.has(i); ++i) {
        const auto read = [path = m_documents[i].m_FileName](PictureProgress &progress) {
            return readPicture(path, progress);
        };
        ++*waits;
        awaitPicture(m_documents[i].m_Number, PictureJobs::Kind::Read, tr("Opening \"%1\"..."),
                     read, [end](bool) { end(); });
    }
    end();
}

void Workbench::show(int index)
{
    if (index == m_documents.current())
        return;
    m_notices.passDone();
    m_editor->EndEdit();
    if (QPictureDocument *left = m_documents.currentDocument())
        parkState(*left);
    m_documents.setCurrent(index);
    const QPictureDocument *shown = m_documents.currentDocument();
    m_progress->setDocument(shown ? shown->m_Number : 0);
    redraw();
    m_tabs.show(index);
    emit titleChanged(m_tabs.choose(index));
    if (shown) {
        // After the picture, which resets the zoom. The history says how large the picture is, and
        // size and zoom give the scroll bars their range.
        const QPictureDocument entered = *shown;
        m_editor->setVecUnDo(&entered.m_VecUnDo);
        m_editor->setVecReDo(&entered.m_VecReDo);
        zoomTo(entered.m_Scale);
        m_tabs.scrollTo({entered.m_ScrollX, entered.m_ScrollY});
    }
    m_ui.tabWidget->setFocus(Qt::OtherFocusReason);
}

void Workbench::refresh()
{
    m_tabs.refill(m_documents);
    emit titleChanged(m_tabs.choose(m_documents.current()));
}

void Workbench::redraw()
{
    QPictureDocument *document = m_documents.currentDocument();
    if (!document)
        return;
    unpack(*document);
    m_editor->setPixmap(document->m_Pixmap);
    m_tabs.showMissing(troubleOf(*document));
}

// Why its picture can't be seen; empty where it can, or is still being read.
QString Workbench::troubleOf(const QPictureDocument &document)
{
    const bool isMissing = !document.hasPicture() && !document.m_Failure.isEmpty();
    return isMissing
               ? tr("\"%1\" can't be shown: %2").arg(document.GetShowName(), document.m_Failure)
               : QString();
}

// Its file, or else its name, and how large it is.
void Workbench::showTip(int index, QPoint position)
{
    if (!m_documents.has(index))
        return;
    const QPictureDocument &document = m_documents[index];
    QStringList lines{document.IsNewFile() ? document.GetShowName()
                                           : QDir::toNativeSeparators(document.m_FileName)};
    const QSize size =
        &document == m_documents.currentDocument() ? m_editor->pictureSize() : document.size();
    if (!size.isEmpty())
        lines.append(tr("%1 × %2 px").arg(size.width()).arg(size.height()));
    for (QString &line : lines)
        line = line.toHtmlEscaped();
    QToolTip::showText(position, u"<p style='white-space:pre'>"_s + lines.join(u"<br>"_s),
                       m_ui.tabWidget);
}

// What is being typed will be part of the picture.
bool Workbench::hasModified(bool all) const
{
    const QPictureDocument *document = m_documents.currentDocument();
    const bool isCurrent = document && (m_editor->isTyping() || document->m_Modified);
    return isCurrent || (all && m_documents.hasModified());
}

QPixmap Workbench::unitedPicture()
{
    QPictureDocument *document = m_documents.currentDocument();
    if (!document)
        return {};
    m_editor->EndEdit();
    parkHistory(*document);
    document->GetUnitePixmap();
    return std::exchange(document->m_UnitePixmap, {});
}

void Workbench::parkHistory(QPictureDocument &document) const
{
    document.m_VecUnDo = m_editor->getVecUnDo();
    document.m_VecReDo = m_editor->getVecReDo();
}

void Workbench::parkState(QPictureDocument &document) const
{
    document.m_ScrollX = m_tabs.scrolled().x();
    document.m_ScrollY = m_tabs.scrolled().y();
    document.m_Scale = m_scale;
    document.m_LastLook = services().clock->now();
    parkHistory(document);
}

void Workbench::drop(int index)
{
    const int number = m_documents[index].m_Number;
    m_jobs->cancel(number);
    m_notices.withdraw(m_documents[index].m_Notice);
    // To show another one parks nothing then, and the document that stays current must not lose
    // what is new.
    if (QPictureDocument *current = m_documents.currentDocument();
        current && m_documents.current() != index)
        parkState(*current);
    const int next = m_documents.remove(index);
    refresh();
    show(next);
    forgetLastPicture();
    emit changed(number);
}

void Workbench::dropAll()
{
    const QList<int> numbers = m_documents.numbers();
    for (const QPictureDocument &document : m_documents) {
        m_jobs->cancel(document.m_Number);
        m_notices.withdraw(document.m_Notice);
    }
    m_documents.clear();
    refresh();
    m_ui.tabWidget->setFocus(Qt::OtherFocusReason);
    forgetLastPicture();
    for (const int number : numbers)
        emit changed(number);
}

// The editor holds the current document's picture and shapes, also when that was the last one.
void Workbench::forgetLastPicture()
{
    if (!m_documents.isEmpty())
        return;
    m_editor->clearShape();
    m_editor->setPixmap({});
}

void Workbench::zoomTo(float scale)
{
    m_scale = scale;
    m_editor->setPixmapScaled(m_scale);
}

QPointF Workbench::middleOfView() const
{
    return m_tabs.scrolled() + QRectF(m_ui.scrollArea->viewport()->rect()).center();
}

void Workbench::zoomHolding(float scale, QPointF position)
{
    const QSize picture = m_editor->pictureSize();
    const qreal ratio = m_ui.lblPicture->devicePixelRatioF();
    const auto mapping = [&] {
        return ViewMapping{m_ui.lblPicture->size() * ratio, picture, m_scale};
    };
    const Held now{.inView = position - m_tabs.scrolled(),
                   .scrolled = m_tabs.scrolled(),
                   .scale = m_scale,
                   .number = m_documents.currentDocument()->m_Number};
    // The middle of the pixel at which the pointer is.
    const QPointF middle(0.5, 0.5);
    if (m_held.inView != now.inView || m_held.scrolled != now.scrolled ||
        m_held.scale != now.scale || m_held.number != now.number) {
        const QPointF point = (position * ratio + middle - mapping().margins()) / m_scale;
        m_held = now;
        m_held.point = {std::clamp<qreal>(point.x(), 0, picture.width()),
                        std::clamp<qreal>(point.y(), 0, picture.height())};
    }
    zoomTo(scale);
    // Halves are rounded down: that is what a pixel's middle is beyond its corner.
    const QPointF place = mapping().toWidget(m_held.point) / ratio - m_held.inView - middle;
    m_tabs.scrollTo(
        {static_cast<int>(std::ceil(place.x())), static_cast<int>(std::ceil(place.y()))});
    m_held.scrolled = m_tabs.scrolled();
    m_held.scale = m_scale;
}

void Workbench::zoomIn()
{
    if (const int width = m_editor->pictureSize().width(); width > 0)
        zoomHolding(zoomedIn(m_scale, width), middleOfView());
}

void Workbench::zoomOut()
{
    if (const int width = m_editor->pictureSize().width(); width > 0)
        zoomHolding(zoomedOut(m_scale, width), middleOfView());
}

void Workbench::zoomToRealSize()
{
    if (m_editor->pictureSize().isEmpty())
        zoomTo(1);
    else
        zoomHolding(1, middleOfView());
}

void Workbench::zoomNear(float wanted)
{
    if (const int width = m_editor->pictureSize().width(); width > 0)
        zoomHolding(zoomWithin(wanted, width), middleOfView());
}

void Workbench::zoomToFit()
{
    if (!m_editor->pictureSize().isEmpty())
        zoomTo(::zoomToFit(m_editor->pictureSize(), m_tabs.room()));
}

void Workbench::zoomBy(double notches) { zoomAt(notches, middleOfView()); }

void Workbench::zoomAt(double notches, QPointF position)
{
    if (const int width = m_editor->pictureSize().width(); width > 0)
        zoomHolding(zoomedBy(m_scale, notches, width), position);
}

void Workbench::fit()
{
    // The editor tells of a size while it is being made.
    if (!m_editor)
        return;
    m_tabs.fit(m_editor->pictureSize(), m_scale);
    emit viewChanged();
}

void Workbench::shapesChanged()
{
    emit edited();
    // Only the first change of a saved document costs a new tab bar.
    QPictureDocument *document = m_documents.currentDocument();
    if (!document || document->m_Modified)
        return;
    document->m_Modified = true;
    refresh();
}

void Workbench::saved(int number)
{
    refresh();
    emit changed(number);
    if (const QPictureDocument *document = m_documents.find(number))
        emit fileUsed(document->m_FileName);
}

void Workbench::awaitPicture(int number, PictureJobs::Kind kind, const QString &text,
                             std::function<PictureRead(PictureProgress &)> read,
                             std::function<void(bool hasPicture)> done)
{
    struct Result {
        PictureRead read{};
        PackedPicture packed{};
    };
    const auto result = std::make_shared<Result>();
    QPictureDocument &document = *m_documents.find(number);
    document.m_IsAwaited = true;
    const bool isSeen = m_documents.currentDocument() == &document;
    m_jobs->start(
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
            const QPictureDocument *taken = m_documents.find(number);
            done(taken && taken->hasPicture());
        });
}

void Workbench::takePicture(int number, PictureRead read, const PackedPicture &packed)
{
    QPictureDocument *document = m_documents.find(number);
    if (!document)
        return;
    document->m_IsAwaited = false;
    if (!read.failure.isEmpty())
        qCInfo(logStore) << document->m_FileName << "can't be opened:" << read.failure;
    document->m_Failure = read.failure;
    if (read.file)
        document->m_File = read.file;
    document->m_IsLayered = !read.shapes.isEmpty();
    if (document->m_IsLayered)
        document->m_VecUnDo = read.shapes;
    document->m_IsFileKept = document->m_IsFileKept || read.isFromLater;
    if (!read.notice.isEmpty()) {
        document->m_Notice = tr("\"%1\": %2").arg(document->GetShowName(), read.notice);
        m_notices.say(document->m_Notice);
    }
    if (!packed.isNull())
        document->m_Packed = packed;
    else if (!read.picture.isNull() || !document->hasPicture())
        document->setPicture(std::move(read.picture));
    if (document != m_documents.currentDocument())
        return;
    const QPoint scrolled = m_tabs.scrolled();
    redraw();
    if (!read.shapes.isEmpty())
        m_editor->setVecUnDo(&read.shapes);
    // One that was packed comes back as it was left.
    zoomTo(m_scale);
    m_tabs.scrollTo(scrolled);
}

bool Workbench::waitForJobs(int number)
{
    using Kind = PictureJobs::Kind;
    for (;;) {
        PictureJobs::JobPtr job;
        for (const Kind kind : {Kind::Write, Kind::Read, Kind::Fetch})
            job = job ? job : m_jobs->find(kind, number);
        if (!job)
            return m_documents.find(number);
        if (!PictureJobs::waitFor(job))
            return false;
    }
}

void Workbench::packUnseen()
{
    const qint64 now = services().clock->now();
    for (QPictureDocument &document : m_documents) {
        if (&document != m_documents.currentDocument() && !document.m_Pixmap.isNull() &&
            now - document.m_LastLook >= s_unseenTime &&
            !m_jobs->find(PictureJobs::Kind::Pack, document.m_Number))
            pack(document);
    }
    services().clock->after(s_packInterval, this, [this] { packUnseen(); });
}

void Workbench::pack(QPictureDocument &document)
{
    const auto packed = std::make_shared<PackedPicture>();
    m_jobs->start(
        PictureJobs::Kind::Pack, document.m_Number, {},
        [picture = document.m_Pixmap.toImage(), packed](PictureProgress &) {
            *packed = PackedPicture(picture);
        },
        [this, number = document.m_Number, packed, now = services().clock->now()] {
            QPictureDocument *unseen = m_documents.find(number);
            if (!unseen || unseen == m_documents.currentDocument())
                return;
            // One that can't be packed is not tried again for a while.
            unseen->m_LastLook = now;
            if (packed->isNull())
                return;
            unseen->m_Packed = *packed;
            unseen->m_Pixmap = {};
        });
}

// A large one comes back as it came in the first place, with a word of how far it is.
void Workbench::unpack(QPictureDocument &document)
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
