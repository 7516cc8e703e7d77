#pragma once

/// In what marking an ellipse differs from marking a rectangle. All of it is meant.
struct RegionPolicy {
    bool ellipse = false;  ///< what is drawn in the region; otherwise the rectangle itself

    // In the selection.
    bool arrowInsideEllipse = false;  ///< the cursor tells the ellipse; a press, the rectangle
    bool clampsAnchor = false;        ///< a press can't begin outside the surface
    bool missKeepsZone = false;       ///< a press that hits nothing forgets no lost release
    bool captionWhileFlat = false;    ///< a drag shows it before its band has an area
    bool keyCaptionHasUnit = true;

    // In the overlay.
    bool cornersNeedCommand = false;  ///< they are drawn only then; they are live at all times
    bool releaseShowsButton = true;   ///< without a drag before it
    bool doubleClickPresses = true;   ///< a press soon after a click begins a drag like any other
    bool ticksWhilePressed = true;    ///< otherwise any release starts further ticks
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
                                       .doubleClickPresses = false,
                                       .ticksWhilePressed = false};
