#pragma once

#include <QLabel>

/// The window's title in its caption row. A title that is longer than the row has room for loses
/// its middle, and shows all of it as a hint; text() is always the whole title.
class CaptionLabel : public QLabel
{
    Q_OBJECT

public:
    using QLabel::QLabel;

    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    bool event(QEvent *event) override;

private:
    QString shownText() const;
};
