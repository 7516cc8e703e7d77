#pragma once

#include "shell/grabflow.h"

#include <QDialog>

class CaptureOverlay;
class DialogCountDown;
class FrontWindow;
class MainWindow;

/// The overlays, the browser, the countdown and the capture helper, as the grab flow runs them.
class CaptureTools : public QObject, public GrabTools
{
    Q_OBJECT
public:
    /// They outlive this object.
    CaptureTools(MainWindow &window, FrontWindow &front, Clock &clock)
        : m_window(window), m_front(front), m_clock(clock)
    {
    }

    Marked mark(GrabCommand command) override;
    Grab takeAtOnce(GrabCommand command, unsigned window) override;
    bool countDown(int seconds) override;
    void restartCountDown(int seconds) override;
    std::optional<QList<Grab>> browse() override;
    bool mustAsk(GrabCommand command) override;
    bool startHelper(GrabCommand command, const std::function<bool()> &begin) override;
    void stopMenuWait() override;
    void dropHelper() override;
    void keepContent() override;
    void hearEscape(bool hears) override;
    void bringForward() override;
    void closeOpen() override;

signals:
    /// What waits for the user is open.
    void opened();
    /// Escape, pressed anywhere while the countdown runs.
    void escaped();

private:
    bool run(QDialog &dialog);
    QDialog *openDialog() const;

    MainWindow &m_window;
    FrontWindow &m_front;
    Clock &m_clock;
    QPointer<QDialog> m_open;                // while one of this object's runs
    DialogCountDown *m_countdown = nullptr;  // while one runs
    bool m_isClosed = false;                 // what is about to open is not wanted any more
};
