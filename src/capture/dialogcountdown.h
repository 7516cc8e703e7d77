#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class DialogCountDown;
}  // namespace Ui

/// The panel that counts down before a delayed grab. It is shown without a loop of its own: the
/// caller runs events until getSecond() is below 0.
class DialogCountDown : public QDialog
{
    Q_OBJECT
public:
    static constexpr int s_longest = 24 * 60 * 60;  ///< seconds

    explicit DialogCountDown(QWidget *parent = nullptr);
    ~DialogCountDown() override;

    /// Starts at this number, above 0 and a day at the most, and shows it at once. Ticks come every
    /// second from construction on.
    void setSecond(int second);
    /// Starts anew, with a whole second for the first number.
    void restart(int second);
    /// What is shown next. Below 0 the count is over, or was cancelled.
    int getSecond() const { return m_Second; }
    /// 1 once the count has run out, 0 otherwise.
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
    int m_count = 0;  ///< the ticks of earlier counts have ended
};
