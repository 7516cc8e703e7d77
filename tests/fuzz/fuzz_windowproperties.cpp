// What windows of other programs say of themselves.

#include "fuzzing.h"
#include "platform/x11/windowproperties.h"

#include <fuzzer/FuzzedDataProvider.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider input(data, size);
    const auto property = [&] {
        return WindowProperty{.type = input.ConsumeIntegralInRange<uint32_t>(0, 3),
                              .format = 8 * input.ConsumeIntegralInRange(0, 4),
                              .bytes =
                                  QByteArray::fromStdString(input.ConsumeRandomLengthString(4096))};
    };
    const WindowProperty first = property();
    const WindowProperty second = property();
    const QString name = windowName(first, second, 2);
    REQUIRE(!name.contains(QChar(0)));
    REQUIRE(!windowClass(first).contains(QChar(0)));
    REQUIRE(valuesOf(first).size() == (first.format == 32 ? first.bytes.size() / 4 : 0));
    return 0;
}
