#pragma once

#include <QString>

#include <functional>

#include <functional>

class MainWindow;
class QDialog;

/// The bridge between the main window and the capture helper: it starts the helper's grabs, and
/// turns each of its statuses into a step of the main window.

/// Shows and hides this application for the helper.
class AXProjectAppDelegate
{
public:
    static AXProjectAppDelegate *sharedDelegate();

    void showSnapWorkbenchMainWindow();
    void hideSnapWorkbenchMainWindow();
};

/// The one instance; null until a grab has been started. Not owned.
extern AXProjectAppDelegate *Ax_Shared_hlp;

/// Receives the helper's statuses; see GWCaptureStatus.
void GWCaptureStatusCallback(void *unused, int status, const char *path, int failure,
                             const char *text);

/// The folder that the helper's picture goes to, for the user alone and made where it is missing; a
/// null text if it can't be had.
QString GWSnapWorkbenchGetTempPath();
/// Removes it with what is left in it, if it is the user's own.
void GWSnapWorkbenchRemoveTempFiles();

/// Whether a grab may start: 1 to go on, 0 to stop. With `prompt` not 0 it may ask the user.
signed char GWSnapWorkbenchTestClientStatus(signed char prompt);
/// Whether it would ask.
bool GWSnapWorkbenchMustAsk();
/// The question that is open; null while none is.
QDialog *GWSnapWorkbenchQuestion();
/// Closes it unanswered: no grab starts, and another one asks again.
void GWSnapWorkbenchWithdrawQuestion();

/// Start grabs of a picked window or its scrolling content, which may ask first, and of an open
/// menu. They return at once otherwise, and give true when the helper was told. `begin`, if there
/// is one, is called once nothing is left to ask, and can keep them from that.
bool GWSnapWorkbenchStartCapture(const std::function<bool()> &begin = {});
bool GWSnapWorkbenchMenuCapture(const std::function<bool()> &begin = {});

void GWSnapWorkbenchStatusDoHide();
void GWSnapWorkbenchStatusDoShow();
/// Opens the helper's picture, and removes it and its folder. Null does nothing.
void GWSnapWorkbenchStatusFinish(const char *path);

/// Shows a text in an alert, and waits for the answer.
void GWSnapWorkbenchShowStrings(const QString &text);

MainWindow *Ax_GetMainWindow();
