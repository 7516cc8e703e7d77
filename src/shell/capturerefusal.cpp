#include "shell/capturerefusal.h"

#include "platform/services.h"

QString captureRefusal(GrabCommand command)
{
    return services().abilities.lackOf(neededFor(command));
}
