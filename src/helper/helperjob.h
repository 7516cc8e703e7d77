#pragma once

#include <QImage>
#include <QObject>
#include <QString>

/// One grab of the helper. It ends with exactly one of the signals taken, ended and failed.
class HelperJob : public QObject
{
    Q_OBJECT
public:
    /// The error codes of failed().
    enum Failure { NoWindow = 1, NoPicture = 2, NotWritten = 3, NoWheel = 4 };

    /// Ends the job as the user does who gives up, wherever it is: what it has moved is put back.
    /// ended() follows, unless the picture comes first.
    virtual void giveUp() = 0;
    void run();
    /// Ends the job as soon as possible without a signal, and deletes it then.
    void dismiss();
    /// Ends what goes on by itself, with what there is; nothing where there is nothing yet.
    virtual void keep() {}

signals:
    /// `note` says why the picture may be incomplete; empty if it is complete.
    void taken(const QImage &picture, const QString &note = {});
    /// The user has picked this window: its application and its title, as far as they are known.
    void picked(const QString &application, const QString &title);
    void ended();
    void failed(HelperJob::Failure failure, const QString &text);
    /// Intermediate states: waits for the user; turns the wheel over another program; has finished
    /// that and puts the content back.
    void opened();
    void scrolls();
    void putsBack();
    /// How much there is, where no window of this program may say it.
    void progressed(const QString &text);

protected:
    /// Does the work, or starts it and returns.
    virtual void start() = 0;
    /// Ends the work without a signal.
    virtual void abort() = 0;

private:
    bool m_isRunning = false;  // start() is on the stack
    bool m_isDismissed = false;
};

/// Waits, with events running, until no window of this program is on the screen, for a second at
/// most.
void waitUntilHidden();
/// The number of this process as it is in the window list.
uint ownProcess();
