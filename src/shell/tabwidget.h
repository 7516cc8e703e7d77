#pragma once

#include <QTabWidget>

/// Tabs that can be closed. The toolkit's own have a widget each for that, and place all of them
/// each time that one is added: thousands take minutes. Here only those in sight have one.
class TabWidget : public QTabWidget
{
    Q_OBJECT

public:
    explicit TabWidget(QWidget *parent);

signals:
    /// The user wants the menu of a tab, at a global position in logical pixels.
    void menuWanted(int index, QPoint position);
    /// A tab is dragged.
    void dragWanted(int index);
    /// The pointer rests on a tab; whoever knows what to tell of it does so.
    void tipWanted(int index, QPoint position);
};
