#pragma once

class QBoxLayout;
class QWidget;

/// Puts a button for each tool at the start of the edit strip, in the order of the table of tools,
/// and into the order of Tab before `next`, which is on the strip already.
void addToolButtons(QBoxLayout &strip, QWidget &next);
