#pragma once

#include <QTabWidget>

/// Tabs that can be closed. The toolkit's own have a widget each for that, and place all of them
/// each time that one is added: thousands take minutes. Here only those in sight have one.
class TabWidget : public QTabWidget
{
    Q_OBJECT

public:
    explicit TabWidget(QWidget *parent);
};
