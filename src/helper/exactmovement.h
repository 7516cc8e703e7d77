#pragma once

#include "helper/movement.h"

/// Movements of which the distance is known, or nearly: pixel by pixel.

/// Rows of the later view that are not what the movement brought there. A scroll bar that lies over
/// the content does not count.
int rowsThatDiffer(const QImage &before, const QImage &after, const Movement &movement);

/// What a single line may be too little for: a movement of at most so many rows that explains each
/// pixel of what moves elsewhere, `moved`, and something that is seen in both looks. Still where
/// there is none.
Movement exactMovement(const QImage &before, const QImage &after, int most, const QRect &moved);
