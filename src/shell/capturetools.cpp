#include "shell/capturetools.h"

#include "base/clock.h"
#include "capture/dialogcountdown.h"
#include "capture/ellipseoverlay.h"
#include "capture/lastmark.h"
#include "capture/polygonoverlay.h"
#include "capture/rectangleoverlay.h"
#include "capture/windowbrowser.h"
#include "helper/helperserver.h"
#include "platform/desktoppictures.h"
#include "platform/services.h"
#include "shell/capturebridge.h"
#include "shell/frontwindow.h"
#include "shell/mainwindow.h"
#include "shell/preferences.h"

#include <QApplication>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

using MagnifierSlot = void (MainWindow::*)(QWidget *, EShowMagOpr, int, int);

struct Overlay {
    std::shared_ptr<MarkingOverlay> dialog{};
    MagnifierSlot magnifier = nullptr;
};

template<typename Region> std::shared_ptr<MarkingOverlay> regionOverlay(MainWindow &window)
{
    auto overlay = std::make_shared<Region>(nullptr, Preferences::markingHabits());
    overlay->SetPictureWidth(window.GetPictureWidthFile());
    overlay->SetPictureHeight(window.GetPictureHeightFile());
    return overlay;
}

Overlay overlayFor(GrabCommand command, MainWindow &window)
{
    switch (command) {
    case GrabCommand::Ellipse:
        return {regionOverlay<MyDrawRound>(window), &MainWindow::ShowDetailWindowRequest_Ellipse};
    case GrabCommand::Polygon:
        return {std::make_shared<dlgFreeHand>(nullptr, Preferences::markingHabits()),
                &MainWindow::ShowDetailWindowRequest_Poly};
    default:
        return {regionOverlay<Dialog>(window), &MainWindow::ShowDetailWindowRequest_Rect};
    }
}

// The entry of the window that the application watch has that number for.
std::optional<WindowCatalogue::Entry> frontEntry(unsigned window)
{
    const auto entries = services().windows->windows(WindowCatalogue::List::OnScreen, 0);
    const auto found = std::find_if(entries.begin(), entries.end(), [window](const auto &entry) {
        return window != 0 && entry.client == window && !entry.isDesktop();
    });
    return found == entries.end() ? std::nullopt : std::optional(*found);
}

Grab takeFront(unsigned window)
{
    const auto entry = frontEntry(window);
    if (!entry)
        return {};
    return {.picture = windowPicture(*entry),
            .name = entry->shownOwner(),
            .note = visiblePartNote(entry->number),
            .application = entry->owner,
            .title = entry->name};
}

// Where nobody knows the pointer the user looks at the window in front.
QRect screenInUse(unsigned window)
{
    const QList<QRect> screens = services().screens->areas();
    QPoint place = services().hands->pointer();
    if (!services().hands->isPointerKnown()) {
        if (const auto entry = frontEntry(window))
            place = entry->bounds.center().toPoint();
    }
    const auto found = std::find_if(screens.begin(), screens.end(), [place](const QRect &screen) {
        return screen.contains(place);
    });
    return found == screens.end() ? screens.value(0) : *found;
}

}  // namespace

// False where it was given up, or is to be before it has opened.
bool CaptureTools::run(QDialog &dialog)
{
    if (m_isClosed)
        return false;
    m_open = &dialog;
    const bool accepted = dialog.exec() == QDialog::Accepted;
    m_open.clear();
    return accepted;
}

GrabTools::Marked CaptureTools::mark(GrabCommand command)
{
    m_isClosed = false;
    GWSnapWorkbenchStopMenuItemCapture();
    const Overlay overlay = overlayFor(command, m_window);
    connect(overlay.dialog.get(), &CaptureOverlay::ShowDetailWindowRequest, &m_window,
            overlay.magnifier);
    // Before it leaves: the second click of a double click on its button comes right behind.
    connect(overlay.dialog.get(), &CaptureOverlay::leaves, this,
            [this, &dialog = *overlay.dialog](bool accepted) {
                if (!accepted)
                    return;
                m_front.holdClicks();
                QList<const QWidget *> panes;
                for (const Pane &pane : dialog.panes())
                    panes.append(pane.surface().window());
                m_front.leaving(panes);
            });
    connect(overlay.dialog.get(), &CaptureOverlay::opened, this, &CaptureTools::opened);
    if (!run(*overlay.dialog))
        return {};
    Preferences::countMarkedGrab();
    // The overlay lives as long as somebody may ask for its picture.
    return {.take =
                [dialog = overlay.dialog] {
                    Grab grab = dialog->take();
                    grab.goals = dialog->goals();
                    return grab;
                },
            .delay = overlay.dialog->isDelayed() ? Preferences::delay() : 0};
}

Grab CaptureTools::takeAtOnce(GrabCommand command, unsigned window)
{
    switch (command) {
    case GrabCommand::Last:
        return takeLastMark();
    case GrabCommand::Active:
        return takeFront(window);
    case GrabCommand::Monitor:
        return {.picture = desktopPicture(screenInUse(window))};
    default:
        return {.picture = desktopPicture(desktopBox())};
    }
}

bool CaptureTools::countDown(int seconds)
{
    DialogCountDown panel(nullptr);
    m_countdown = &panel;
    m_open = &panel;
    panel.setSecond(seconds);
    panel.show();
    // Escape pressed once is meant for it only there; elsewhere the user's program gets it too.
    // A compositor that places windows gives a new one the focus by itself, unless another fills
    // the screen, which would have to make room.
    if (services().ownWindows->placesWindows())
        services().watch->bringToFront(&panel);
    hearEscape(true);
    emit opened();
    constexpr int s_slack = 60;
    waitUntil(m_clock, (DialogCountDown::s_longest + s_slack) * 1000,
              [&] { return panel.getSecond() < 0; });
    hearEscape(false);
    m_countdown = nullptr;
    m_open.clear();
    return panel.getResult() == 1;
}

void CaptureTools::restartCountDown(int seconds)
{
    if (m_countdown && seconds > 0)
        m_countdown->restart(seconds);
}

std::optional<QList<Grab>> CaptureTools::browse()
{
    m_isClosed = false;
    WindowsPreView browser(&m_window);
    // A minimised window would take its dialog along.
    m_window.showInFront();
    const Skin &skin = m_window.skin();
    browser.findNormalFile = skin.path(u"BtnFilterLeft"_s, SkinNormal);
    browser.findFocusFile = skin.path(u"BtnFilterLeft"_s, SkinDown);
    browser.clearNormalFile = skin.path(u"BtnFilterRight"_s, SkinNormal);
    browser.clearFocusFile = skin.path(u"BtnFilterRight"_s, SkinDown);
    // The same for both, on purpose.
    browser.clearFilledFile = skin.path(u"BtnFilterRight"_s, SkinDisabled);
    browser.clearFilledFocusFile = browser.clearFilledFile;
    if (!m_isClosed)
        emit opened();
    // It may open on another screen than the one with the focus.
    if (!services().ownWindows->placesWindows())
        QMetaObject::invokeMethod(
            &browser, [&browser] { services().watch->bringToFront(&browser); },
            Qt::QueuedConnection);
    if (!run(browser))
        return std::nullopt;
    QList<Grab> grabs;
    for (qsizetype i = 0; i < browser.getPixmap()->size(); ++i)
        grabs.append({.picture = browser.getPixmap()->at(i),
                      .name = browser.getNameList()->at(i),
                      .note = browser.notes().at(i),
                      .application = browser.getNameList()->at(i),
                      .title = browser.titles().at(i)});
    return grabs;
}

bool CaptureTools::mustAsk(GrabCommand command)
{
    return command == GrabCommand::Window && GWSnapWorkbenchMustAsk();
}

bool CaptureTools::startHelper(GrabCommand command, const std::function<bool()> &begin)
{
    return command == GrabCommand::Window ? GWSnapWorkbenchStartCapture(begin)
                                          : GWSnapWorkbenchMenuCapture(begin);
}

void CaptureTools::stopMenuWait() { GWSnapWorkbenchStopMenuItemCapture(); }

void CaptureTools::dropHelper()
{
    GWSnapWorkbenchStartMessageServer(nullptr);
    GWSnapWorkbenchStartMessageServer(GWCaptureStatusCallback);
}

void CaptureTools::keepContent() { GWSnapWorkbenchKeepContent(); }

void CaptureTools::hearEscape(bool hears)
{
    if (hears)
        services().keys->listen({Qt::Key_Escape}, [this](Qt::Key) { emit escaped(); });
    else
        services().keys->stop();
}

// The pick's overlay is the helper's own.
QDialog *CaptureTools::openDialog() const
{
    if (m_open)
        return m_open;
    if (QDialog *question = GWSnapWorkbenchQuestion())
        return question;
    return qobject_cast<CaptureOverlay *>(QApplication::activeModalWidget());
}

// The main window, raised, would come to lie above it, would be in the picture, and might get the
// keyboard.
void CaptureTools::bringForward()
{
    QDialog *dialog = openDialog();
    if (!dialog)
        return;
    if (!QApplication::activePopupWidget()) {
        if (auto *overlay = qobject_cast<CaptureOverlay *>(dialog))
            overlay->stayOnTop();
        else
            dialog->raise();
    }
    FocusCover *cover = m_front.cover();
    m_front.front().bring(cover && cover->isVisible() ? *cover : *dialog);
}

void CaptureTools::closeOpen()
{
    m_isClosed = true;
    if (GWSnapWorkbenchQuestion())
        GWSnapWorkbenchWithdrawQuestion();
    else if (QDialog *dialog = openDialog())
        dialog->reject();
    else
        GWSnapWorkbenchGiveUp();
}
