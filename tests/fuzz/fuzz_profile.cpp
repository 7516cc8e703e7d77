// The two files that say what the product is, with names and buffers of any size.

#include "config/profile.h"
#include "fuzzing.h"

#include <vector>

#include <fuzzer/FuzzedDataProvider.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static FuzzFile s_file;
    FuzzedDataProvider input(data, size);
    const std::string section = input.ConsumeRandomLengthString(70);
    const std::string key = input.ConsumeRandomLengthString(70);
    // No more than is told is there: what is written beyond it is found.
    std::vector<char> out(input.ConsumeIntegralInRange<size_t>(0, 3000), 'x');
    const int capacity = static_cast<int>(out.size());
    s_file.fill(QByteArray::fromStdString(input.ConsumeRemainingBytesAsString()));
    const QByteArray path = s_file.path().toLatin1();
    const auto isEnded = [&] {
        return out.empty() || std::find(out.begin(), out.end(), 0) != out.end();
    };
    const int length = GetPrivateProfileString(section.c_str(), key.c_str(), "none", out.data(),
                                               capacity, path.constData());
    REQUIRE(length >= 0 && isEnded());
    GetPrivateProfileString(section.c_str(), nullptr, nullptr, out.data(), capacity,
                            path.constData());
    REQUIRE(isEnded());
    GetPrivateProfileSectionNames(out.data(), capacity, path.constData());
    REQUIRE(isEnded());
    return 0;
}
