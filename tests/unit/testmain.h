#pragma once

#include <QApplication>
#include <QTest>

/// The main function of a test whose rows hold at every scale of the desktop.
template<typename Test>
int runAtScales(int argc, char **argv, std::initializer_list<const char *> scales)
{
    int failures = 0;
    for (const char *scale : scales) {
        qputenv("QT_SCALE_FACTOR", scale);
        const QApplication application(argc, argv);
        Test test;
        failures += QTest::qExec(&test, argc, argv);
    }
    return failures;
}
