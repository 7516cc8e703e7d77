#pragma once

#include "platform/xdg/endsignals.h"

#include <QSessionManager>

class MainWindow;

/// Ends the program with the session, or by a signal, with its settings kept.
class SessionEnd : public QObject
{
    Q_OBJECT

public:
    explicit SessionEnd(MainWindow &window);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void commit(QSessionManager &manager);
    void endBySignal();

    MainWindow &m_window;
    EndSignals m_signals;
    bool m_committed = false;
};
