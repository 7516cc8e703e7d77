#pragma once

#include "helper/movement.h"

/// Tests movements pixel by pixel, for distances that are known or nearly known.

/// The number of rows in the later view that differ from what the movement should have brought
/// there. A scroll bar over the content is ignored.
int rowsThatDiffer(const QImage &before, const QImage &after, const Movement &movement);

/// For views in which too little is visible for findMovement(), such as a single line: a movement
/// of at most `most` rows that explains every pixel of `moved`, which is the part that moved in
/// other views, and something that is visible in both pictures. Still if there is none.
Movement exactMovement(const QImage &before, const QImage &after, int most, const QRect &moved);
