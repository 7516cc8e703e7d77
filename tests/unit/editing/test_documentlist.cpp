#include "editing/documentlist.h"
#include "rows.h"
#include "solid.h"

using namespace Qt::StringLiterals;

class TestDocumentList : public QObject
{
    Q_OBJECT

private slots:
    void init() { g_mapNameIndex.clear(); }

    // Running numbers are never given back, and go on after those of an earlier run.
    void numbers()
    {
        DocumentList list;
        const auto added = [&](const QString &name) {
            return list[list.add(solid({2, 2}), name, {})].m_NameIndex;
        };
        expect("first of a name", added(u"a"_s), 0);
        expect("next", added(u"a"_s), 1);
        expect("another name", added(u"b"_s), 0);
        list.clear();
        expect("after all were closed", added(u"a"_s), 2);
        list.addReturned({.name = u"a"_s, .number = 7});
        expect("after one that came back", added(u"a"_s), 8);
        list.addReturned({.name = u"a"_s, .number = 3});
        expect("after a lower one", added(u"a"_s), 9);
    }

    void nextAfterAClose()
    {
        const auto next = [](int count, int current, int closed) {
            DocumentList list;
            for (int i = 0; i < count; ++i)
                list.add(solid({2, 2}), {}, {});
            list.setCurrent(current);
            const int result = list.remove(closed);
            return list.current() == -1 ? result : -2;
        };
        expect("the one behind takes its place", next(3, 1, 1), 1);
        expect("the last: the one before", next(3, 2, 2), 1);
        expect("the index stays, whichever was closed", next(3, 1, 0), 1);
        expect("the only one", next(1, 0, 0), -1);
    }
};

QTEST_MAIN(TestDocumentList)
#include "test_documentlist.moc"
