#include "base/log.h"
#include "base/wholefile.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QStringList s_lines;

void keep(QtMsgType, const QMessageLogContext &context, const QString &line)
{
    if (QByteArrayView(context.category).startsWith("snap."))
        s_lines.append(line);
}

}  // namespace

class TestLog : public QObject
{
    Q_OBJECT

private slots:
    // With the path, and only where somebody asks.
    void refusal()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"no such folder/picture.png"_s);
        const QtMessageHandler before = qInstallMessageHandler(keep);
        QVERIFY(!WholeFile(path).write("bytes"));
        QCOMPARE(s_lines, QStringList());
        QLoggingCategory::setFilterRules(u"snap.*=true"_s);
        QVERIFY(!WholeFile(path).write("bytes"));
        qInstallMessageHandler(before);
        QCOMPARE(s_lines.size(), 1);
        QVERIFY2(s_lines.first().contains(path), qPrintable(s_lines.first()));
    }
};

QTEST_APPLESS_MAIN(TestLog)
#include "test_log.moc"
