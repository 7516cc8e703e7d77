#include "shell/grabdelivery.h"

#include "config/nametemplate.h"
#include "platform/services.h"
#include "shell/copiedpicture.h"
#include "shell/newpicture.h"
#include "shell/notices.h"
#include "shell/picturereading.h"
#include "shell/preferences.h"
#include "shell/workbench.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <QUrl>

// What came of one picture so far. Workers' callbacks share it, and the actions of its
// notification.
struct GrabDelivery::Delivery {
    Picture asked{};
    int document = 0;    // its number; 0 without a tab
    QString path{};      // of the file that it was saved in
    QStringList told{};  // what succeeded, and what did not
    bool hasFailed = false;
    bool isCopied = false;  // it is in the clipboard itself
    int parts = 0;          // that are under way

    void fail(const QString &text)
    {
        hasFailed = true;
        if (!text.isEmpty())
            told.append(text);
    }
};

GrabDelivery::GrabDelivery(Workbench &work, Notices &notices, PictureReading &reading)
    : m_work(work), m_notices(notices), m_reading(reading)
{
}

bool GrabDelivery::deliver(const Picture &picture)
{
    const auto delivery = std::make_shared<Delivery>();
    delivery->asked = picture;
    const GrabGoals goals = picture.goals;
    const bool opensTab = goals.testFlag(GrabGoal::Tab);
    // This function is one of its parts, so that nothing is told before all has begun.
    delivery->parts = 1;
    if (opensTab)
        openTab(*delivery);
    if (goals.testFlag(GrabGoal::Copy)) {
        CopiedPicture::copy(picture.picture.toImage(), m_work.jobs());
        delivery->isCopied = true;
    }
    if (goals.testFlag(GrabGoal::Pin))
        emit pinned(picture.picture.toImage(), picture.name, picture.place);
    if (goals.testFlag(GrabGoal::Caller))
        emit handedOver(picture);
    if (goals.testFlag(GrabGoal::Save))
        save(delivery);
    if (goals.testFlag(GrabGoal::Text))
        readText(delivery);
    endPart(delivery);
    return opensTab;
}

void GrabDelivery::openTab(Delivery &delivery)
{
    m_work.add(delivery.asked.picture, delivery.asked.name, delivery.asked.origin);
    delivery.document = m_work.documents().currentDocument()->m_Number;
}

// At once: the program may be about to end, and keeps what is in a tab.
void GrabDelivery::keepInTab(Delivery &delivery)
{
    if (delivery.document != 0)
        return;
    openTab(delivery);
    emit wanted();
}

void GrabDelivery::save(const DeliveryPtr &delivery)
{
    ++delivery->parts;
    const PictureOrigin &origin = delivery->asked.origin;
    const Preferences::PictureFormat format = Preferences::pictureFormat();
    const auto nameOf =
        [name = NameTemplate(Preferences::pictureName()),
         values = NameTemplate::Values{origin.time, origin.application, origin.title},
         ending = format.ending](int number) { return name.fileName(values, number, ending); };
    const auto made = std::make_shared<NewPicture>();
    m_work.jobs().start(
        PictureJobs::Kind::Write, delivery->document, tr("Saving the picture..."),
        [picture = delivery->asked.picture.toImage(), folder = Preferences::pictureFolder(), nameOf,
         quality = format.hasQuality ? Preferences::pictureQuality() : -1,
         made](PictureProgress &progress) {
            *made = writeNewPicture(picture, folder, nameOf, quality, progress);
        },
        [this, delivery, made] {
            saved(*delivery, *made);
            endPart(delivery);
        });
}

void GrabDelivery::saved(Delivery &delivery, const NewPicture &made)
{
    const QString shown = QDir::toNativeSeparators(made.path);
    if (made.result.isWritten) {
        delivery.path = made.path;
        delivery.told.append(tr("Saved as %1").arg(shown));
        bindTab(delivery, made);
        return;
    }
    if (made.result.failure.isEmpty())
        delivery.fail(tr("The picture was not saved."));
    else
        delivery.fail(tr("\"%1\" could not be saved: %2").arg(shown, made.result.failure));
    keepInTab(delivery);
}

// The tab is that of the file now, unless the user was faster and has saved it elsewhere.
void GrabDelivery::bindTab(const Delivery &delivery, const NewPicture &made)
{
    QPictureDocument *document = m_work.documents().find(delivery.document);
    if (!document || !document->IsNewFile())
        return;
    if (document == m_work.documents().currentDocument())
        m_work.parkHistory(*document);
    document->m_File = made.result.file;
    document->m_FileName = made.path;
    document->m_Modified = !document->m_VecUnDo.isEmpty();
    document->noteWritten(made.path, {});
    document->SetIsNotNewFile();
    m_work.saved(delivery.document);
}

void GrabDelivery::readText(const DeliveryPtr &delivery)
{
    ++delivery->parts;
    m_reading.copyTextOf(delivery->asked.picture.toImage(),
                         [this, delivery](const QString &told, bool isCopied) {
                             if (isCopied) {
                                 // It has taken the picture's place there.
                                 delivery->isCopied = false;
                                 delivery->told.append(told);
                             } else {
                                 delivery->fail(told);
                             }
                             endPart(delivery);
                         });
}

void GrabDelivery::endPart(const DeliveryPtr &delivery)
{
    if (--delivery->parts > 0)
        return;
    if (delivery->isCopied)
        delivery->told.prepend(tr("The picture is in the clipboard."));
    if (delivery->hasFailed)
        keepInTab(*delivery);
    const bool notifies = delivery->asked.goals.testFlag(GrabGoal::Notify);
    if (notifies)
        notify(delivery);
    // A notification passes, and what went wrong is not to be missed.
    const QString text = delivery->told.join(u'\n');
    if (delivery->hasFailed && !text.isEmpty())
        m_notices.say(text);
    else if (!notifies && !text.isEmpty())
        m_notices.sayDone(text);
}

void GrabDelivery::notify(const DeliveryPtr &delivery)
{
    const QPointer<GrabDelivery> self(this);
    const auto showIt = [self, delivery] {
        if (self)
            self->show(delivery);
    };
    const auto copyIt = [self, delivery] {
        if (self)
            CopiedPicture::copy(self->pictureNow(*delivery), self->m_work.jobs());
    };
    Notifications::Notification notification{
        .title = tr("A picture was taken"),
        .text = delivery->told.join(u'\n'),
        .picture = delivery->asked.picture.toImage(),
        .actions = {{tr("Copy"), copyIt}, {tr("Show"), showIt}},
        .click = showIt};
    if (!delivery->path.isEmpty()) {
        const QUrl folder = QUrl::fromLocalFile(QFileInfo(delivery->path).path());
        notification.actions.append(
            {tr("Open Folder"), [folder] { QDesktopServices::openUrl(folder); }});
    }
    const QString text = delivery->told.isEmpty() ? notification.title : delivery->told.join(u'\n');
    services().notifications->show(notification,
                                   [self, text, isTold = delivery->hasFailed](bool isShown) {
                                       if (self && !isShown && !isTold)
                                           self->m_notices.sayDone(text);
                                   });
}

// The tab may have been closed since.
void GrabDelivery::show(const DeliveryPtr &delivery)
{
    const int index = m_work.documents().indexOf(delivery->document);
    if (m_work.documents().has(index))
        m_work.show(index);
    else if (QFileInfo::exists(delivery->path))
        m_work.open({delivery->path});
    else
        openTab(*delivery);
    emit wanted();
}

// What the user has drawn on it meanwhile is part of it, and what that covers is not.
QImage GrabDelivery::pictureNow(const Delivery &delivery)
{
    const QPictureDocument *open = m_work.documents().find(delivery.document);
    if (!open || !open->hasPicture())
        return delivery.asked.picture.toImage();
    if (open == m_work.documents().currentDocument())
        return m_work.unitedPicture().toImage();
    QPictureDocument copy = *open;
    return copy.GetUnitePixmap().toImage();
}
