#pragma once

#include <QTest>

#include <memory>
#include <type_traits>

/// One row of a table. Where it fails it says which one, and the next rows follow.
template<typename T>
void expect(const QByteArray &row, const T &actual, const std::type_identity_t<T> &expected)
{
    const auto text = [](const T &value) {
        const std::unique_ptr<char[]> shown(QTest::toString(value));
        return QByteArray(shown ? shown.get() : "another value");
    };
    QVERIFY2(actual == expected,
             (row + ": " + text(actual) + " instead of " + text(expected)).constData());
}
