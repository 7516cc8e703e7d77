#pragma once

#include <QColor>

/// The colours of the program's own surfaces. What is drawn at build time and what is drawn by hand
/// stand side by side in one window, so that both take them from here.
namespace Palette {

// Dark surfaces: the window's frame, plates and hints.
inline constexpr QColor dark(35, 40, 45);
inline constexpr QColor darkRaised(58, 66,
                                   74);  // what the pointer is over; the capture strip's top
inline constexpr QColor darkSunken(44, 51, 57);  // the capture strip's foot
inline constexpr QColor darkEdge(90, 100, 110);

// What is read on dark surfaces.
inline constexpr QColor glyphOnDark(201, 211, 220);
inline constexpr QColor textOnDark(215, 222, 228);
inline constexpr QColor quietOnDark(108, 117, 125);

// Bright surfaces: the table that pictures lie on, the edit strip and the band above both.
inline constexpr QColor table(231, 238, 244);
inline constexpr QColor strip(223, 230, 236);
inline constexpr QColor topBand(252, 253, 254);
inline constexpr QColor brightEdge(176, 183, 189);
inline constexpr QColor stripLine(197, 205, 212);

inline constexpr QColor glyphOnBright(70, 82, 94);

// Quiet, and seen on both: beside bright pictures on a bright ground as well as beside dark ones.
inline constexpr QColor nameOnBoth(120, 134, 146);
inline constexpr QColor pictureEdge(126, 136, 146);

// What is pointed at or outlined, and what is pressed or has the focus on a bright surface.
inline constexpr QColor accent(61, 165, 244);
inline constexpr QColor accentDown(28, 126, 214);

// The overlays.
inline constexpr QColor overlayFrame(89, 90, 92);
inline constexpr QColor overlayHandle(90, 90, 90);
inline constexpr QColor magnifierFrame(152, 161, 168);

// The two fields of the chequer that stands for what has not been seen yet.
inline constexpr QColor unseenBright(236, 239, 242);
inline constexpr QColor unseenDark(196, 202, 208);

// Those of the chequer below what is transparent.
inline constexpr QColor clearBright(255, 255, 255);
inline constexpr QColor clearDark(215, 220, 225);

/// `color` as something shines through it: 0 shows nothing of it, 255 nothing else.
inline QColor translucent(QColor color, int alpha)
{
    color.setAlpha(alpha);
    return color;
}

}  // namespace Palette
