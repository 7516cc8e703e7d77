#pragma once

/// Keeps the program and its unsaved work alive when the session bus goes away. If the desktop's
/// dialogs are GTK's, that toolkit's shared bus connection would end the process. To be called
/// once, after the toolkit has started.
void outliveSessionBus();
