#include "shell/capturerefusal.h"

#include "capture/lastmark.h"
#include "platform/services.h"

#include <QCoreApplication>

QString captureRefusal(GrabCommand command)
{
    QString lack = services().abilities.lackOf(neededFor(command));
    if (!lack.isEmpty() || command != GrabCommand::Last || !lastMarkedKind().isEmpty())
        return lack;
    return QCoreApplication::translate("CaptureRefusal",
                                       "No area has been marked yet that could be taken again.");
}
