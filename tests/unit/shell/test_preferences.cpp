// The preferences on their own, and between the main window's settings and its menus.

#include "base/fileidentity.h"
#include "config/settings.h"
#include "shell/dialogpreference.h"
#include "shell/noticebar.h"
#include "shellfixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

class TestPreferences : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_shell.emplace(); }
    void cleanup() { m_shell.reset(); }
    void typedTimer_data();
    void typedTimer();
    void magnification();
    void loadingWritesNothing();
    void oneChangeWritesAll();
    void shownAgainKeepsWhatItShowed();
    void largeFontCutsNothing();
    void changesAreSaved();
    void extremeNumbers_data();
    void extremeNumbers();

private:
    DialogPreference *open()
    {
        m_shell->window->Preference();
        return m_shell->window->findChild<DialogPreference *>();
    }
    std::optional<ShellFixture> m_shell;
};

void TestPreferences::typedTimer_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("seconds");
    QTest::newRow("with unit") << u"25s"_s << 25;
    QTest::newRow("bare") << u"7"_s << 7;
    QTest::newRow("blank before") << u" 12 s"_s << 12;
    QTest::newRow("word") << u"abc"_s << 0;
    QTest::newRow("digit behind a word") << u"s5"_s << 0;
    QTest::newRow("below zero") << u"-3"_s << -3;
    QTest::newRow("nothing") << QString() << 0;
    QTest::newRow("hundred digits") << QString(100, u'9') << 0;
    QTest::newRow("hundred digits below zero") << u'-' + QString(100, u'9') << 0;
    QTest::newRow("wraps to one") << u"4294967297"_s << 0;
}

void TestPreferences::typedTimer()
{
    QFETCH(QString, typed);
    QFETCH(int, seconds);
    auto *field = open()->findChild<QComboBox *>(u"cmbTimer"_s)->lineEdit();
    field->selectAll();
    QTest::keyClick(field, Qt::Key_Delete);
    QTest::keyClicks(field, typed);
    QTest::keyClick(field, Qt::Key_Return);
    QCOMPARE(field->text(), typed);
    QCOMPARE(MainWindow::GetScreenTimerFromXML(), seconds);
    QCOMPARE(GetConfigString(u"ScreenTimer"_s), QString::number(seconds));
}

void TestPreferences::magnification()
{
    DialogPreference dialog;
    auto *box = dialog.findChild<QComboBox *>(u"cmbMagnification"_s);
    auto *label = dialog.findChild<QLabel *>(u"lblMagnification"_s);
    dialog.SetMagnification(7);
    QCOMPARE(dialog.GetMagnification(), 4);
    dialog.SetMagnification(10);
    QCOMPARE(box->currentText(), u"10x"_s);
    // Off is also what the dialog begins with, and then nothing changes.
    dialog.SetShowMag(false);
    QVERIFY(!box->isEnabled() && label->isEnabled());
    QCOMPARE(dialog.GetMagnification(), 10);
    dialog.findChild<QCheckBox *>(u"ChkShowMag"_s)->click();
    QVERIFY(box->isEnabled());
}

void TestPreferences::loadingWritesNothing()
{
    SetConfigString(u"Magnification"_s, u"7"_s);
    SetConfigString(u"ScreenTimer"_s, u"25x"_s);
    SetConfigString(u"AutoHide"_s, u"2"_s);
    const DialogPreference *dialog = open();
    QVERIFY(!dialog->GetHide());
    QCOMPARE(GetConfigString(u"Magnification"_s), u"7"_s);
    QCOMPARE(GetConfigString(u"ScreenTimer"_s), u"25x"_s);
    QCOMPARE(GetConfigString(u"AutoHide"_s), u"2"_s);
}

void TestPreferences::oneChangeWritesAll()
{
    SetConfigString(u"Magnification"_s, u"7"_s);
    SetConfigString(u"AutoShow"_s, u"1"_s);
    SetConfigString(u"ScreenTimer"_s, u"25"_s);
    DialogPreference *dialog = open();
    dialog->findChild<QCheckBox *>(u"ChkAutoRun"_s)->click();
    QVERIFY(m_shell->desktop.loginItem->present);
    const auto stored = [] {
        QStringList values;
        for (const QString &key : {u"FirstRun"_s, u"RunMinimized"_s, u"AutoHide"_s, u"AutoShow"_s,
                                   u"ScreenTimer"_s, u"ShowMagnification"_s, u"Magnification"_s})
            values.append(GetConfigString(key));
        return values.join(u' ');
    };
    // The dialog shows its first magnification where the setting has no entry.
    QCOMPARE(stored(), u"1 0 0 1 25 0 4"_s);
    for (QCheckBox *box : dialog->findChildren<QCheckBox *>()) {
        const QString before = stored();
        box->click();
        QVERIFY2(stored() != before, qPrintable(box->objectName()));
    }
    dialog->findChild<QComboBox *>(u"cmbMagnification"_s)->setCurrentIndex(3);
    dialog->findChild<QComboBox *>(u"cmbTimer"_s)->setCurrentIndex(3);
    QCOMPARE(stored(), u"0 1 1 0 3 1 10"_s);
    QVERIFY(!m_shell->desktop.loginItem->present);
}

void TestPreferences::shownAgainKeepsWhatItShowed()
{
    DialogPreference *dialog = open();
    dialog->close();
    SetConfigString(u"AutoHide"_s, u"1"_s);
    m_shell->window->findChild<QPushButton *>(u"BtnSetting"_s)->click();
    QCOMPARE(m_shell->window->findChildren<DialogPreference *>().size(), 1);
    QVERIFY(dialog->isVisible() && !dialog->GetHide());
    m_shell->window->close();
    QVERIFY(m_shell->window->findChildren<DialogPreference *>().isEmpty());
    QVERIFY(open()->GetHide());
}

void TestPreferences::largeFontCutsNothing()
{
    const QFont usual = QApplication::font();
    QFont large = usual;
    large.setPointSizeF(usual.pointSizeF() * 2);
    QApplication::setFont(large);
    DialogPreference dialog;
    dialog.show();
    const QList<QWidget *> children =
        dialog.findChildren<QWidget *>(QRegularExpression(u"^(Chk|cmb|lbl|grp)"_s));
    QCOMPARE(children.size(), 12);
    for (const QWidget *widget : children) {
        const QSize least = widget->minimumSizeHint();
        QVERIFY2(widget->size() == widget->size().expandedTo(least),
                 qPrintable(widget->objectName()));
    }
    QApplication::setFont(usual);
}

// Within five seconds, and where that fails the user is told once, and what could not be written is
// written later.
void TestPreferences::changesAreSaved()
{
    const QString path = g_ResourceFileName;
    const auto isOnDisk = [&](const QString &value) {
        m_shell->desktop.clock->advance(5000);
        QFile file(path);
        return file.open(QIODevice::ReadOnly) && file.readAll().contains(value.toUtf8());
    };
    SetConfigString(u"MediaDir"_s, u"/one"_s);
    QVERIFY(isOnDisk(u"/one"_s));
    const auto written = FileIdentity::of(path);
    SetConfigString(u"MediaDir"_s, u"/one"_s);
    QVERIFY(isOnDisk(u"/one"_s));
    QVERIFY(FileIdentity::of(path) == written);

    QVERIFY(QFile::remove(path) && QDir().mkdir(path));
    SetConfigString(u"MediaDir"_s, u"/two"_s);
    QVERIFY(!isOnDisk(u"/two"_s));
    auto *bar = m_shell->window->findChild<NoticeBar *>();
    QVERIFY(bar && !bar->text().isEmpty());
    bar->tell(u"something else"_s);
    QVERIFY(!isOnDisk(u"/two"_s));
    QCOMPARE(bar->text(), u"something else"_s);
    QVERIFY(QDir().rmdir(path));
    QVERIFY(isOnDisk(u"/two"_s));
}

void TestPreferences::extremeNumbers_data()
{
    QTest::addColumn<QString>("number");
    for (const char *number : {"2147483647", "-2147483648", "99999999999", "0", "x"})
        QTest::newRow(number) << QString::fromLatin1(number);
}

void TestPreferences::extremeNumbers()
{
    QFETCH(QString, number);
    for (const QString &key :
         {u"WindowLeft"_s, u"WindowTop"_s, u"WindowWidth"_s, u"WindowHeight"_s, u"LineWidth"_s,
          u"LineColor"_s, u"ScreenTimer"_s, u"Magnification"_s})
        SetConfigString(key, number);
    SetConfigString(u"TextFont"_s, u"Sans,%1,-1,5,50,0,0,0,0,0"_s.arg(number));
    m_shell->end();
    m_shell->start();
    MainWindow &window = *m_shell->window;
    window.InitShowGeometry();
    const QRect screen = window.screen()->availableGeometry();
    QVERIFY(window.size() == screen.size()
                                 .boundedTo(window.size())
                                 .expandedTo(QSize(950, 650).boundedTo(screen.size())));
    QVERIFY(screen.contains(window.pos()));
    const int seconds = MainWindow::GetScreenTimerFromXML();
    QVERIFY(seconds <= 24 * 60 * 60);
    const int multiple = MainWindow::GetMagnificationFromXML();
    QVERIFY(multiple >= 1 && multiple <= 64);
    auto *editor = window.findChild<TPictureEditor *>();
    QVERIFY(editor->getLineWidth() >= 1 && editor->getLineWidth() <= 1000);
    const QFont font = editor->EditFont();
    QVERIFY(font.pointSize() <= 500 && font.pixelSize() <= 500);
}

QTEST_MAIN(TestPreferences)
#include "test_preferences.moc"
