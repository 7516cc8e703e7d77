#include "shell/buscommands.h"

#include <QFile>
#include <QImageReader>
#include <QTest>

using namespace Qt::StringLiterals;

class TestBusCommands : public QObject
{
    Q_OBJECT

private slots:
    void desktopEntry();
    void callsBeforeTheWindow();
};

// What the desktop entry promises, the program keeps.
void TestBusCommands::desktopEntry()
{
    const QString path =
        QFINDTESTDATA("../../../packaging/org.example.brenvale.SnapWorkbench.desktop");
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QStringList actions;
    QStringList called;
    QStringList types;
    for (const QString &line : QString::fromUtf8(file.readAll()).split(u'\n')) {
        const QString value = line.section(u'=', 1);
        if (line.startsWith(u"Actions="_s))
            actions = value.split(u';', Qt::SkipEmptyParts);
        else if (line.startsWith(u"MimeType="_s))
            types = value.split(u';', Qt::SkipEmptyParts);
        else if (line.startsWith(u"[Desktop Action "_s))
            called.append(line.section(u' ', 2).chopped(1));
        else if (line.startsWith(u"Exec=gdbus"_s))
            QCOMPARE(value.section(u"ActivateAction "_s, 1), called.last() + u" [] {}"_s);
    }
    QCOMPARE(called, actions);
    QStringList known = busCommands().actions.keys();
    known.sort();
    actions.sort();
    QCOMPARE(actions, known);
    QVERIFY(!types.isEmpty());
    for (const QString &type : types)
        QVERIFY2(QImageReader::supportedMimeTypes().contains(type.toLatin1()), qPrintable(type));
}

void TestBusCommands::callsBeforeTheWindow()
{
    const ApplicationBus::Handlers handlers = busCommands();
    handlers.activate();
    handlers.open({u"/nowhere.png"_s});
    for (const auto &action : handlers.actions)
        action();
}

QTEST_MAIN(TestBusCommands)
#include "test_buscommands.moc"
