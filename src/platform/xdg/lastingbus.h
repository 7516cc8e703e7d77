#pragma once

/// Keeps the program alive when the session bus goes, with all that is unsaved. Where the desktop's
/// dialogs are GTK's, that toolkit's shared connection would end the process at once. Once, when
/// the toolkit has started.
void outliveSessionBus();
