#include "platform/loginitem.h"

#include "platform/services.h"

void SetAutoRunLogin(bool on)
{
    LoginItem &item = *services().loginItem;
    if (on == item.contains())
        return;
    if (on)
        item.insert();
    else
        item.remove();
}

bool GetAutoRunLogin() { return services().loginItem->contains(); }
