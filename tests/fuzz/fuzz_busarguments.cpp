// What others on the session bus may ask for.

#include "fuzzing.h"
#include "platform/xdg/applicationbus.h"

#include <QCoreApplication>
#include <QDBusAbstractAdaptor>
#include <QDBusMessage>
#include <QVariantMap>

#include <fuzzer/FuzzedDataProvider.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static int s_count = 0;
    static char *s_arguments[] = {nullptr};
    static QCoreApplication s_application(s_count, s_arguments);
    static QStringList s_paths;
    static int s_acted = 0;
    static ApplicationBus s_bus(
        {.activate = [] { ++s_acted; },
         .open = [](const QStringList &paths, const auto &) { s_paths = paths; },
         .actions = {{QStringLiteral("act"), [] { ++s_acted; }}}});
    static auto *s_adaptor = s_bus.findChildren<QDBusAbstractAdaptor *>().constFirst();

    FuzzedDataProvider input(data, size);
    QStringList uris;
    QVariantMap platform;
    for (int i = input.ConsumeIntegralInRange(0, 5); i > 0; --i)
        uris.append(QString::fromUtf8(input.ConsumeRandomLengthString(300)));
    const QString action = QString::fromUtf8(input.ConsumeRandomLengthString(40));
    platform.insert(action, QString::fromUtf8(input.ConsumeRemainingBytesAsString()));
    s_paths.clear();
    s_acted = 0;
    REQUIRE(QMetaObject::invokeMethod(s_adaptor, "Activate", Q_ARG(QVariantMap, platform)));
    REQUIRE(QMetaObject::invokeMethod(s_adaptor, "Open", Q_ARG(QStringList, uris),
                                      Q_ARG(QVariantMap, platform)));
    REQUIRE(QMetaObject::invokeMethod(s_adaptor, "ActivateAction", Q_ARG(QString, action),
                                      Q_ARG(QVariantList, {platform}), Q_ARG(QVariantMap, platform),
                                      Q_ARG(QDBusMessage, QDBusMessage())));
    REQUIRE(s_acted == 0);  // only when the caller has had the answer
    QCoreApplication::sendPostedEvents();
    REQUIRE(s_acted == (action == QStringLiteral("act") ? 2 : 1));
    REQUIRE(s_paths.size() <= uris.size());
    for (const QString &path : std::as_const(s_paths))
        REQUIRE(!path.isEmpty());
    return 0;
}
