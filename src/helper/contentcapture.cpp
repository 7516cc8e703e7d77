#include "helper/contentcapture.h"

#include "helper/areaoutline.h"
#include "helper/handcapture.h"
#include "helper/hintplate.h"
#include "helper/scrollcapture.h"
#include "helper/scrolledwindow.h"
#include "platform/desktoppictures.h"
#include "platform/services.h"

#include <QLocale>

#include <algorithm>
#include <memory>
#include <utility>

namespace {

// Milliseconds.
constexpr int s_followInterval = 100;
constexpr int s_windowLimit = 3000;
constexpr int s_frames = 50;  // in which the compositor draws what has come back
constexpr int s_rest = 200;
constexpr int s_restLimit = 1000;

constexpr int s_nameLimit = 32;

ScrollCapture::Target targetOf(const ContentPick::Choice &choice)
{
    return {.window = choice.window.number,
            .area = choice.area,
            .anchor = choice.pointer,
            .marked = choice.marked,
            .across = choice.across};
}

// Shows a preview of the picture so far beside the text.
template<typename Capture>
void showSoFar(HintPlate &panel, const Capture &capture, const QString &text)
{
    const QImage seen = capture.overview(panel.pictureBox());
    if (!seen.isNull())
        panel.setPicture(seen, ContentCapture::tr("What has been taken so far"), text);
}

// The name of the other window that has the keys; long names are shortened.
QString nameOfFront(uint process)
{
    QString name;
    for (const auto &window : services().windows->windows(WindowCatalogue::List::OnScreen, 0)) {
        if (window.process == process) {
            name = window.name.isEmpty() ? window.owner : window.name;
            break;
        }
    }
    if (name.size() > s_nameLimit)
        name = name.left(s_nameLimit - 1) + u'…';
    return name.isEmpty() ? ContentCapture::tr("Another window")
                          : ScrolledWindow::tr("\"%1\"").arg(name);
}

QString frontText(const QString &name)
{
    return ScrolledWindow::tr("%1 is in front: waiting until it is gone").arg(name);
}

}  // namespace

ContentCapture::ContentCapture() = default;

ContentCapture::~ContentCapture() = default;

void ContentCapture::start()
{
    waitUntilHidden();
    if (m_aborted)
        return;
    if (m_isGivenUp) {
        emit ended();
        return;
    }
    std::optional<ContentPick::Choice> choice;
    QImage window;
    QString note;
    {
        ContentPick overlay;
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
        if (choice)
            emit picked(choice->window.owner, choice->window.name);
        if (choice && choice->way == ContentPick::Way::Window) {
            window = overlay.getPixmap(nullptr).toImage();
            note = visiblePartNote(choice->window.number);
        }
    }
    if (choice && choice->way == ContentPick::Way::Content)
        takeContent(*choice);
    else if (choice && choice->way == ContentPick::Way::Hands)
        takeScrolledByHand(*choice);
    else if (window.isNull())
        emit failed(NoWindow, tr("There is no such window any more"));
    else
        emit taken(window, note);
}

void ContentCapture::openPanel()
{
    if (!services().ownWindows->placesWindows())
        return;
    m_panel = std::make_unique<HintPlate>(nullptr);
    m_panel->addLine(tr("Return"), tr("keeps what there is"));
    m_panel->addLine(tr("Esc"), tr("gives up"));
}

template<typename Capture>
ScrollCapture::Result ContentCapture::run(Capture &capture, const WindowCatalogue::Entry &window)
{
    m_process = window.process;
    m_wantsKeys = true;
    m_keep = [&capture] { capture.keep(); };
    m_discard = [&capture] { capture.discard(); };
    m_abandon = [&capture] { capture.abandon(); };
    followFront();
    emit scrolls();
    waitForWindow(window);
    ScrollCapture::Result result = capture.run();
    m_keep = m_discard = m_abandon = m_tellAgain = nullptr;
    return result;
}

void ContentCapture::takeContent(const ContentPick::Choice &choice)
{
    openPanel();
    ScrollCapture scroll(targetOf(choice));
    connect(&scroll, &ScrollCapture::progressed, this,
            [this, &scroll, beside = choice.window.bounds.toRect()](const QString &text) {
                if (!m_panel) {
                    tellBeside(text);
                    return;
                }
                m_panel->setHeadline(text);
                showSoFar(*m_panel, scroll, text);
                m_panel->showBeside(beside);
            });
    // From now on there is nothing left to decide, so the keys are released.
    connect(&scroll, &ScrollCapture::puttingBack, this, [this] {
        letKeysGo();
        emit putsBack();
    });
    // Some compositors draw the pointer into what they hand out, so it leaves the window but for
    // its tip, and nobody else gets the focus.
    Hands &hands = *services().hands;
    const QPoint pointer = hands.pointer();
    const QPoint aside = choice.window.bounds.toRect().bottomRight();
    if (!services().pictures->isLive())
        hands.movePointer(aside);
    ScrollCapture::Result result = run(scroll, choice.window);
    if (!services().pictures->isLive() && hands.pointer() == aside)
        hands.movePointer(pointer);
    // Tells where the picture ends, so that the user knows whether the important part is included.
    if (result.lastRow >= 0)
        result.note = tr("%1. The picture ends at row %2.")
                          .arg(result.note, QLocale().toString(result.lastRow));
    else if (result.lastColumn >= 0)
        result.note = tr("%1. The picture ends at column %2.")
                          .arg(result.note, QLocale().toString(result.lastColumn));
    deliver(std::move(result));
}

void ContentCapture::takeScrolledByHand(const ContentPick::Choice &choice)
{
    openPanel();
    HandCapture hands(targetOf(choice));
    if (!m_panel) {
        connect(&hands, &HandCapture::progressed, this, &ContentCapture::tellBeside);
        deliver(run(hands, choice.window));
        return;
    }
    m_outline = std::make_unique<AreaOutline>();
    m_panel->reservePicture();
    m_panel->reserveHeadlines(HandCapture::longestTexts() << frontText(QString(s_nameLimit, u'n')));
    QString told;
    const auto place = [this, &hands] {
        m_outline->show(hands.area());
        // If the screen has no space beside the area, the user would not learn how to end the
        // capture, or that the position is lost. So the panel may cover the area while nothing is
        // being captured.
        m_panel->showOutside(hands.area(), hands.window(), !hands.isTaking());
    };
    const auto tell = [this, &told] {
        m_panel->setHeadline(m_inFront.isEmpty() ? told : frontText(m_inFront));
        m_panel->setKeysHeard(m_inFront.isEmpty());
    };
    connect(&hands, &HandCapture::moved, m_panel.get(), place);
    connect(&hands, &HandCapture::progressed, m_panel.get(), [&](const QString &text) {
        told = text;
        tell();
        place();
        showSoFar(*m_panel, hands, text);
    });
    m_tellAgain = [&] {
        tell();
        place();
    };
    deliver(run(hands, choice.window));
}

void ContentCapture::deliver(ScrollCapture::Result result)
{
    if (m_aborted)
        return;
    letKeysGo();
    m_panel.reset();
    m_outline.reset();
    if (!result.picture.isNull())
        emit taken(std::exchange(result.picture, {}), result.note);
    else if (!result.note.isEmpty())
        emit failed(NoPicture, result.note);
    else
        emit ended();
}

// The tray is all that may say something meanwhile.
void ContentCapture::tellBeside(const QString &text)
{
    emit progressed(
        tr("%1. The key of this grab again keeps what there is, \"cancel\" gives up.").arg(text));
}

// Where the desktop was frozen, the pick still lies over it: the window has to be seen again as it
// was, and to be known anew.
void ContentCapture::waitForWindow(const WindowCatalogue::Entry &window)
{
    if (services().pictures->isLive())
        return;
    waitUntil(*services().clock, s_windowLimit, [&window] {
        if (services().pictures->isFrozen())
            return false;
        const auto shown = services().windows->windows(WindowCatalogue::List::OnScreen, 0);
        return std::any_of(shown.begin(), shown.end(),
                           [&](const auto &entry) {
                               return entry.number == window.number &&
                                      entry.bounds == window.bounds;
                           }) &&
               std::none_of(shown.begin(), shown.end(),
                            [](const auto &entry) { return entry.process == ownProcess(); });
    });
    services().clock->pause(s_frames);
    if (!services().abilities.lackOf(Ability::WindowList).isEmpty())
        waitForRest(window.number);
}

// What has been closed may fade, and where no windows are known only the picture tells when it has
// gone.
void ContentCapture::waitForRest(int window)
{
    Clock &clock = *services().clock;
    QImage last;
    Stopwatch sinceChange(clock);
    waitUntil(clock, s_restLimit, [&] {
        const QImage now = services().pictures->ofWindows(std::nullopt, {window});
        if (now != last)
            sinceChange.restart();
        last = now;
        return sinceChange.elapsed() >= s_rest;
    });
}

void ContentCapture::keep()
{
    if (!m_keep || !m_wantsKeys)
        return;
    letKeysGo();
    m_keep();
}

// Escape and Return end the capture while the window that scrolls is active, or the one that was
// active at the beginning. If the user activates another window, the keys belong to that one.
void ContentCapture::followFront()
{
    if (!m_wantsKeys)
        return;
    ApplicationWatch &watch = *services().watch;
    const unsigned front = watch.frontWindow();
    const uint process = watch.frontProcess();
    if (m_front == 0 && process != ownProcess())
        m_front = front;
    const bool isElsewhere = front != m_front && front != 0 && process != ownProcess() &&
                             (process == 0 || process != m_process);
    watchKeys(!isElsewhere);
    const QString name = isElsewhere ? nameOfFront(process) : QString();
    if (name != std::exchange(m_inFront, name) && m_tellAgain)
        m_tellAgain();
    services().clock->after(s_followInterval, this, [this] { followFront(); });
}

void ContentCapture::watchKeys(bool watch)
{
    if (watch == std::exchange(m_watchesKeys, watch))
        return;
    if (!watch) {
        services().keys->stop();
        return;
    }
    services().keys->start({Qt::Key_Escape, Qt::Key_Return}, [this](Qt::Key key) {
        if (!m_keep || !m_wantsKeys)
            return;
        letKeysGo();
        (key == Qt::Key_Return ? m_keep : m_discard)();
    });
}

void ContentCapture::giveUp()
{
    if (m_overlay) {
        m_overlay->reject();
    } else if (!m_discard) {
        m_isGivenUp = true;
    } else if (m_wantsKeys) {
        letKeysGo();
        m_discard();
    }
}

void ContentCapture::letKeysGo()
{
    m_wantsKeys = false;
    watchKeys(false);
}

// The program is about to ask questions, which must get the keys and must not be covered.
void ContentCapture::abort()
{
    m_aborted = true;
    if (m_overlay)
        m_overlay->reject();
    if (!m_abandon)
        return;
    m_abandon();
    letKeysGo();
    if (m_panel)
        m_panel->hide();
    m_outline.reset();
}
