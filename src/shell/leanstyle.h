#pragma once

#include <QProxyStyle>

/// The desktop's style, without the one picture that every menu bar loads when it is made. Loading
/// it has the toolkit open all its picture plug-ins, which takes longer than all of the menus. And
/// with room in menus: between the widest text and its keys, which would touch in a large font, and
/// around the titles of sections.
class LeanStyle : public QProxyStyle
{
    Q_OBJECT

public:
    QIcon standardIcon(StandardPixmap standardIcon, const QStyleOption *option,
                       const QWidget *widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &size,
                           const QWidget *widget) const override;
};
