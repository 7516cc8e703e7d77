// Every form shows its texts whole: in each language, with the usual font and one twice as large.

#include "capture/dialogcountdown.h"
#include "capture/magnifierpanel.h"
#include "capture/rectangleoverlay.h"
#include "shell/backdropdialog.h"
#include "shell/canvasdialog.h"
#include "shell/captionlabel.h"
#include "shell/dialogpreference.h"
#include "shell/hidetextdialog.h"
#include "shell/resizedialog.h"
#include "shellfixture.h"
#include "testmain.h"

using namespace Qt::StringLiterals;

namespace {

// What a widget needs in order to show its text; null for one without.
QSize needs(const QWidget &widget)
{
    const QFontMetrics metrics(widget.font());
    // What it has no room for is in its hint.
    if (qobject_cast<const CaptionLabel *>(&widget))
        return {0, metrics.height()};
    if (const auto *label = qobject_cast<const QLabel *>(&widget)) {
        if (label->wordWrap())
            return {0, label->heightForWidth(label->width())};
        int width = 0;
        QString text = label->text();
        if (label->buddy())
            text.remove(u'&');
        for (const QString &line : text.split(u'\n'))
            width = std::max(width, metrics.horizontalAdvance(line));
        return {width, 0};
    }
    // Beside the text stands the arrow.
    if (const auto *box = qobject_cast<const QComboBox *>(&widget))
        return {metrics.horizontalAdvance(box->currentText()) + 35,
                box->minimumSizeHint().height()};
    if (const auto *button = qobject_cast<const QPushButton *>(&widget))
        return {metrics.size(Qt::TextShowMnemonic, button->text()).width(), 0};
    if (qobject_cast<const QTabBar *>(&widget))
        return {0, metrics.height()};
    if (const auto *list = qobject_cast<const QTreeWidget *>(&widget)) {
        int width = 0;
        for (int column = 0; column < list->columnCount(); ++column) {
            int widest = 0;
            for (int row = 0; row < list->topLevelItemCount(); ++row)
                widest = std::max(widest,
                                  metrics.horizontalAdvance(list->topLevelItem(row)->text(column)));
            width += widest;
        }
        return {width, list->topLevelItemCount() * metrics.height()};
    }
    if (qobject_cast<const QAbstractButton *>(&widget) || qobject_cast<const QMenuBar *>(&widget))
        return widget.minimumSizeHint();
    return {0, 0};
}

}  // namespace

class TestTextsFit : public ShellTest
{
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup()
    {
        m_form.reset();
        finish();
    }

    void everyText_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("times");
        QTest::addColumn<QString>("language");
        for (const char *name : {"main window", "notice", "preferences", "capture", "files", "keys",
                                 "lines", "resize", "canvas", "backdrop", "hide", "3 seconds",
                                 "10 seconds", "86400 seconds", "magnifier", "overlay"}) {
            for (const int times : {1, 2}) {
                for (const char *language : {"en", "de", "zh_CN"}) {
                    QTest::addRow("%s, font times %d, %s", name, times, language)
                        << QString::fromLatin1(name) << times << QString::fromLatin1(language);
                }
            }
        }
    }

    void everyText()
    {
        QFETCH(QString, name);
        QFETCH(int, times);
        QFETCH(QString, language);
        end();
        QTranslator translator;
        QVERIFY(translator.load(u"snapworkbench_"_s + language, QStringLiteral(SNAP_TRANSLATIONS)));
        QVERIFY(QCoreApplication::installTranslator(&translator));
        const QFont usual = QApplication::font();
        const auto back = qScopeGuard([&] { QApplication::setFont(usual); });
        QFont large = usual;
        large.setPointSizeF(usual.pointSizeF() * times);
        QApplication::setFont(large);
        m_form = form(name);
        m_form->show();
        QCoreApplication::processEvents();
        if (name == u"overlay")
            QVERIFY(m_form->findChild<QLabel *>(u"label_6"_s)->text().startsWith(u":36"_s));
        for (const auto &fold : {u"FoldPictureEdit"_s, u"FoldPictureStyle"_s})
            QVERIFY(name != u"main window" || !m_form->findChild<QWidget *>(fold)->isVisible());
        int texts = 0;
        for (const QWidget *widget : m_form->findChildren<QWidget *>()) {
            const QSize least = needs(*widget);
            if (least.isNull() || !widget->isVisible())
                continue;
            ++texts;
            QString where;
            QDebug(&where) << widget << "needs" << least << "in" << widget->parentWidget()->size();
            QVERIFY2(widget->size() == widget->size().expandedTo(least), qPrintable(where));
            // Some forms have one pixel too many in their layout.
            const QRect parent = widget->parentWidget()->rect().adjusted(0, 0, 1, 1);
            QVERIFY2(parent.contains(widget->geometry()), qPrintable(where));
            if (qobject_cast<const QComboBox *>(widget) || qobject_cast<const QMenuBar *>(widget) ||
                qobject_cast<const QTabBar *>(widget))
                QCOMPARE(widget->font().pointSizeF(), large.pointSizeF());
        }
        QVERIFY(texts > 0);
    }

private:
    std::unique_ptr<QWidget> form(const QString &name)
    {
        if (name == u"preferences")
            return std::make_unique<DialogPreference>();
        const QStringList pages{u"capture"_s, u"files"_s, u"keys"_s, u"lines"_s};
        if (const int page = static_cast<int>(pages.indexOf(name)); page >= 0) {
            if (name == u"lines")
                services().abilities.withhold(Ability::HotKeys, u"no"_s);
            auto dialog = std::make_unique<DialogPreference>();
            dialog->findChild<QTabWidget *>()->setCurrentIndex(std::min(page, 2) + 1);
            if (name == u"files") {  // what is wrong is told at length
                dialog->findChild<QLineEdit *>(u"EdtName"_s)->setText(u"{date} {"_s);
                auto *folder = dialog->findChild<QLineEdit *>(u"EdtFolder"_s);
                QTest::keyClicks(folder, u"pictures"_s);
                QTest::keyClick(folder, Qt::Key_Return);
            }
            return dialog;
        }
        if (name == u"backdrop")
            return std::make_unique<BackdropDialog>(solid({192, 108}).toImage(), Backdrop(),
                                                    nullptr);
        if (name == u"hide") {
            auto dialog = std::make_unique<HideTextDialog>(
                solid({300, 200}).toImage(),
                QList<Secret>{{.kind = Secret::Kind::Telephone, .text = u"030 5550"_s},
                              {.kind = Secret::Kind::Key, .text = u"AKIA2E8F"_s}},
                nullptr);
            dialog->findChild<QComboBox *>()->setCurrentIndex(1);  // which has advice
            return dialog;
        }
        if (name == u"resize" || name == u"canvas") {
            std::unique_ptr<QDialog> dialog;
            if (name == u"resize")
                dialog = std::make_unique<ResizeDialog>(QSize(1920, 1080), nullptr);
            else
                dialog = std::make_unique<CanvasDialog>(QSize(1920, 1080), nullptr);
            // The reason for a refusal is the longest text.
            QTest::keyClicks(dialog->focusWidget(), u"99999"_s);
            return dialog;
        }
        if (name.endsWith(u"seconds"_s)) {
            auto panel = std::make_unique<DialogCountDown>();
            panel->setSecond(name.section(u' ', 0, 0).toInt());
            return panel;
        }
        if (name == u"magnifier") {
            auto panel = std::make_unique<DigDetail>(nullptr);
            panel->SetType(DigDetail::s_polygon);
            QPixmap desktop = solid({100, 100});
            panel->ReDrawZoomin({-1600, 1299}, &desktop);
            return panel;
        }
        if (name == u"overlay") {
            m_desktop->screens->list = {{0, 0, 3840, 2160}};
            auto overlay = std::make_unique<Dialog>();
            overlay->show();
            auto *surface = overlay->findChild<QWidget *>(u"widget"_s);
            QTest::mousePress(surface, Qt::LeftButton, {}, {10, 10});
            const QPointF far = QPointF(3700, 2100) / overlay->devicePixelRatioF();
            QMouseEvent move(QEvent::MouseMove, far, far, Qt::LeftButton, Qt::LeftButton, {});
            QCoreApplication::sendEvent(surface, &move);
            QCoreApplication::processEvents();
            QTest::mouseRelease(surface, Qt::LeftButton, {}, far.toPoint());
            QTest::keyClick(surface, Qt::Key_A);  // with which the sizes are longest
            return overlay;
        }
        start();
        m_window->resize(950, 650);
        add();
        if (name == u"notice") {
            const QString path = u"/home/somebody/"_s + QString(300, u'm') + u".png"_s;
            m_window->say(
                MainWindow::tr(
                    "\"%1\" was not saved: another program or another tab has changed the file.")
                    .arg(path),
                {{MainWindow::tr("Save &As..."), [] {}}, {MainWindow::tr("&Overwrite"), [] {}}});
        }
        return std::move(m_window);
    }

    std::unique_ptr<QWidget> m_form;
};

int main(int argc, char **argv) { return runAtScales<TestTextsFit>(argc, argv, {"1", "1.5", "2"}); }

#include "test_textsfit.moc"
