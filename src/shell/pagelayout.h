#pragma once

#include <QString>

class QBoxLayout;
class QVBoxLayout;
class QWidget;

/// Gives a page of the preferences that is made by code the margins and the spacing of the first
/// one, which is a form.
QVBoxLayout *pageLayout(QWidget &page);
/// Adds a group with a caption, and gives the place for what it holds.
QVBoxLayout *addGroup(QBoxLayout &place, const QString &caption);
