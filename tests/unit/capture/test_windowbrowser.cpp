#include "capture/windowbrowser.h"

#include "fakedesktop.h"
#include "platform/windowlist.h"
#include "rows.h"
#include "testmain.h"

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

FakeWindowCatalogue::Window window(int number, const QString &owner, QSize size,
                                   const QColor &color, bool onScreen = true)
{
    return {{.number = number, .bounds = QRectF({5, 5}, size), .owner = owner}, color, onScreen};
}

}  // namespace

class TestWindowBrowser : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        m_browser.reset();
        g_widgetExcept = nullptr;
        m_desktop = std::make_unique<FakeDesktop>();
        m_taken.clear();
        m_closing.clear();
        m_desktop->pictures->taken = [this](int number) {
            m_taken.append(number);
            return m_closing.contains(number)
                       ? QImage()
                       : m_desktop->pictures->painted(std::nullopt, {number});
        };
        m_desktop->windows->list = {window(11, u"Mail"_s, {400, 200}, Qt::red),
                                    window(12, u"Editor"_s, {300, 600}, Qt::green),
                                    window(13, u"hidden Mail"_s, {50, 50}, Qt::blue, false),
                                    window(14, u"Terminal"_s, {40, 20}, Qt::cyan)};
    }

    void thumbnails()
    {
        const auto check = [&](const QByteArray &row, int size) {
            init();
            open();
            auto *slider = child<QSlider>(u"horizontalSlider"_s);
            expect(row, slider->value(), 149);
            if (size != 0)
                slider->setValue(size);
            size = slider->value();
            // They share the row's width, but are not far apart.
            const QSize cell = list()->gridSize();
            expect(row, cell.height(), size + 25 + list()->fontMetrics().lineSpacing());
            const int left = list()->viewport()->width() -
                             std::min(list()->viewport()->width() / cell.width(), 3) * cell.width();
            expect(row, cell.width() >= size + 25, true);
            expect(row, cell.width() == 2 * (size + 25) || left < 30, true);
            expect(row, list()->iconSize(), QSize(cell.width() - 25, size));
            const QSize side = list()->iconSize() * m_browser->devicePixelRatioF();
            const auto boxOf = [&](int index, const QColor &color) {
                const QImage image = icon(index);
                QRect box;
                for (int y = 0; y < image.height(); ++y) {
                    for (int x = 0; x < image.width(); ++x) {
                        if (image.pixelColor(x, y) == color)
                            box |= QRect(x, y, 1, 1);
                        else if (image.pixelColor(x, y) != QColor(Qt::white))
                            return QRect(x, y, -1, -1);
                    }
                }
                return image.size() == side ? box : QRect();
            };
            const auto centred = [side](QSize picture) {
                if (picture.width() >= side.width() || picture.height() >= side.height())
                    picture.scale(side, Qt::KeepAspectRatio);
                return QRect(
                    {(side.width() - picture.width()) / 2, (side.height() - picture.height()) / 2},
                    picture);
            };
            expect(row, boxOf(0, Qt::red), centred({400, 200}));
            expect(row, boxOf(1, Qt::green), centred({300, 600}));
            expect(row, boxOf(2, Qt::cyan), centred({40, 20}));
        };
        check("smallest", 75);
        check("as it opens", 0);
        check("largest", 225);
    }

    void windowsOfAllKinds()
    {
        m_desktop->windows->list = {window(1, QString(), {1, 1}, Qt::red),
                                    window(2, u"x"_s.repeated(10000), {5000, 3}, Qt::green),
                                    window(3, u"窗口 окно نافذة"_s, {3, 4000}, Qt::blue),
                                    window(4, u"closing"_s, {100, 100}, Qt::blue),
                                    window(5, u"no width"_s, {0, 100}, Qt::blue)};
        m_closing = {4};
        for (int i = 0; i < 100; ++i)
            m_desktop->windows->list.append(window(100 + i, u"many"_s, {120, 90}, Qt::gray));
        open();
        QCOMPARE(list()->count(), 103);
        QCOMPARE(captions().mid(0, 4),
                 (QStringList{QString(), u"x"_s.repeated(255), u"窗口 окно نافذة"_s, u"many"_s}));
        // Closed since: it keeps its picture, and can be chosen.
        m_desktop->windows->list.clear();
        choose(u"All"_s);
        QCOMPARE(list()->count(), 103);
        list()->item(0)->setSelected(false);
        list()->item(1)->setSelected(true);
        press(u"OK_BUTTON"_s);
        QCOMPARE(m_browser->getPixmap()->value(0).size(), QSize(5000, 3));
        QCOMPARE(m_browser->getPixmap()->size(), 1);
    }

    void eachPictureOnce()
    {
        open();
        QCOMPARE(captions(), (QStringList{u"Mail"_s, u"Editor"_s, u"Terminal"_s}));
        choose(u"All"_s);
        QCOMPARE(captions(),
                 (QStringList{u"Mail"_s, u"Editor"_s, u"Terminal"_s, u"hidden Mail"_s}));
        choose(u"Visbel"_s);
        QCOMPARE(captions(), (QStringList{u"Mail"_s, u"Editor"_s, u"Terminal"_s}));
        choose(u"All"_s);
        QCOMPARE(m_taken, (QList<int>{11, 12, 14, 13}));
        // With as many records as the list has windows nothing more is taken.
        m_desktop->windows->list[0] = window(15, u"new"_s, {10, 10}, Qt::red);
        choose(u"Visbel"_s);
        choose(u"All"_s);
        QCOMPARE(m_taken.size(), 4);
    }

    void filter()
    {
        open();
        choose(u"All"_s);
        auto *field = child<QLineEdit>(u"lineEdit"_s);
        // Whoever types has begun to search, wherever the focus is.
        const auto type = [this](auto key, Qt::KeyboardModifiers modifiers = {}) {
            QTest::keyClick(m_browser->windowHandle(), key, modifiers);
        };
        QVERIFY(list()->hasFocus());
        for (const char key : {'m', 'A', 'x'})
            type(key);
        child<QPushButton>(u"CANNEL_BUTTON"_s)->setFocus();
        type(Qt::Key_Backspace);
        type(Qt::Key_Down);
        QVERIFY(list()->hasFocus());
        for (const char key : {'I', 'L'})
            type(key);
        QCOMPARE(captions(), (QStringList{u"Mail"_s, u"hidden Mail"_s}));
        // What leads through the list still does.
        type(Qt::Key_Down);
        type(Qt::Key_Right);
        type(Qt::Key_A, Qt::ControlModifier);
        QVERIFY(list()->currentRow() == 1 && list()->selectedItems().size() == 2);
        // Each at the slider's size, whatever was left out before it.
        child<QSlider>(u"horizontalSlider"_s)->setValue(100);
        QCOMPARE(list()->iconSize().height(), 100);
        for (const int row : {0, 1})
            QCOMPARE(icon(row).size(), list()->iconSize() * m_browser->devicePixelRatioF());
        choose(u"Visbel"_s);
        QCOMPARE(captions(), (QStringList{u"Mail"_s}));
        auto *nothing = child<QLabel>(u"lblNothing"_s);
        QVERIFY(!nothing->isVisible());
        QTest::keyClicks(field, u"?"_s);
        QCOMPARE(list()->count(), 0);
        QVERIFY(nothing->isVisible() && !nothing->text().isEmpty());
        press(u"label_clear"_s);
        QCOMPARE(field->text(), QString());
        QCOMPARE(captions(), (QStringList{u"Mail"_s, u"Editor"_s, u"Terminal"_s}));
        // Nothing to take is accepted all the same.
        QTest::keyClicks(field, u"?"_s);
        press(u"OK_BUTTON"_s);
        QCOMPARE(m_browser->result(), static_cast<int>(QDialog::Accepted));
        QVERIFY(m_browser->getPixmap()->isEmpty() && m_browser->getNameList()->isEmpty());
    }

    // A title is found as well; panels, the tray and this program's own windows are out of the way.
    void titlesPanelsAndOwn()
    {
        auto &windows = m_desktop->windows->list;
        windows[0].entry.kind = WindowCatalogue::Kind::Panel;
        windows[1].entry.name = u"Notes\nof  May"_s;
        windows[2].entry.process = static_cast<uint>(QCoreApplication::applicationPid());
        windows[3].entry.kind = WindowCatalogue::Kind::Tray;
        open();
        QCOMPARE(captions(), (QStringList{u"Mail"_s, u"Editor\nNotes of May"_s, u"Terminal"_s}));
        QCOMPARE(list()->currentRow(), 1);
        choose(u"All"_s);
        QCOMPARE(captions(), (QStringList{u"Mail"_s, u"Editor\nNotes of May"_s}));
        QTest::keyClicks(child<QLineEdit>(u"lineEdit"_s), u"NOTES"_s);
        QCOMPARE(captions(), (QStringList{u"Editor\nNotes of May"_s}));
        // What was clicked stays chosen when a window before it is left out.
        windows[0].entry.process = windows[2].entry.process;
        open();
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {},
                          list()->visualItemRect(list()->item(1)).center());
        choose(u"All"_s);
        QCOMPARE(list()->currentRow(), 0);
        QCOMPARE(list()->currentItem()->text(), u"Editor\nNotes of May"_s);
        windows.resize(1);
        open();
        QCOMPARE(list()->currentRow(), 0);
    }

    void selection()
    {
        const auto click = [this](int row, Qt::KeyboardModifiers modifiers) {
            QTest::mouseClick(list()->viewport(), Qt::LeftButton, modifiers,
                              list()->visualItemRect(list()->item(row)).center());
        };
        open();
        // In the list's order, whatever the order of the clicks.
        click(2, Qt::NoModifier);
        click(0, Qt::ControlModifier);
        press(u"OK_BUTTON"_s);
        QCOMPARE(*m_browser->getNameList(), (QList<QString>{u"Mail"_s, u"Terminal"_s}));
        QCOMPARE(m_browser->getPixmap()->at(0).toImage().size(), QSize(400, 200));
        QCOMPARE(m_browser->getPixmap()->at(1).toImage().size(), QSize(40, 20));

        open();
        // The current one, where none is selected; it stays current when the list is filled anew.
        click(1, Qt::NoModifier);
        choose(u"All"_s);
        QCOMPARE(list()->currentRow(), 1);
        list()->clearSelection();
        press(u"OK_BUTTON"_s);
        QCOMPARE(*m_browser->getNameList(), (QList<QString>{u"Editor"_s}));

        open();
        click(0, Qt::NoModifier);
        QTest::mouseDClick(list()->viewport(), Qt::LeftButton, {},
                           list()->visualItemRect(list()->item(0)).center());
        QVERIFY(!m_browser->isVisible());
        QCOMPARE(*m_browser->getNameList(), (QList<QString>{u"Mail"_s}));

        open();
        press(u"CANNEL_BUTTON"_s);
        QCOMPARE(m_browser->result(), static_cast<int>(QDialog::Rejected));
    }

    // The item of the first record carries a place in the list of windows, and is looked up by it.
    void firstKeyIsAListPosition()
    {
        m_closing = {11};
        open();
        QCOMPARE(captions(), (QStringList{u"Editor"_s, u"Terminal"_s}));
        press(u"OK_BUTTON"_s);
        QCOMPARE(*m_browser->getNameList(), (QList<QString>{u"Terminal"_s}));
        // And there may be nothing at that place.
        m_desktop->windows->list.removeLast();
        open();
        press(u"OK_BUTTON"_s);
        QVERIFY(m_browser->getPixmap()->isEmpty());
    }

private:
    void open()
    {
        m_browser = std::make_unique<WindowsPreView>();
        m_browser->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_browser.get()));
    }
    template<typename T> T *child(const QString &name) const
    {
        return m_browser->findChild<T *>(name);
    }
    QListWidget *list() const { return child<QListWidget>(u"listWidget"_s); }
    void press(const QString &button) const
    {
        QTest::mouseClick(child<QWidget>(button), Qt::LeftButton);
    }
    void choose(const QString &radio) const { child<QRadioButton>(radio)->click(); }
    QStringList captions() const
    {
        QStringList result;
        for (int row = 0; row < list()->count(); ++row)
            result.append(list()->item(row)->text());
        return result;
    }
    QImage icon(int row) const
    {
        const QIcon shown = list()->item(row)->icon();
        QImage image = shown.pixmap(list()->iconSize(), m_browser->devicePixelRatioF()).toImage();
        image.setDevicePixelRatio(1);
        return image.convertToFormat(QImage::Format_RGB32);
    }

    std::unique_ptr<FakeDesktop> m_desktop{};
    QList<int> m_taken{};
    QList<int> m_closing{};  // windows that close in front of the camera
    std::unique_ptr<WindowsPreView> m_browser;
};

int main(int argc, char **argv)
{
    return runAtScales<TestWindowBrowser>(argc, argv, {"1", "1.5", "2"});
}

#include "test_windowbrowser.moc"
