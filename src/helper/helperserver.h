#pragma once

/// The capture helper: grabs that watch and work on other programs - an open menu, a window, or all
/// that scrolls in it. Whoever starts one gets word through the status callback alone.
///
/// One grab runs at a time. Its picture is a file in the folder that came with the start, and is
/// the receiver's from then on; nothing else is left there.

/// Called on the main thread, from the event loop. The texts are UTF-8 and live as long as the
/// call. The first argument carries nothing.
using GWCaptureStatus = void (*)(void *unused, int status, const char *path, int failure,
                                 const char *text);

/// The statuses.
enum GWCaptureStatusCode {
    GWCaptureWorking = 4,       ///< this application should get out of the way
    GWCaptureFinished = 5,      ///< `path` is the picture; `text` says why it may be less than all
    GWCaptureEnded = 6,         ///< no picture, and nothing wrong
    GWCaptureFailed = 7,        ///< `failure` and `text` say why
    GWCaptureOpen = 9,          ///< the user can point at a window
    GWCaptureScrolling = 10,    ///< the one that was picked is scrolled, by the wheel or the user
    GWCapturePuttingBack = 11,  ///< what that has moved is put back where it was
};

/// Begins to deliver statuses. Null ends that, and any grab, for good: nobody would hear of it.
void GWSnapWorkbenchStartMessageServer(GWCaptureStatus callback);

/// Waits for a menu of any program to be open with the pointer at rest on it, and takes it.
/// `folder` is UTF-8 and exists. While a grab is under way nothing is started.
void GWSnapWorkbenchStartMenuItemCapture(const char *folder);
/// Ends the wait for a menu, if there is one, with status 6.
void GWSnapWorkbenchStopMenuItemCapture();
/// Lets the user pick a window, or what scrolls in it, and takes that. While a grab is under way
/// nothing is started.
void GWSnapWorkbenchStartSessionCapture(const char *folder);

/// Whether the session's accessibility switch is on.
bool GWSnapWorkbenchIsEnableAccessibilty();
/// Not 0 if this process may ask other programs about themselves. `answered`, if not null, is set
/// when the user has said in this run that it need not.
int GWSnapWorkbenchTestProcessTrusted(bool *answered);
/// Whether the system decides by itself about the permission. Never here.
bool GWSnapWorkbenchIsRunningInMavericksOrMore();
/// Turns the session's accessibility switch on.
void GWSnapWorkbenchMakeProcessTrusted();
