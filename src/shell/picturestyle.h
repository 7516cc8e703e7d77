#pragma once

#include <QProxyStyle>

/// The desktop's style, without the one picture that every menu bar loads when it is made. Loading
/// it has the toolkit open all its picture plug-ins, which takes longer than all of the menus.
class PictureStyle : public QProxyStyle
{
    Q_OBJECT

public:
    QIcon standardIcon(StandardPixmap standardIcon, const QStyleOption *option,
                       const QWidget *widget) const override;
};
