// Another program with something that scrolls; each row has its number as a bar code. It prints
// where the view lies in the window and how high the header in it is, in logical pixels, as
// "view X Y WIDTH HEIGHT HEADER".
//
// scrollwindow list|table|wide [OPTION...]
//
// The options: rows=N; gap, where the columns end before the view does; frozen, where what is wide
// has headers at its top and at its left; crowd, of many things that don't scroll.

#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QTableWidget>
#include <QTimer>
#include <QVBoxLayout>

#include "corpus/rowcode.h"

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_columns = 24;  // of what is wider than its view
constexpr int s_mark = 3;      // the row that is selected
constexpr int s_crowd = 300;

QString text(int row) { return u"%1 of the rows, the %2nd word"_s.arg(row).arg(row * 11 / 7 % 10); }

// The same picture where the row is selected.
QIcon icon(int row)
{
    const QPixmap picture = QPixmap::fromImage(RowCode::picture(row));
    QIcon result(picture);
    result.addPixmap(picture, QIcon::Selected);
    return result;
}

QAbstractItemView *createTable(int rows, bool hasGap)
{
    auto *table = new QTableWidget(rows, 2);
    table->setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    table->horizontalHeader()->setStretchLastSection(!hasGap);
    table->horizontalHeader()->hide();
    table->verticalHeader()->hide();
    for (int row = 0; row < rows; ++row) {
        table->setItem(row, 0, new QTableWidgetItem(icon(row), {}));
        table->setItem(row, 1, new QTableWidgetItem(text(row)));
    }
    table->setColumnWidth(1, 200);
    table->setCurrentCell(s_mark, 1);
    return table;
}

// Each cell has a number of its own, line by line.
QAbstractItemView *createWide(int cells, bool isFrozen)
{
    auto *table = new QTableWidget(cells / s_columns, s_columns);
    table->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    table->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    table->horizontalHeader()->setVisible(isFrozen);
    table->verticalHeader()->setVisible(isFrozen);
    for (int i = 0; i < cells; ++i)
        table->setItem(i / s_columns, i % s_columns, new QTableWidgetItem(icon(i), {}));
    return table;
}

QAbstractItemView *createList(int rows)
{
    auto *list = new QListWidget;
    for (int row = 0; row < rows; ++row)
        new QListWidgetItem(icon(row), text(row), list);
    list->setCurrentRow(s_mark);
    return list;
}

void tell(const QAbstractItemView &area, const QWidget &window)
{
    QRect view = area.viewport()->geometry();
    int header = 0;
    if (const auto *table = qobject_cast<const QTableView *>(&area)) {
        header = table->horizontalHeader()->isVisible() ? table->horizontalHeader()->height() : 0;
        const int side =
            table->verticalHeader()->isVisible() ? table->verticalHeader()->width() : 0;
        view.adjust(-side, -header, 0, 0);
    }
    const QPoint at = area.mapTo(&window, view.topLeft());
    std::printf("view %d %d %d %d %d\n", at.x(), at.y(), view.width(), view.height(), header);
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString kind = arguments.value(1);
    const QString rows = arguments.filter(u"rows="_s).value(0, u"rows=150"_s);
    const int count = rows.section(u'=', 1).toInt();
    QWidget window;
    window.setWindowTitle(u"scroll"_s);
    for (int i = 0; i < s_crowd && arguments.contains(u"crowd"_s); ++i)
        new QLabel(text(i), &window);
    QAbstractItemView *area = kind == u"wide" ? createWide(count, arguments.contains(u"frozen"_s))
                              : kind == u"table" ? createTable(count, arguments.contains(u"gap"_s))
                                                 : createList(count);
    area->setFrameShape(QFrame::NoFrame);
    area->setIconSize({RowCode::cells * RowCode::wideCell, RowCode::height});
    auto *column = new QVBoxLayout(&window);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(area);
    window.setGeometry(100, 80, 640, 520);
    window.show();
    area->setFocus();
    QTimer::singleShot(0, &window, [&] { tell(*area, window); });
    return QApplication::exec();
}
