#include "helper/sessioncapture.h"

#include "helper/hintplate.h"
#include "helper/scrollcapture.h"
#include "platform/services.h"

#include <QLocale>

#include <memory>
#include <utility>

namespace {

constexpr int s_followInterval = 100;  // ms

}  // namespace

SessionCapture::SessionCapture() = default;

SessionCapture::~SessionCapture() = default;

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
        connect(&overlay, &CaptureOverlay::opened, this, &HelperJob::opened);
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
        if (choice && choice->way == SessionOverlay::Way::Window)
            window = overlay.getPixmap(nullptr).toImage();
    }
    if (choice && choice->way != SessionOverlay::Way::Window)
        takeContent(*choice);
    else if (window.isNull())
        emit failed(NoWindow, tr("There is no such window any more"));
    else
        emit taken(window);
}

// Where the picture ends, for a user who has to know whether what matters is on it.
QString SessionCapture::told(const ScrollCapture::Result &result)
{
    if (result.note.isEmpty())
        return {};
    return tr("%1. The picture ends at row %2.")
        .arg(result.note, QLocale().toString(result.picture.height()));
}

void SessionCapture::takeContent(const SessionOverlay::Choice &choice)
{
    m_panel = std::make_unique<HintPlate>(nullptr);
    m_panel->addLine(tr("Return"), tr("keeps what there is"));
    m_panel->addLine(tr("Escape"), tr("gives up"));
    const QRect beside = choice.window.bounds.toRect();
    ScrollCapture scroll({.window = choice.window.number,
                          .area = choice.area,
                          .anchor = choice.pointer,
                          .marked = choice.marked,
                          .across = choice.across});
    connect(&scroll, &ScrollCapture::progressed, m_panel.get(),
            [this, beside](const QString &text) { showPanel(text, beside); });
    // From then on nothing is to be decided any more, and the keys are the user's again.
    connect(&scroll, &ScrollCapture::puttingBack, this, [this] {
        letKeysGo();
        emit putsBack();
    });
    m_process = choice.window.process;
    m_wantsKeys = true;
    m_scroll = &scroll;
    followFront();
    emit scrolls();
    ScrollCapture::Result result = scroll.run();
    m_scroll = nullptr;
    if (m_aborted)
        return;
    letKeysGo();
    m_panel.reset();
    if (!result.picture.isNull())
        emit taken(std::exchange(result.picture, {}), told(result));
    else if (!result.note.isEmpty())
        emit failed(NoPicture, result.note);
    else
        emit ended();
}

void SessionCapture::showPanel(const QString &text, const QRect &beside)
{
    m_panel->setHeadline(text);
    const QImage seen = m_scroll ? m_scroll->overview(m_panel->pictureBox()) : QImage();
    if (!seen.isNull())
        m_panel->setPicture(seen, tr("What has been taken so far"), text);
    m_panel->showBeside(beside);
}

// Escape and Return are heard wherever the user has left the keyboard, and in the window that
// scrolls. Whoever turns to another one means them for that.
void SessionCapture::followFront()
{
    if (!m_wantsKeys)
        return;
    ApplicationWatch &watch = *services().watch;
    const unsigned front = watch.frontWindow();
    const uint process = watch.frontProcess();
    if (m_front == 0 && process != ownProcess())
        m_front = front;
    watchKeys(front == m_front || front == 0 || process == ownProcess() ||
              (process != 0 && process == m_process));
    services().clock->after(s_followInterval, this, [this] { followFront(); });
}

void SessionCapture::watchKeys(bool watch)
{
    if (watch == std::exchange(m_watchesKeys, watch))
        return;
    if (!watch) {
        services().keys->stop();
        return;
    }
    services().keys->start({Qt::Key_Escape, Qt::Key_Return}, [this](Qt::Key key) {
        if (!m_scroll || !m_wantsKeys)
            return;
        letKeysGo();
        if (key == Qt::Key_Return)
            m_scroll->keep();
        else
            m_scroll->discard();
    });
}

void SessionCapture::letKeysGo()
{
    m_wantsKeys = false;
    watchKeys(false);
}

// Questions that the program asks now must get the keys, and must not be covered.
void SessionCapture::abort()
{
    m_aborted = true;
    if (m_overlay)
        m_overlay->reject();
    if (!m_scroll)
        return;
    m_scroll->abandon();
    letKeysGo();
    m_panel->hide();
}
