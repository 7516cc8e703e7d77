#include "helper/sessioncapture.h"

#include "helper/hintplate.h"
#include "helper/scrollcapture.h"
#include "platform/services.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTimer>

#include <memory>

namespace {

constexpr int s_noteTime = 6000;  // ms

// The picture is on its way; what is to be said about it stays for a while, and goes with the
// program at the latest.
void leaveNote(std::unique_ptr<HintPlate> panel, const QString &note, int rows, QPoint at)
{
    panel->clearLines();
    panel->setHeadline(note + u' ' +
                       SessionCapture::tr("%1 pixels were taken.").arg(QLocale().toString(rows)));
    panel->showAtFoot(at);
    HintPlate *plate = panel.release();
    QTimer::singleShot(s_noteTime, plate, &QObject::deleteLater);
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, plate, &QObject::deleteLater);
}

}  // namespace

void SessionCapture::start()
{
    waitUntilHidden();
    if (m_aborted)
        return;
    std::optional<SessionOverlay::Choice> choice;
    QImage window;
    {
        SessionOverlay overlay;
        m_overlay = &overlay;
        const bool accepted = overlay.exec() == QDialog::Accepted;
        overlay.CaptureOverlay::finished = true;
        m_overlay = nullptr;
        if (m_aborted)
            return;
        if (!accepted) {
            emit ended();
            return;
        }
        choice = overlay.choice();
        if (choice && !choice->content)
            window = overlay.getPixmap(nullptr).toImage();
    }
    if (choice && choice->content)
        takeContent(*choice);
    else if (window.isNull())
        emit failed(NoWindow, tr("There is no such window any more."));
    else
        emit taken(window);
}

void SessionCapture::takeContent(const SessionOverlay::Choice &choice)
{
    const QRect beside = choice.area.isEmpty() ? choice.window.bounds.toRect() : choice.area;
    auto panel = std::make_unique<HintPlate>(nullptr);
    panel->setHeadline(tr("Scrolling to the top"));
    panel->addLine(tr("Return"), tr("keeps what there is"));
    panel->addLine(tr("Escape"), tr("gives up"));
    panel->showBeside(beside);

    ScrollCapture scroll(
        {.window = choice.window.number, .area = choice.area, .anchor = choice.pointer});
    connect(&scroll, &ScrollCapture::progressed, panel.get(), [&panel](int rows) {
        panel->setHeadline(tr("%1 pixels").arg(QLocale().toString(rows)));
    });
    services().keys->start({Qt::Key_Escape, Qt::Key_Return}, [&scroll](Qt::Key key) {
        if (key == Qt::Key_Return)
            scroll.keep();
        else
            scroll.discard();
    });
    m_scroll = &scroll;
    ScrollCapture::Result result = scroll.run();
    m_scroll = nullptr;
    services().keys->stop();
    if (m_aborted)
        return;
    if (!result.picture.isNull()) {
        if (!result.note.isEmpty())
            leaveNote(std::move(panel), result.note, result.picture.height(), choice.pointer);
        emit taken(std::exchange(result.picture, {}));
    } else if (!result.note.isEmpty()) {
        panel.reset();
        emit failed(NoPicture, result.note);
    } else {
        panel.reset();
        emit ended();
    }
}

void SessionCapture::abort()
{
    m_aborted = true;
    if (m_overlay)
        m_overlay->reject();
    if (m_scroll)
        m_scroll->abandon();
}
