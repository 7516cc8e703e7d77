#include "base/log.h"

Q_LOGGING_CATEGORY(logGrab, "snap.grab", QtWarningMsg)
Q_LOGGING_CATEGORY(logX11, "snap.x11", QtWarningMsg)
Q_LOGGING_CATEGORY(logHelper, "snap.helper", QtWarningMsg)
Q_LOGGING_CATEGORY(logStore, "snap.store", QtWarningMsg)
Q_LOGGING_CATEGORY(logBus, "snap.bus", QtWarningMsg)
