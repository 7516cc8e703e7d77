#pragma once

#include <QList>
#include <QPushButton>
#include <QScrollArea>

class MainWindow;
class QLabel;
class QVBoxLayout;
struct Command;

/// What the window offers while no picture is open: grabs, with the hot keys that start them, and
/// opening and pasting. It lies over all of its parent. A press beside its buttons goes on to the
/// window, and where there is little room it scrolls.
class StartPanel : public QScrollArea
{
    Q_OBJECT

public:
    /// Commands run in `window`, which outlives this object. The keys come to the first button
    /// after `parent`.
    StartPanel(MainWindow &window, QWidget &parent);

    /// Shows the keys that are in force now.
    void updateKeys();

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void changeEvent(QEvent *event) override;

private:
    void add(QVBoxLayout &place, const char *name, const QString &caption, const Command *command);
    void fitHeadline();

    MainWindow &m_window;
    QLabel *m_headline = nullptr;
    struct Entry {
        QPushButton *button = nullptr;
        const Command *command = nullptr;
    };
    QList<Entry> m_entries{};
};
