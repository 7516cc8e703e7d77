#include "capture/magnifier.h"
#include "capture/magnifierpanel.h"
#include "capture/polygonoverlay.h"
#include "config/settings.h"
#include "config/xmlstore.h"
#include "overlayfixture.h"
#include "rows.h"

using namespace Qt::StringLiterals;

// All numbers are device pixels, so the same rows hold at every scale.
class TestMagnifier : public OverlayTest
{
    Q_OBJECT

private slots:
    void init()
    {
        beginSettings();
        begin({{0, 0, 3200, 2400}, {-1600, 100, 1600, 1200}});
        m_desktop->ownWindows->placing = !hasPanes();
        m_desktop->windows->list = {
            {.entry = {.number = 9, .bounds = {-1600, 0, 4800, 2400}},
             .color = Qt::white},  // overlay
            {.entry = {.number = 3, .bounds = {403, 301, 1, 1}}, .color = QColor(1, 2, 171)},
            {.entry = {.number = 2, .bounds = {-300, 200, 900, 600}},
             .color = QColor(250, 128, 7)}};
        m_magnifier = std::make_unique<Magnifier>();
        m_desktop->ownWindows->numbers.insert(&open<dlgFreeHand>(), 9);
        m_multiple = 8;
    }

    void cleanup()
    {
        m_overlay.reset();
        FreeAllXmlDocument();
    }

    void view()
    {
        const auto check = [&](const QByteArray &row, QSize size, int multiple, const QRect &source,
                               QPoint centre, const QRect &mark) {
            const MagnifierView view{size, multiple};
            const QPoint point(1000, 500);
            expect(row, view.source(point), source);
            expect(row, view.centre(), centre);
            expect(row, view.centreMark(), mark);
            const QPoint block(view.centre().x() / multiple, view.centre().y() / multiple);
            expect(row, view.source(point).topLeft() + block, point);
            QVERIFY2(view.centreMark().adjusted(0, 0, 1, 1).contains(view.centre()),
                     row.constData());
        };
        check("37 blocks and a rest", {300, 300}, 8, {982, 482, 37, 37}, {147, 147},
              {144, 144, 7, 7});
        check("even: before the middle", {288, 192}, 8, {983, 489, 36, 24}, {143, 95},
              {136, 88, 7, 7});
        check("odd blocks", {185, 181}, 5, {982, 483, 37, 36}, {92, 89}, {90, 85, 4, 4});
        check("one block", {15, 9}, 8, {1000, 500, 1, 1}, {3, 3}, {0, 0, 7, 7});
    }

    void corners()
    {
        const QRect primary(0, 0, 1601, 1000);
        const QRect left(-1600, 200, 1600, 1000);
        const QRect right(1601, 0, 1600, 1000);
        const QSize full(300, 314);
        QCOMPARE(magnifierPlace(full, primary, {800, 499}), QPoint(1301, 686));
        QCOMPARE(magnifierPlace(full, primary, {801, 500}), QPoint(0, 0));
        QCOMPARE(magnifierPlace(full, left, {-1500, 300}), QPoint(-300, 886));
        QCOMPARE(magnifierPlace(full, left, {-100, 300}), QPoint(-1600, 886));

        const QSize small(192, 192);
        const auto resized = [&](QPoint corner, const QRect &screen) {
            return magnifierResized({corner, full}, small, screen).topLeft();
        };
        QCOMPARE(resized({1301, 686}, primary), QPoint(1409, 808));
        QCOMPARE(resized({-300, 886}, left), QPoint(-192, 1008));
        QCOMPARE(resized({1601, 0}, right), QPoint(1601, 0));
    }

    void showsPixels()
    {
        request(eMagOpen, {});
        request(eMagUpdate, {403, 301});
        QCOMPARE(text(u"LblX"_s), u"X: 403 px"_s);
        QCOMPARE(text(u"LblY"_s), u"Y: 301 px"_s);
        QCOMPARE(text(u"LblR"_s), u"R: 1"_s);
        QCOMPARE(text(u"LblG"_s), u"G: 2"_s);
        QCOMPARE(text(u"LblB"_s), u"B: 171"_s);
        QCOMPARE(text(u"LblHex"_s), u"0102ab"_s);

        // One pixel is one block, and the mark around it has the opposite colour.
        auto *label = panel()->findChild<QLabel *>(u"m_Label"_s);
        const auto mark = [label] {
            const QSizeF size = QSizeF(label->size()) * label->devicePixelRatioF();
            return MagnifierView{size.toSize(), 8}.centreMark().topLeft();
        };
        QPoint corner = mark();
        QImage shown = label->grab().toImage();
        QCOMPARE(shown.pixelColor(corner), QColor(254, 253, 84));
        QCOMPARE(shown.pixelColor(corner + QPoint(7, 7)), QColor(254, 253, 84));
        QCOMPARE(shown.pixelColor(corner + QPoint(1, 1)), QColor(1, 2, 171));
        QCOMPARE(shown.pixelColor(corner + QPoint(6, 6)), QColor(1, 2, 171));
        QCOMPARE(shown.pixelColor(corner - QPoint(1, 1)), QColor(250, 128, 7));
        QCOMPARE(shown.pixelColor(corner + QPoint(8, 8)), QColor(250, 128, 7));

        // It stands in the far corner of the pointer's screen.
        QCOMPARE(panel()->area().bottomRight(), QPoint(3199, 2399));
        standsInItsPane();

        // Off the desktop it is black, inside it is framed; on the other screen it shows that one.
        request(eMagUpdate, {-1600, 400});
        QCOMPARE(text(u"LblX"_s), u"X: -1600 px"_s);
        shown = label->grab().toImage();
        corner = mark();
        QCOMPARE(shown.pixelColor(corner - QPoint(3, 3)), QColor(0, 0, 0));
        QCOMPARE(shown.pixelColor(corner + QPoint(0, -9)), QColor(152, 161, 168));
        request(eMagUpdate, {-200, 400});
        QCOMPARE(text(u"LblHex"_s), u"fa8007"_s);
        QCOMPARE(panel()->area().bottomRight(), QPoint(-1, 1299));
        standsInItsPane();
    }

    void requests()
    {
        // Nothing but an opening makes one, and only where it is wanted.
        for (const EShowMagOpr opr : {eMagUpdate, eMagChangeMode, eMagClose})
            request(opr, {5, 5});
        m_magnifier->request(m_overlay.get(), eMagOpen, {}, 1, {});
        QVERIFY(!panel());

        request(eMagOpen, {});
        QVERIFY(panel()->isVisible());
        const QRect full = panel()->area();
        request(eMagChangeMode, {});
        QCOMPARE(GetConfigString(u"MagnificationMode"_s), u"2"_s);
        QCOMPARE(panel()->area().bottomRight(), full.bottomRight());
        QCOMPARE(panel()->size(), QSize(192, 192));
        // 23 blocks both ways: the pixel itself is in the middle.
        QCOMPARE(panel()->findChild<QLabel *>(u"m_Label"_s)->geometry(), QRect(4, 4, 184, 184));
        QVERIFY(!panel()->findChild<QWidget *>(u"widget_2"_s)->isVisible());
        request(eMagClose, {});
        QVERIFY(!panel());

        request(eMagOpen, {}, DigDetail::s_polygon);
        QCOMPARE(panel()->size(), QSize(192, 192));
        request(eMagChangeMode, {});
        QCOMPARE(panel()->size(), QSize(300, 343));
        QCOMPARE(GetConfigString(u"MagnificationMode"_s), u"1"_s);
        panel()->SetMultiple(0);  // ignored
        panel()->ReDrawZoomin({403, 301}, nullptr);
        QCOMPARE(text(u"LblHex"_s), u"0102ab"_s);
        // So large that no block fits.
        m_multiple = 100000;
        request(eMagUpdate, {403, 301});
        QCOMPARE(text(u"LblHex"_s), u"000000"_s);
        // The overlay takes it along, whatever is asked later.
        open<dlgFreeHand>();
        request(eMagUpdate, {5, 5});
        request(eMagClose, {});
    }

private:
    DigDetail *panel() const { return m_overlay->findChild<DigDetail *>(); }
    QString text(const QString &label) const { return panel()->findChild<QLabel *>(label)->text(); }
    // Where windows can't be placed it is a part of the pane.
    void standsInItsPane() const
    {
        const QPoint origin = m_overlay->area().topLeft();
        const Pane &pane = m_overlay->paneAt(panel()->area().center() - origin);
        if (hasPanes())
            QCOMPARE(panel()->parentWidget(), &pane.window());
        QCOMPARE(panel()->isWindow(), !hasPanes());
        QVERIFY(panel()->isWindow() || isWhole(panel()));
        if (!panel()->isWindow())
            QCOMPARE(panel()->pos(), pane.toLogical(panel()->area().topLeft() - origin));
    }
    void request(EShowMagOpr opr, QPoint pos, int type = DigDetail::s_region)
    {
        m_magnifier->request(m_overlay.get(), opr, pos, type, {true, m_multiple});
    }

    std::unique_ptr<Magnifier> m_magnifier;
    int m_multiple = 8;
};

int main(int argc, char **argv) { return runInPanes<TestMagnifier>(argc, argv); }

#include "test_magnifier.moc"
