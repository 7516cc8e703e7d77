#include "base/log.h"
#include "base/wholefile.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class TestLog : public QObject
{
    Q_OBJECT

private slots:
    void refusal_data();
    void refusal();
};

namespace {

QStringList s_lines;

void keep(QtMsgType, const QMessageLogContext &context, const QString &line)
{
    if (QByteArrayView(context.category).startsWith("snap."))
        s_lines.append(line);
}

}  // namespace

void TestLog::refusal_data()
{
    QTest::addColumn<QString>("rules");
    QTest::addColumn<int>("lines");
    QTest::newRow("nobody asks") << QString() << 0;
    QTest::newRow("somebody does") << u"snap.*=true"_s << 1;
    QTest::newRow("about something else") << u"snap.bus=true"_s << 0;
}

void TestLog::refusal()
{
    QFETCH(QString, rules);
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"no such folder/picture.png"_s);
    s_lines.clear();
    QLoggingCategory::setFilterRules(rules);
    const QtMessageHandler before = qInstallMessageHandler(keep);
    const bool isWritten = WholeFile(path).write("bytes");
    qInstallMessageHandler(before);
    QVERIFY(!isWritten);
    QTEST(int(s_lines.size()), "lines");
    if (!s_lines.isEmpty())
        QVERIFY2(s_lines.first().contains(path), qPrintable(s_lines.first()));
}

QTEST_APPLESS_MAIN(TestLog)
#include "test_log.moc"
