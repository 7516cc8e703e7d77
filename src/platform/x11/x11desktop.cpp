#include "platform/x11/x11desktop.h"

#include "platform/services.h"
#include "platform/x11/x11applicationwatch.h"
#include "platform/x11/x11hands.h"
#include "platform/x11/x11hotkeys.h"
#include "platform/x11/x11keywatch.h"
#include "platform/x11/x11ownwindows.h"
#include "platform/x11/x11pictures.h"
#include "platform/x11/x11screens.h"
#include "platform/x11/x11windowcatalogue.h"

#include <QCoreApplication>
#include <QGuiApplication>

#include <xcb/composite.h>
#include <xcb/xfixes.h>
#include <xcb/xtest.h>

namespace {

// A service with a share in the display, which must outlive all services.
template<typename Service> class OnDisplay : private std::shared_ptr<X11Display>, public Service
{
public:
    explicit OnDisplay(const std::shared_ptr<X11Display> &display)
        : std::shared_ptr<X11Display>(display), Service(*display)
    {
    }
};

// Checks the platform's name, because the offscreen platform offers the X11 interface without a
// connection behind it.
std::shared_ptr<X11Display> openDisplay()
{
    if (QGuiApplication::platformName() != u"xcb")
        return nullptr;
    auto *native = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return std::make_shared<X11Display>(native->connection());
}

}  // namespace

bool createX11Desktop(Services &services)
{
    const auto display = openDisplay();
    if (!display)
        return false;
    services.screens = std::make_unique<OnDisplay<X11Screens>>(display);
    services.pictures = std::make_unique<OnDisplay<X11Pictures>>(display);
    services.windows = std::make_unique<OnDisplay<X11WindowCatalogue>>(display);
    services.ownWindows = std::make_unique<OnDisplay<X11OwnWindows>>(display);
    services.hands = std::make_unique<OnDisplay<X11Hands>>(display);
    services.hotKeys = std::make_unique<OnDisplay<X11HotKeys>>(display);
    services.keys = std::make_unique<OnDisplay<X11KeyWatch>>(display);
    services.watch = std::make_unique<OnDisplay<X11ApplicationWatch>>(display);
    if (!display->hasExtension(xcb_composite_id))
        services.abilities.withhold(
            Ability::CoveredWindows,
            QCoreApplication::translate("Abilities", "This desktop keeps no pictures of windows "
                                                     "that others cover."));
    if (!display->hasExtension(xcb_test_id))
        services.abilities.withhold(
            Ability::OtherWheels, QCoreApplication::translate(
                                      "Abilities", "This desktop lets no program turn the wheel."));
    if (!display->hasExtension(xcb_xfixes_id))
        services.abilities.withhold(
            Ability::PointerShape,
            QCoreApplication::translate("Abilities",
                                        "This desktop tells no program what the pointer looks "
                                        "like."));
    return true;
}

QString accessibilityBusOfX11()
{
    const auto display = openDisplay();
    if (!display)
        return {};
    return QString::fromLatin1(
        display->property(display->root(), display->atom("AT_SPI_BUS"), XCB_ATOM_STRING, 8));
}
