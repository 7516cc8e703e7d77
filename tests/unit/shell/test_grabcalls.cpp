// What callers over the session bus may order.

#include "rows.h"
#include "shell/grabcalls.h"
#include "shell/grabflow.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestGrabCalls : public QObject
{
    Q_OBJECT

private slots:
    void options()
    {
        QString fault;
        const auto order = grabOrder({{u"kind"_s, u"ellipse"_s},
                                      {u"delay"_s, 3},
                                      {u"pointer"_s, false},
                                      {u"tab"_s, false},
                                      {u"copy"_s, true}},
                                     &fault);
        QVERIFY2(order, qPrintable(fault));
        QCOMPARE(order->command, GrabCommand::Ellipse);
        QCOMPARE(order->goals, GrabGoals(GrabGoal::Caller) | GrabGoal::Copy);
        QCOMPARE(order->delay, 3);
        QCOMPARE(order->showsPointer, std::optional(false));

        // The fault names the option.
        const QVariantMap kind{{u"kind"_s, u"region"_s}};
        const auto check = [&](const QString &option, const QVariant &value) {
            QVariantMap options = kind;
            options.insert(option, value);
            fault.clear();
            expect(option.toLatin1(), !grabOrder(options, &fault) && fault.contains(option), true);
        };
        check(u"kind"_s, u"everything"_s);
        check(u"kind"_s, 1);
        check(u"delay"_s, -1);
        check(u"delay"_s, u"3"_s);
        check(u"delay"_s, 1000000);
        check(u"pointer"_s, 1);
        check(u"copy"_s, u"yes"_s);
        check(u"path"_s, u"/tmp/x.png"_s);
        QVERIFY(!grabOrder({{u"copy"_s, true}}, &fault) && fault.contains(u"kind"_s));
    }
};

QTEST_APPLESS_MAIN(TestGrabCalls)
#include "test_grabcalls.moc"
