#include "capture/magnifierpanel.h"
#include "fakedesktop.h"
#include "shell/commands.h"
#include "shell/mainwindow.h"

#include <QLabel>
#include <QSet>
#include <QTest>
#include <QTranslator>

using namespace Qt::StringLiterals;

class TestTranslation : public QObject
{
    Q_OBJECT

private slots:
    void capturesStart_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("rectangular");
        QTest::newRow("German") << u"de"_s << u"Rechteck"_s;
        QTest::newRow("Chinese") << u"zh_CN"_s << u"矩形"_s;
    }

    // The grabs are told apart by their captions: a translation that gives two of them the same one
    // would start the wrong grab.
    void capturesStart()
    {
        QFETCH(QString, language);
        QTranslator translator;
        QVERIFY(translator.load(u"snapworkbench_"_s + language, QStringLiteral(SNAP_TRANSLATIONS)));
        QVERIFY(QCoreApplication::installTranslator(&translator));
        QTEST(MainWindow::tr("Rectangular"), "rectangular");
        QSet<QString> translated;
        const QByteArrayList captions{"Rectangular",    "Capture Rectangular",
                                      "Ellipse",        "Capture Ellipse",
                                      "Arbitrary",      "Capture Arbitrary",
                                      "All Windows",    "Select Window",
                                      "Full Screen",    "Capture Full Screen",
                                      "Menu",           "Capture Menu",
                                      "Quit",           "Show Snapworkbench",
                                      "Cancel Capture", "Capture Full Screen with Countdown Timer"};
        for (const QByteArray &caption : captions) {
            const QString text = MainWindow::tr(caption);
            QVERIFY2(text != QLatin1StringView(caption) || language == u"de", caption);
            QVERIFY2(!text.contains(u'&') && commandCaptioned(text), caption);
            translated.insert(text);
        }
        QCOMPARE(translated.size(), captions.size());
        // Keys are the same in every language.
        QCOMPARE(MainWindow::CreateShortkey(u"redo"_s),
                 QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z));
    }

    // The source has them as they are called on another system.
    void englishKeys()
    {
        QTranslator translator;
        QVERIFY(translator.load(u"snapworkbench_en"_s, QStringLiteral(SNAP_TRANSLATIONS)));
        QVERIFY(QCoreApplication::installTranslator(&translator));
        const FakeDesktop desktop;
        DigDetail panel(nullptr);
        for (const int type : {DigDetail::s_region, DigDetail::s_polygon}) {
            panel.SetType(type);
            const QString help = panel.findChild<QLabel *>(u"label"_s)->text();
            QVERIFY(help.contains(u"Ctrl+E  "_s) && !help.contains(u"Command"_s));
        }
    }
};

QTEST_MAIN(TestTranslation)
#include "test_translation.moc"
