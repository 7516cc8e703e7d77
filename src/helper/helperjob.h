#pragma once

#include <QImage>
#include <QObject>
#include <QString>

/// One grab of the helper, from its start to one of the first three signals, of which it sends one.
class HelperJob : public QObject
{
    Q_OBJECT
public:
    /// What went wrong, as the number that goes with the text.
    enum Failure { NoWindow = 1, NoPicture = 2, NotWritten = 3, NoWheel = 4 };

    void run();
    /// Ends it as soon as it can, without a signal, and deletes it then.
    void dismiss();

signals:
    /// `note` says why the picture may be less than was asked for; empty where it is all.
    void taken(const QImage &picture, const QString &note = {});
    void ended();
    void failed(HelperJob::Failure failure, const QString &text);
    /// On the way: it waits for the user; it turns the wheel over another program, and is done with
    /// that.
    void opened();
    void scrolls();
    void putsBack();

protected:
    /// Does the work, or begins it: it may return when all is over, or at once.
    virtual void start() = 0;
    /// Has the work end, without a signal.
    virtual void abort() = 0;

private:
    bool m_isRunning = false;  // start() is on the stack
    bool m_isDismissed = false;
};

/// Waits, with events running, until no window of this program is on the screen, or for a second.
void waitUntilHidden();
/// This process, as the window list tells it.
uint ownProcess();
