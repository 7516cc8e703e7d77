#pragma once

/// The ways in which marking an ellipse differs from marking a rectangle. All of these differences
/// are kept on purpose.
struct RegionPolicy {
    bool ellipse = false;  ///< draws an ellipse in the region; otherwise a rectangle

    // In the selection.
    bool arrowInsideEllipse = false;  ///< the cursor tests the ellipse, a press the rectangle
    bool clampsAnchor = false;        ///< a press outside the surface begins at its edge
    bool missKeepsZone = false;       ///< a miss keeps the zone of a drag whose release was lost
    bool captionWhileFlat = false;    ///< a drag shows the caption before its band has an area
    bool keyCaptionHasUnit = true;
    bool exactKeys = false;  ///< arrow keys reach the edges, and each axis counts for itself
    bool lastIsEdge = true;  ///< a drag that ends on the last row or column ends at the edge

    // In the overlay.
    /// Corner handles are drawn only with Command, but always work.
    bool cornersNeedCommand = false;
    bool releaseShowsButton = true;  ///< any release shows the button; otherwise only a drag does
    bool ticksWhilePressed = true;   ///< otherwise a press stops ticks, and any release starts more
};

constexpr RegionPolicy s_rectanglePolicy{};

constexpr RegionPolicy s_ellipsePolicy{.ellipse = true,
                                       .arrowInsideEllipse = true,
                                       .clampsAnchor = true,
                                       .missKeepsZone = true,
                                       .captionWhileFlat = true,
                                       .keyCaptionHasUnit = false,
                                       .cornersNeedCommand = true,
                                       .releaseShowsButton = false,
                                       .ticksWhilePressed = false};
