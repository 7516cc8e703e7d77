#pragma once

#include "recognition/secrets.h"

#include <QImage>
#include <QTransform>
#include <QWidget>

/// Shows one of the secrets in a picture, enlarged, with what is around it. It takes no focus: who
/// owns it tells which one.
class SecretsView : public QWidget
{
    Q_OBJECT

public:
    /// All of them are to be hidden at first.
    SecretsView(QImage picture, const QList<Secret> &secrets, QWidget *parent = nullptr);

    /// Brings a secret into view and outlines it.
    void lookAt(qsizetype index);
    /// Shows whether a secret is to be hidden.
    void setHiding(qsizetype index, bool isHiding);

    QSize sizeHint() const override;

signals:
    /// A secret was pressed.
    void pressed(qsizetype index);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    struct Place {
        QList<QRect> areas{};
        bool isHiding = true;
    };

    QRect boxOfCurrent() const;
    QTransform toDevice() const;

    QImage m_picture;
    QList<Place> m_places{};
    qsizetype m_current = 0;
};
