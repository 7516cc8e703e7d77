#pragma once

/// The capture helper, for grabs that watch or control other programs: an open menu, a window, or
/// its scrolling content. The caller is informed by the status callback only.
///
/// One grab runs at a time. Its picture is a file in the folder that was passed at the start, and
/// belongs to the receiver from then on. Nothing else is left there.

/// Called on the main thread from the event loop. Texts are UTF-8 and valid during the call. The
/// first argument is not used.
using GWCaptureStatus = void (*)(void *unused, int status, const char *path, int failure,
                                 const char *text);

/// The status codes.
enum GWCaptureStatusCode {
    GWCaptureWorking = 4,       ///< this program's windows should leave the screen
    GWCaptureFinished = 5,      ///< `path` is the picture; `text` says why it may be incomplete
    GWCaptureEnded = 6,         ///< no picture, but no error
    GWCaptureFailed = 7,        ///< `failure` and `text` describe the error
    GWCaptureOpen = 9,          ///< the user can point at a window
    GWCaptureScrolling = 10,    ///< the picked window is being scrolled by the wheel or by the user
    GWCapturePuttingBack = 11,  ///< the scrolled content is being put back
    GWCaptureProgress = 12,     ///< `text` says how much of it there is
    GWCapturePicked = 13,       ///< `path` is the picked window's application, `text` its title
};

/// Sets the callback. Null removes it and ends a running grab, since nobody would hear of it.
void GWSnapWorkbenchStartMessageServer(GWCaptureStatus callback);

/// Waits until the pointer rests on an open menu of any program, and captures the menu. `folder` is
/// UTF-8 and must exist. Does nothing while a grab runs.
void GWSnapWorkbenchStartMenuItemCapture(const char *folder);
/// Ends the running grab as the user does who gives up; GWCaptureEnded follows. Does nothing while
/// none runs.
void GWSnapWorkbenchGiveUp();
/// Ends waiting for a menu, with GWCaptureEnded.
void GWSnapWorkbenchStopMenuItemCapture();
/// Lets the user pick a window or its scrolling content, and captures it. Does nothing while a grab
/// runs.
void GWSnapWorkbenchStartSessionCapture(const char *folder);

/// Ends taking what scrolls, with what there is.
void GWSnapWorkbenchKeepContent();

/// Whether the session's accessibility switch is on.
bool GWSnapWorkbenchIsEnableAccessibilty();
/// Returns whether this process may ask other programs about their structure, as 0 or not 0.
/// `answered`, which may be null, is set to whether the user has declined the permission in this
/// run.
int GWSnapWorkbenchTestProcessTrusted(bool *answered);
/// Whether the system manages this permission itself; always false here.
bool GWSnapWorkbenchIsRunningInMavericksOrMore();
/// Turns the session's accessibility switch on.
void GWSnapWorkbenchMakeProcessTrusted();
