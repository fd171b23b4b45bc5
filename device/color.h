#pragma once

/// The colour the server puts on its lights.
struct Color {
    int r = 0;           ///< red, 0 to 255
    int g = 0;           ///< green, 0 to 255
    int b = 0;           ///< blue, 0 to 255
    int w = 0;           ///< white, 0 to 255
    bool rgbw = false;   ///< the server's RGBW output mode, sent back as it came
    bool state = false;  ///< applied (true) or released (false)
};
