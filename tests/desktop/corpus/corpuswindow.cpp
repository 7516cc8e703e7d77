// Another program with something that scrolls; each row has its number as a bar code. It prints
// where the view lies in the window and how high the header in it is, as
// "view X Y WIDTH HEIGHT HEADER".
//
// corpuswindow list|icons|table|wide|zebra|tree|editor [OPTION...]
//
// The options are those of corpuswindow.py, and "gap": the columns end before the view does,
// and "frozen": what is wide has headers at its top and at its left.

#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QPainter>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTableWidget>
#include <QTextBlock>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "rowcode.h"

#include <array>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_menuAfter = 40;  // rows
constexpr int s_menuTime = 1500;
constexpr int s_gutter = 40;
constexpr int s_columns = 24;  // of what is wider than its view

QMap<QString, QString> s_options;  // NOLINT(cert-err58-cpp)

int number(const QString &option, int otherwise)
{
    return s_options.contains(option) ? s_options[option].toInt() : otherwise;
}

QString text(int row)
{
    const QStringList words{u"amber"_s, u"brook"_s, u"cedar"_s, u"delta"_s, u"ember"_s,
                            u"fjord"_s, u"grove"_s, u"heath"_s, u"inlet"_s, u"jetty"_s};
    return u"%1 %2 %3"_s.arg(words[row * 3 / 7 % 10], words[row * 11 / 7 % 10]).arg(row);
}

// The same picture where the row is selected.
QIcon icon(int row)
{
    const QPixmap picture = QPixmap::fromImage(RowCode::picture(row));
    QIcon result(picture);
    result.addPixmap(picture, QIcon::Selected);
    return result;
}

class Editor : public QPlainTextEdit
{
public:
    explicit Editor(int rows) : m_numbers(new Numbers(this))
    {
        QStringList lines;
        for (int row = 0; row < rows; ++row)
            lines.append(text(row));
        setPlainText(lines.join(u'\n'));
        setViewportMargins(s_gutter, 0, 0, 0);
        setLineWrapMode(NoWrap);
        connect(this, &Editor::updateRequest, m_numbers, [this] { m_numbers->update(); });
        connect(this, &Editor::cursorPositionChanged, this, &Editor::markLine);
        setTextCursor(QTextCursor(document()->findBlockByNumber(number(u"mark"_s, 3))));
    }

protected:
    void resizeEvent(QResizeEvent *event) override
    {
        QPlainTextEdit::resizeEvent(event);
        const QRect inside = contentsRect();
        m_numbers->setGeometry(inside.x(), inside.y(), s_gutter, viewport()->height());
    }
    void paintEvent(QPaintEvent *event) override
    {
        QPlainTextEdit::paintEvent(event);
        QPainter painter(viewport());
        forEachLine([&](int row, const QRect &line) {
            painter.drawImage(260, line.y() + 2, RowCode::picture(row));
        });
    }

private:
    class Numbers : public QWidget
    {
    public:
        explicit Numbers(Editor *editor) : QWidget(editor), m_editor(editor) {}

    protected:
        void paintEvent(QPaintEvent *) override
        {
            QPainter painter(this);
            painter.fillRect(rect(), QColor(225, 225, 225));
            m_editor->forEachLine([&](int row, const QRect &line) {
                painter.drawText(QRect(0, line.y(), width() - 4, line.height()), Qt::AlignRight,
                                 QString::number(row + 1));
            });
        }

    private:
        Editor *m_editor;
    };

    template<typename Draw> void forEachLine(const Draw &draw) const
    {
        for (QTextBlock block = firstVisibleBlock(); block.isValid(); block = block.next()) {
            const QRect line =
                blockBoundingGeometry(block).translated(contentOffset()).toAlignedRect();
            if (line.top() > viewport()->height())
                return;
            draw(block.blockNumber(), line);
        }
    }
    void markLine()
    {
        QTextEdit::ExtraSelection bar;
        bar.format.setBackground(QColor(255, 240, 190));
        bar.format.setProperty(QTextFormat::FullWidthSelection, true);
        bar.cursor = textCursor();
        setExtraSelections({bar});
    }

    Numbers *m_numbers;
};

QAbstractScrollArea *createTable(bool isZebra, int rows)
{
    auto *table = new QTableWidget(rows, 3);
    table->setIconSize({RowCode::cells * RowCode::wideCell, RowCode::height});
    table->setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    table->horizontalHeader()->setStretchLastSection(!s_options.contains(u"gap"_s));
    table->horizontalHeader()->setVisible(isZebra);
    table->verticalHeader()->setVisible(isZebra);
    table->setAlternatingRowColors(isZebra);
    for (int row = 0; row < rows; ++row) {
        table->setItem(row, 0, new QTableWidgetItem(icon(row), {}));
        table->setItem(row, 1, new QTableWidgetItem(text(row)));
        table->setItem(row, 2, new QTableWidgetItem(u"the same"_s));
    }
    table->setColumnWidth(1, 200);
    table->setCurrentCell(number(u"mark"_s, 3), 1);
    return table;
}

// Each cell has a number of its own, line by line.
QAbstractScrollArea *createWide(int rows)
{
    auto *table = new QTableWidget(rows / s_columns, s_columns);
    table->setIconSize({RowCode::cells * RowCode::wideCell, RowCode::height});
    table->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    table->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    table->horizontalHeader()->setVisible(s_options.contains(u"frozen"_s));
    table->verticalHeader()->setVisible(s_options.contains(u"frozen"_s));
    for (int i = 0; i < rows; ++i)
        table->setItem(i / s_columns, i % s_columns, new QTableWidgetItem(icon(i), {}));
    return table;
}

// One sheet of paper after the other, with names that differ in a digit.
QAbstractScrollArea *createIcons(int rows)
{
    auto *list = new QListWidget;
    list->setViewMode(QListView::IconMode);
    list->setResizeMode(QListView::Adjust);
    list->setGridSize({124, 90});
    list->setIconSize({48, 48});
    for (int row = 0; row < rows; ++row) {
        QPixmap sheet(48, 48);
        sheet.fill(QColor(225, 225, 225));
        QPainter(&sheet).drawImage(14, 30, RowCode::picture(row, 1));
        new QListWidgetItem(sheet, u"file %1.txt"_s.arg(row, 3, 10, QChar(u'0')), list);
    }
    return list;
}

QAbstractScrollArea *createTree(int rows)
{
    auto *tree = new QTreeWidget;
    tree->setIconSize({RowCode::cells * RowCode::wideCell, RowCode::height});
    tree->setHeaderHidden(true);
    const std::array<size_t, 8> depths{0, 1, 2, 2, 1, 2, 2, 2};
    std::array<QTreeWidgetItem *, 3> parents{};
    for (int row = 0; row < rows; ++row) {
        const size_t depth = depths.at(static_cast<size_t>(row) % depths.size());
        auto *item =
            depth == 0 ? new QTreeWidgetItem(tree) : new QTreeWidgetItem(parents.at(depth - 1));
        item->setIcon(0, icon(row));
        item->setText(0, text(row));
        parents.at(depth) = item;
    }
    tree->expandAll();
    return tree;
}

QAbstractScrollArea *create(const QString &kind, int rows)
{
    if (kind == u"editor")
        return new Editor(rows);
    if (kind == u"tree")
        return createTree(rows);
    if (kind == u"icons")
        return createIcons(rows);
    if (kind == u"wide")
        return createWide(rows);
    if (kind != u"list")
        return createTable(kind == u"zebra", rows);
    auto *list = new QListWidget;
    list->setIconSize({RowCode::cells * RowCode::wideCell, RowCode::height});
    list->setStyleSheet(u"QListWidget::item:hover { background: #cfe0f5 }"_s);
    for (int row = 0; row < rows; ++row)
        new QListWidgetItem(icon(row), text(row), list);
    list->setCurrentRow(number(u"mark"_s, 3));
    return list;
}

// By itself after some way, for a while.
void openMenu(QWidget &window)
{
    if (s_options.remove(u"menu"_s) == 0)
        return;
    auto *menu = new QMenu(&window);
    menu->addAction(u"One"_s);
    menu->addAction(u"Two"_s);
    menu->popup(window.mapToGlobal(window.rect().center()));
    QTimer::singleShot(s_menuTime, menu, &QMenu::close);
}

void tell(const QAbstractScrollArea &area, const QWidget &window)
{
    QRect view = area.viewport()->geometry();
    int header = 0;
    if (const auto *table = qobject_cast<const QTableView *>(&area)) {
        header = table->horizontalHeader()->isVisible() ? table->horizontalHeader()->height() : 0;
        view.setTop(view.top() - header);
        if (table->verticalHeader()->isVisible())
            view.setLeft(view.left() - table->verticalHeader()->width());
    } else if (qobject_cast<const QPlainTextEdit *>(&area)) {
        view.setLeft(view.left() - s_gutter);
    }
    const QPoint at = area.mapTo(&window, view.topLeft());
    std::printf("view %d %d %d %d %d\n", at.x(), at.y(), view.width(), view.height(), header);
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    if (argc < 2)
        return 1;
    for (const QString &argument : QCoreApplication::arguments().mid(2))
        s_options[argument.section(u'=', 0, 0)] = argument.section(u'=', 1);
    QWidget window;
    window.setWindowTitle(u"corpus"_s);
    auto *column = new QVBoxLayout(&window);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    QAbstractScrollArea *area = create(QString::fromLocal8Bit(argv[1]), number(u"rows"_s, 150));
    if (s_options.contains(u"banner"_s))
        column->addWidget(new QLabel(u"Something to be told, above what scrolls"_s));
    column->addWidget(area, 1);
    if (s_options.contains(u"status"_s))
        column->addWidget(new QLabel(u"That many entries"_s));
    // A list is much wider than its text, as in file managers.
    window.resize(QString::fromLocal8Bit(argv[1]) == u"list" ? 1200 : 640, 520);
    QObject::connect(area->verticalScrollBar(), &QScrollBar::valueChanged, &window, [&](int value) {
        if (value >= s_menuAfter)
            openMenu(window);
    });
    window.show();
    area->setFocus();
    QTimer::singleShot(0, &window, [&] { tell(*area, window); });
    return QApplication::exec();
}
