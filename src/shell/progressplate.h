#pragma once

#include "shell/picturejobs.h"

#include <QWidget>

class PlateButton;
class QLabel;
class QProgressBar;
class QShortcut;

/// Tells what a job on a picture does and how far it is, on a plate at the head of an area of the
/// window, once it has taken a moment. Its cross, and Escape while it is shown, give the job up.
class ProgressPlate : public QWidget
{
    Q_OBJECT

public:
    /// Lies over `area`, as its sibling. `jobs` and `clock` outlive this object.
    ProgressPlate(QWidget *area, PictureJobs &jobs, Clock &clock);

    /// What is read for another document than this one is not told of. What is written is.
    void setDocument(int number);

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void look();
    void fit();

    QWidget *m_area;
    PictureJobs &m_jobs;
    Clock &m_clock;
    QLabel *m_text;
    QProgressBar *m_bar;
    PlateButton *m_cancel;
    QShortcut *m_escape;
    PictureJobs::JobPtr m_job;  ///< that is told of
    int m_document = 0;
    bool m_isLookDue = false;
};
