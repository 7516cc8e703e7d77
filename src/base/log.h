#pragma once

#include <QLoggingCategory>

// Why nothing happened, a line for each refusal, as QLoggingCategory's `info`. They say nothing
// unless QT_LOGGING_RULES asks for them: QT_LOGGING_RULES="snap.*=true".

Q_DECLARE_LOGGING_CATEGORY(logGrab)    ///< snap.grab: presses, and grabs that were given up
Q_DECLARE_LOGGING_CATEGORY(logX11)     ///< snap.x11: what the server or a window refused
Q_DECLARE_LOGGING_CATEGORY(logHelper)  ///< snap.helper: what the capture helper said
Q_DECLARE_LOGGING_CATEGORY(logStore)   ///< snap.store: files that could not be read or written
Q_DECLARE_LOGGING_CATEGORY(logBus)     ///< snap.bus: calls on the session bus, here and elsewhere
