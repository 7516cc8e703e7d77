#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class DialogCountDown;
}  // namespace Ui

/// The panel that counts down before a delayed grab. It does not run an event loop: the caller
/// processes events until getSecond() is below 0.
class DialogCountDown : public QDialog
{
    Q_OBJECT
public:
    static constexpr int s_longest = 24 * 60 * 60;  ///< seconds

    explicit DialogCountDown(QWidget *parent = nullptr);
    ~DialogCountDown() override;

    /// Starts the countdown at `second`, which is above 0 and limited to a day, and displays it at
    /// once. The panel ticks every second from its construction on.
    void setSecond(int second);
    /// Starts again; the first number is displayed for a whole second.
    void restart(int second);
    /// The next number to display. Below 0 the countdown is over or was cancelled.
    int getSecond() const { return m_Second; }
    /// 1 if the countdown has finished, else 0.
    int getResult() const { return m_Result; }

    void reject() override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void tickLater();

    std::unique_ptr<Ui::DialogCountDown> m_ui;
    int m_Second = 0;
    int m_Result = 0;
    int m_count = 0;  ///< identifies the current countdown; ticks of earlier ones are ignored
};
